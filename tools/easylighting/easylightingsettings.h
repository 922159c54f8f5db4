// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "frame/settingstable.h"
#include "hostapp/ui/propertieslistbuilder.h"

// The angle sliders' display code for the host's panel library.
constexpr int EasyLightingAngleCode
    = PropertiesListBuilder::TickMarks | PropertiesListBuilder::FractionStyle
      | PropertiesListBuilder::Degrees | PropertiesListBuilder::LightAngleStyle
      | PropertiesListBuilder::OneDecimalStyle;
static_assert(EasyLightingAngleCode == 2754, "the code the host library expects");

// Easy Lighting's four settings, in the order a script's keys are checked and applied; the panel
// shows the contrast before the blur, below a blank line. The angles are in degrees; contrast is
// the light's share of light plus ambient, blur places the shadow blur within its range.
// clang-format off
inline constexpr ToolSetting EasyLightingSettings[] = {
//   property    label               key        min      max     initial
//   control                     code                   decimals row group before  spaced
    {"angleH",   "Horizontal angle", "hangle",  -180.0f, 180.0f, 90.0f,
     PanelControl::Slider,       EasyLightingAngleCode, 1,       0,  "Shadow Parameters", false},
    {"angleV",   "Vertical angle",   "vangle",  1.0f,    89.0f,  50.0f,
     PanelControl::Slider,       EasyLightingAngleCode, 1,       1,  nullptr,      false},
    {"blur",     "Blur",             "blur",    0.0f,    1.0f,   0.5f,
     PanelControl::WholePercent, 0,                     0,       3,  nullptr,      false},
    {"contrast", "Contrast",         "contrast", 0.0f,   1.0f,   0.3f,
     PanelControl::WholePercent, 0,                     0,       2,  nullptr,      true},
};
// clang-format on
