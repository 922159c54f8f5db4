// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/stepandrepeat/stepandrepeatwindow.h"

#include "tools/stepandrepeat/stepandrepeatimpl.h"

#include <QSize>

StepAndRepeatWindow::StepAndRepeatWindow(IApplicationContext &app,
                                         IDocumentContext &context,
                                         QWidget *parent)
    : ToolWindow(app, context, parent)
{
    // No node given: the settings take the single selected shape.
    setUp(new StepAndRepeatImpl(document(), true, nullptr),
          QStringLiteral("Step and Repeat"),
          QSize(600, 450));
}
