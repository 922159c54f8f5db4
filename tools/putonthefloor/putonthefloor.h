// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/itool.h"

// Moves the selection straight up or down until its lowest point lies on the floor (z = 0),
// as one undo step. No window, no script function, no tool-bar button.
class PutOnTheFloor final : public ITool
{
public:
    QString GetTitle() const override;
    QKeySequence GetShortcut() const override;
    int GetOrder() const override;
    bool IsEnabled(const IDocumentContext &context) const override;
    void Execute(IDocumentContext &context) override;
    void AttachToDocument(IDocumentContext &context) override;
};
