// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "frame/settingstable.h"
#include "hostapp/ui/propertieslistbuilder.h"

// The sliders' display codes for the host's panel library.
constexpr int StackRepeatCode
    = PropertiesListBuilder::TickMarks | PropertiesListBuilder::WholeNumbers;
constexpr int StackSeedCode
    = PropertiesListBuilder::WholeNumbers | PropertiesListBuilder::SeedStyle;
constexpr int StackTwistCode
    = PropertiesListBuilder::TickMarks | PropertiesListBuilder::FractionStyle
      | PropertiesListBuilder::Degrees | PropertiesListBuilder::OneDecimalStyle;
constexpr int StackOffsetCode = PropertiesListBuilder::TickMarks
                                | PropertiesListBuilder::FractionStyle
                                | PropertiesListBuilder::OneDecimalStyle;
static_assert(StackRepeatCode == 34, "the code the host library expects");
static_assert(StackSeedCode == 40, "the code the host library expects");
static_assert(StackTwistCode == 2242, "the code the host library expects");
static_assert(StackOffsetCode == 2114, "the code the host library expects");

// The Stack's settings, in panel and script order: how often the list of shapes is repeated,
// then the layout's seed, twist (degrees per level, and the share of random twist) and offset
// (scene units per level, and the share of random offset). Only the repeat count is limited to
// its range; the others are the panel's ranges, and a script may go beyond them.
// clang-format off
inline constexpr ToolSetting StackSettings[] = {
//   property                label              key               min     max       initial
//   control                    code             decimals row group before spaced
    {"generationRepeatList", "Repeat the list", "repeats",        1.0f,   100.0f,   3.0f,
     PanelControl::Slider,      StackRepeatCode, 3,       0,  nullptr,     false},
    {"generationSeed",       "Seed",            "seed",           0.0f,   10000.0f, 0.0f,
     PanelControl::Slider,      StackSeedCode,   3,       1,  nullptr,     false},
    {"twistStep",            "Step",            "twistStep",      -45.0f, 45.0f,    0.0f,
     PanelControl::Slider,      StackTwistCode,  1,       2,  "Twist",     false},
    {"twistDisorder",        "Disorder",        "twistDisorder",  0.0f,   1.0f,     0.0f,
     PanelControl::FinePercent, 0,               0,       3,  nullptr,     false},
    {"offsetX",              "X",               "offsetX",        -5.0f,  5.0f,     0.0f,
     PanelControl::Slider,      StackOffsetCode, 1,       4,  "Offset",    false},
    {"offsetY",              "Y",               "offsetY",        -5.0f,  5.0f,     0.0f,
     PanelControl::Slider,      StackOffsetCode, 1,       5,  nullptr,     false},
    {"offsetDisorder",       "Disorder",        "offsetDisorder", 0.0f,   1.0f,     0.0f,
     PanelControl::FinePercent, 0,               0,       6,  nullptr,     false},
};
// clang-format on

inline constexpr const ToolSetting &StackRepeatSetting
    = FindSetting(StackSettings, "generationRepeatList");
