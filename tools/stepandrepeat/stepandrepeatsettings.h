// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "frame/settingstable.h"
#include "hostapp/ui/propertieslistbuilder.h"

#include <cstddef>

// The counts' and steps' limits.
constexpr int MinimumRepeat = 1;
constexpr int MaximumRepeat = 30;
constexpr float MaximumStep = 100.0f; // a step lies within -MaximumStep..MaximumStep

// The sliders' display codes for the host's panel library: whole counts, steps with decimals.
constexpr int StepAndRepeatCountCode
    = PropertiesListBuilder::WholeNumbers | PropertiesListBuilder::GridStyle;
constexpr int StepAndRepeatStepCode
    = PropertiesListBuilder::FractionStyle | PropertiesListBuilder::GridStyle;
static_assert(StepAndRepeatCountCode == 288, "the code the host library expects");
static_assert(StepAndRepeatStepCode == 320, "the code the host library expects");

// Columns, rows and layers ("Repeats"), then the gaps right, back and up ("Steps"), in panel and
// script order. Script keys are lower case.
// clang-format off
inline constexpr ToolSetting StepAndRepeatSettings[] = {
//   property   label      key        min                  max                  initial
//   control               code                    decimals row group before spaced
    {"repeatX", "Columns", "repeatx", float(MinimumRepeat), float(MaximumRepeat), 3.0f,
     PanelControl::Slider, StepAndRepeatCountCode, 0,       0,  "Repeats",   false},
    {"repeatY", "Rows",    "repeaty", float(MinimumRepeat), float(MaximumRepeat), 3.0f,
     PanelControl::Slider, StepAndRepeatCountCode, 0,       1,  nullptr,     false},
    {"repeatZ", "Layers",  "repeatz", float(MinimumRepeat), float(MaximumRepeat), 1.0f,
     PanelControl::Slider, StepAndRepeatCountCode, 0,       2,  nullptr,     false},
    {"stepX",   "Right",   "stepx",   -MaximumStep,         MaximumStep,          1.0f,
     PanelControl::Slider, StepAndRepeatStepCode,  2,       3,  "Steps",     false},
    {"stepY",   "Back",    "stepy",   -MaximumStep,         MaximumStep,          1.0f,
     PanelControl::Slider, StepAndRepeatStepCode,  2,       4,  nullptr,     false},
    {"stepZ",   "Up",      "stepz",   -MaximumStep,         MaximumStep,          1.0f,
     PanelControl::Slider, StepAndRepeatStepCode,  2,       5,  nullptr,     false},
};
// clang-format on
constexpr std::size_t StepAndRepeatCountSettings = 3; // the first three are the counts
