// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/fittoview/fittoviewwindow.h"

#include "tools/fittoview/fittoviewimplementation.h"

#include <QSize>

FitToViewWindow::FitToViewWindow(IApplicationContext &app,
                                 IDocumentContext &context,
                                 QWidget *parent)
    : ToolWindow(app, context, parent)
{
    setUp(new FitToViewImplementation(document()), QStringLiteral("Fit To View"), QSize(400, 190));
}
