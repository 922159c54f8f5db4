// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

// One setting of Step and Repeat, described once: the property panel, the script function and
// the write accessors' limits all read this table, so a name or a range cannot drift apart
// between them.
struct StepAndRepeatSetting
{
    const char *property; // the Qt property of StepAndRepeatImpl
    const char *label;    // the panel row's label
    const char *key;      // the script dictionary key: lower case, matched exactly
    float minimum;        // the write accessor limits to minimum..maximum
    float maximum;
    int displayFlags; // AddSlider's two display codes, passed to the host's panel as they stand
    int displayDecimals;
};

// Columns, rows and layers ("Repeats"), then the gaps right, back and up ("Steps"), in panel and
// script order.
extern const StepAndRepeatSetting StepAndRepeatSettings[6];
constexpr std::size_t StepAndRepeatCountSettings = 3; // the first three are the counts

// The counts' and steps' limits, shared by the table and the write accessors.
constexpr int MinimumRepeat = 1;
constexpr int MaximumRepeat = 30;
constexpr float MaximumStep = 100.0f; // a step lies within -MaximumStep..MaximumStep
