// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "frame/toolwindow.h"

// The Step and Repeat window: counts and steps of the grid as a live preview around the one
// selected shape, which the caller has checked. Opening it already wraps the shape and shows the
// default grid; OK keeps everything done while it was open as one undo step, and Cancel (or Esc,
// or closing the window) takes it all back, the shape returning to its place, name and transform.
class StepAndRepeatWindow final : public ToolWindow
{
    Q_OBJECT

public:
    StepAndRepeatWindow(IApplicationContext &app, IDocumentContext &context, QWidget *parent);
};
