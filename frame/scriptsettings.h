// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVariantMap>

#include <cstddef>

class QObject;

// One key of a tool's script dictionary and the settings property it sets.
struct ScriptSetting
{
    const char *key;      // matched exactly, letter case included
    const char *property; // the settings object's Qt property
};

// Writes the dictionary into the settings object, in the order of the table. For each key the
// dictionary has, the value is converted with toFloat, toInt or toBool after the property's type,
// without checking that the conversion succeeded (so "abc" gives 0 and an object gives false;
// a number beyond the int range gives the nearest int rather than a wrapped one), and passed to the
// property's WRITE accessor, which applies its own limits. Keys the table does not name are
// ignored; a missing key leaves the property as the object started it.
void ApplyScriptSettings(QObject &settings,
                         const QVariantMap &dictionary,
                         const ScriptSetting *table,
                         std::size_t count);

template<std::size_t N>
void ApplyScriptSettings(QObject &settings,
                         const QVariantMap &dictionary,
                         const ScriptSetting (&table)[N])
{
    ApplyScriptSettings(settings, dictionary, table, N);
}
