// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/stepandrepeat/stepandrepeatsettings.h"

// The display codes are the host panel's: (288, 0) a whole-number slider, (320, 2) a slider with
// two decimals.
const StepAndRepeatSetting StepAndRepeatSettings[6] = {
    {"repeatX", "Columns", "repeatx", MinimumRepeat, MaximumRepeat, 288, 0},
    {"repeatY", "Rows", "repeaty", MinimumRepeat, MaximumRepeat, 288, 0},
    {"repeatZ", "Layers", "repeatz", MinimumRepeat, MaximumRepeat, 288, 0},
    {"stepX", "Right", "stepx", -MaximumStep, MaximumStep, 320, 2},
    {"stepY", "Back", "stepy", -MaximumStep, MaximumStep, 320, 2},
    {"stepZ", "Up", "stepz", -MaximumStep, MaximumStep, 320, 2},
};
