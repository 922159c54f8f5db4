// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "frame/toolbarhelper.h"

// The "Fit To View..." button of a document window's tool bar (position 110).
class FitToViewToolbarHelper final : public ToolbarHelper
{
    Q_OBJECT

public:
    FitToViewToolbarHelper(ITool *tool, IDocumentContext *context);

private slots:
    void onFitToView();
};
