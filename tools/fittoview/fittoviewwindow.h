// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "frame/toolwindow.h"

// The Fit To View window: opening it fits the camera at once; the padding slider moves the
// camera along its line of sight, the check box refits. OK keeps the camera, every other way out
// puts back the camera of the moment the window opened.
class FitToViewWindow final : public ToolWindow
{
    Q_OBJECT

public:
    FitToViewWindow(IApplicationContext &app, IDocumentContext &context, QWidget *parent);
};
