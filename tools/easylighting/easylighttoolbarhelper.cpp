// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/easylighting/easylighttoolbarhelper.h"

#include <QAction>

EasyLightToolbarHelper::EasyLightToolbarHelper(ITool *tool, IDocumentContext *context)
    : ToolbarHelper(tool, context, QStringLiteral("EasyLighting"), 100)
{
    connect(action(), &QAction::triggered, this, &EasyLightToolbarHelper::onEasyLighting);
}

void EasyLightToolbarHelper::onEasyLighting()
{
    runTool();
}
