// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "frame/toolwindow.h"

// The Easy Lighting window: the light's four numbers as a live preview. OK keeps everything done
// while it was open as one undo step; Cancel takes it all back, the created or adopted light and
// the hidden lights included.
class EasyLightingWindow final : public ToolWindow
{
    Q_OBJECT

public:
    EasyLightingWindow(IApplicationContext &app, IDocumentContext &context, QWidget *parent);
};
