// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/fittoview/fittoviewtoolbarhelper.h"

#include <QAction>

FitToViewToolbarHelper::FitToViewToolbarHelper(ITool *tool, IDocumentContext *context)
    : ToolbarHelper(tool, context, QStringLiteral("FitToView"), 110)
{
    connect(action(), &QAction::triggered, this, &FitToViewToolbarHelper::onFitToView);
}

void FitToViewToolbarHelper::onFitToView()
{
    runTool();
}
