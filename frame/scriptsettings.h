// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVariantMap>

#include <cstddef>
#include <vector>

class QObject;
struct QMetaObject;

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

inline void ApplyScriptSettings(QObject &settings,
                                const QVariantMap &dictionary,
                                const std::vector<ScriptSetting> &table)
{
    ApplyScriptSettings(settings, dictionary, table.data(), table.size());
}

// The same for a Q_GADGET value of the given meta object: keys whose property the gadget does not
// have are skipped, so a gadget may hold only some of a table's settings.
void ApplyScriptSettingsToGadget(const QMetaObject &meta,
                                 void *gadget,
                                 const QVariantMap &dictionary,
                                 const std::vector<ScriptSetting> &table);

// Whether the value is a number, or text that reads as one, that does not fit in single
// precision: NaN, an infinity, or a number beyond the largest float. Such a number would reach
// a float setting as infinity (or NaN), which no limit can bring back; it is refused instead.
// Anything else (other text, objects, booleans) is not: it counts as 0 or false as above.
bool IsUnfitScriptNumber(const QVariant &value);

// The keys of the table whose properties in the settings class are numbers (float, double, int),
// in table order.
std::vector<const char *>
NumberKeys(const QMetaObject &settings, const ScriptSetting *table, std::size_t count);

template<std::size_t N>
std::vector<const char *> NumberKeys(const QMetaObject &settings, const ScriptSetting (&table)[N])
{
    return NumberKeys(settings, table, N);
}

inline std::vector<const char *> NumberKeys(const QMetaObject &settings,
                                            const std::vector<ScriptSetting> &table)
{
    return NumberKeys(settings, table.data(), table.size());
}

// A script value as an int the way ApplyScriptSettings converts it for an int property.
int ScriptSettingInt(const QVariant &value);
