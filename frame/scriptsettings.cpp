// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "frame/scriptsettings.h"

#include <QMetaProperty>
#include <QObject>

#include <climits>
#include <cmath>

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

} // namespace

void ApplyScriptSettings(QObject &settings,
                         const QVariantMap &dictionary,
                         const ScriptSetting *table,
                         std::size_t count)
{
    const QMetaObject *meta = settings.metaObject();
    for (std::size_t i = 0; i < count; ++i) {
        const auto found = dictionary.constFind(QLatin1String(table[i].key));
        if (found == dictionary.constEnd())
            continue;
        const int index = meta->indexOfProperty(table[i].property);
        if (index < 0)
            continue; // a table naming a property the object lacks is a programming error
        const QMetaProperty property = meta->property(index);
        property.write(&settings, converted(*found, property.userType()));
    }
}
