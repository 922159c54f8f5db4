// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "frame/settingstable.h"

// Fit To View's two settings, in panel and script order: the padding is a share of the tightest
// distance added on top of it (0.1: 10 % farther); keepAspect is a check box (0 off, 1 on).
// clang-format off
inline constexpr ToolSetting FitToViewSettings[] = {
//   property      label                key           min   max   initial
//   control                     code decimals row group before spaced
    {"padding",    "Padding",           "padding",    0.0f, 1.0f, 0.1f,
     PanelControl::WholePercent, 0,   0,       0,  "",          false},
    {"keepAspect", "Keep Aspect Ratio", "keepAspect", 0.0f, 1.0f, 0.0f,
     PanelControl::CheckBox,     0,   0,       1,  nullptr,     false},
};
// clang-format on
