// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "frame/scriptsettings.h"

#include <cstddef>
#include <stdexcept>
#include <vector>

class PropertiesListBuilder;

// How a setting shows in its tool's property panel.
enum class PanelControl {
    Slider,       // AddSlider, with the row's display code and decimals
    WholePercent, // AddPercentSlider moving in whole percents
    FinePercent,  // AddPercentSlider moving in tenths of a percent
    CheckBox      // AddCheckBox, its text in the label column
};

// One setting of a tool, described once: the tool's property panel, its script function's keys
// and number checks, its settings object's starting values and the limits its write accessors
// apply all read the tool's table of these, so a name, a range or a default cannot drift apart
// between them. The value's type is the settings object's Qt property's type.
struct ToolSetting
{
    const char *property; // the Qt property the panel edits and the script function writes
    const char *label;    // the panel row's label
    const char *key;      // the script dictionary key, matched exactly, letter case included
    float minimum;        // the panel's range; write accessors that limit use it too
    float maximum;
    float initial; // the value a new settings object starts from
    PanelControl control;
    int displayCode; // sliders: AddSlider's two codes, as the host's panel library defines them
    int decimals;
    int panelRow; // the row's place among the table's rows in the panel, from 0
    // Panel rows above this one: a group caption that starts a new group ("" an untitled frame,
    // null no new group), then a blank line when spaced is set.
    const char *groupBefore;
    bool spaced;
};

namespace SettingsTableDetail {
constexpr bool same(const char *a, const char *b)
{
    while (*a && *a == *b) {
        ++a;
        ++b;
    }
    return *a == *b;
}
} // namespace SettingsTableDetail

// The table's row for a property. Meant for constant expressions, where a name the table lacks
// stops the build.
template<std::size_t N>
constexpr const ToolSetting &FindSetting(const ToolSetting (&table)[N], const char *property)
{
    for (const ToolSetting &setting : table) {
        if (SettingsTableDetail::same(setting.property, property))
            return setting;
    }
    throw std::logic_error("no such setting");
}

// Adds the table's rows to the panel, in panel-row order, each after the group caption and blank
// line it asks for.
void AddSettingRows(PropertiesListBuilder &builder, const ToolSetting *table, std::size_t count);

template<std::size_t N>
void AddSettingRows(PropertiesListBuilder &builder, const ToolSetting (&table)[N])
{
    AddSettingRows(builder, table, N);
}

// The table's script keys and properties, in table order: the order in which a script's
// dictionary is checked (the first unfit number is the one reported) and applied.
std::vector<ScriptSetting> ScriptSettings(const ToolSetting *table, std::size_t count);

template<std::size_t N>
std::vector<ScriptSetting> ScriptSettings(const ToolSetting (&table)[N])
{
    return ScriptSettings(table, N);
}
