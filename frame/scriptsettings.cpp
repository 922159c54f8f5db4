// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "frame/scriptsettings.h"

#include <QMetaProperty>
#include <QObject>

#include <climits>
#include <cmath>
#include <limits>

namespace {

// A script number as an int. Within the int range it is what QVariant::toInt gives; beyond it
// the conversion would wrap round (3e9 would become a negative count), so it saturates instead,
// and not a number gives 0 like any value that is no number.
QVariant toInt(const QVariant &value)
{
    if (value.userType() == QMetaType::Double || value.userType() == QMetaType::Float) {
        const double number = value.toDouble();
        if (std::isnan(number))
            return QVariant(0);
        if (number >= double(INT_MAX))
            return QVariant(INT_MAX);
        if (number <= double(INT_MIN))
            return QVariant(INT_MIN);
    }
    return QVariant(value.toInt());
}

// The value as the property's own type. QMetaProperty::write would refuse a value it cannot
// convert and write nothing; converting first makes every value count, as 0 or false at worst.
QVariant converted(const QVariant &value, int type)
{
    switch (type) {
    case QMetaType::Float:
        return QVariant(value.toFloat());
    case QMetaType::Double:
        return QVariant(value.toDouble());
    case QMetaType::Int:
        return toInt(value);
    case QMetaType::Bool:
        return QVariant(value.toBool());
    default:
        return value;
    }
}

// Calls write(property, value) for each key of the table that the dictionary has and the meta
// object has a property for, in table order, with the value converted to the property's type.
template<typename Write>
void applyScriptSettings(const QMetaObject &meta,
                         const QVariantMap &dictionary,
                         const ScriptSetting *table,
                         std::size_t count,
                         Write write)
{
    for (std::size_t i = 0; i < count; ++i) {
        const auto found = dictionary.constFind(QLatin1String(table[i].key));
        if (found == dictionary.constEnd())
            continue;
        const int index = meta.indexOfProperty(table[i].property);
        if (index < 0)
            continue; // an object lacking it is a programming error; a gadget holds it elsewhere
        const QMetaProperty property = meta.property(index);
        write(property, converted(*found, property.userType()));
    }
}

} // namespace

void ApplyScriptSettings(QObject &settings,
                         const QVariantMap &dictionary,
                         const ScriptSetting *table,
                         std::size_t count)
{
    applyScriptSettings(*settings.metaObject(),
                        dictionary,
                        table,
                        count,
                        [&settings](const QMetaProperty &property, const QVariant &value) {
                            property.write(&settings, value);
                        });
}

void ApplyScriptSettingsToGadget(const QMetaObject &meta,
                                 void *gadget,
                                 const QVariantMap &dictionary,
                                 const std::vector<ScriptSetting> &table)
{
    applyScriptSettings(meta,
                        dictionary,
                        table.data(),
                        table.size(),
                        [gadget](const QMetaProperty &property, const QVariant &value) {
                            property.writeOnGadget(gadget, value);
                        });
}

bool IsUnfitScriptNumber(const QVariant &value)
{
    double number = 0;
    bool isNumber = false;
    switch (value.userType()) {
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        number = value.toDouble(&isNumber);
        break;
    case QMetaType::QString: {
        // Text counts as the number it reads as; text of a number too large for a double reads
        // as no number, yet Qt's float conversion makes it an infinity, so that is looked at too.
        number = value.toString().trimmed().toDouble(&isNumber);
        if (!std::isfinite(value.toFloat()))
            return true;
        break;
    }
    default:
        break;
    }
    return isNumber
           && (!std::isfinite(number)
               || std::fabs(number) > double(std::numeric_limits<float>::max()));
}

std::vector<const char *>
NumberKeys(const QMetaObject &settings, const ScriptSetting *table, std::size_t count)
{
    std::vector<const char *> keys;
    for (std::size_t i = 0; i < count; ++i) {
        const int index = settings.indexOfProperty(table[i].property);
        if (index < 0)
            continue;
        const int type = settings.property(index).userType();
        if (type == QMetaType::Float || type == QMetaType::Double || type == QMetaType::Int)
            keys.push_back(table[i].key);
    }
    return keys;
}

int ScriptSettingInt(const QVariant &value)
{
    return toInt(value).toInt();
}
