// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "frame/toolbarhelper.h"

// The "Easy Lighting..." button of a document window's tool bar (position 100).
class EasyLightToolbarHelper final : public ToolbarHelper
{
    Q_OBJECT

public:
    EasyLightToolbarHelper(ITool *tool, IDocumentContext *context);

private slots:
    void onEasyLighting();
};
