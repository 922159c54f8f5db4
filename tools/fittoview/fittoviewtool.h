// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/itool.h"

// Frames all visible geometry with the camera, from its window, its tool-bar button or
// tools.fitToView.
class FitToViewTool final : public ITool
{
public:
    QString GetTitle() const override;
    QKeySequence GetShortcut() const override;
    int GetOrder() const override;
    bool IsEnabled(const IDocumentContext &context) const override;
    void Execute(IDocumentContext &context) override;
    void AttachToDocument(IDocumentContext &context) override;
};
