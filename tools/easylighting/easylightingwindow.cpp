// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/easylighting/easylightingwindow.h"

#include "tools/easylighting/easylightingimplementation.h"

#include <QSize>

EasyLightingWindow::EasyLightingWindow(IApplicationContext &app,
                                       IDocumentContext &context,
                                       QWidget *parent)
    : ToolWindow(app, context, parent)
{
    setUp(new EasyLightingImplementation(document(), true),
          QStringLiteral("Easy Lighting"),
          QSize(600, 420));
}
