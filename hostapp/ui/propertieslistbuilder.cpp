// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/ui/propertieslistbuilder.h"

#include <algorithm>

namespace {

QVariantMap row(const char *kind, const QString &text)
{
    QVariantMap map;
    map.insert(QLatin1String(PanelRow::Kind), QLatin1String(kind));
    map.insert(QLatin1String(PanelRow::Text), text);
    return map;
}

} // namespace

PropertiesListBuilder::PropertiesListBuilder(const QString &title)
{
    m_rows.append(row(PanelRow::Title, title));
}

void PropertiesListBuilder::AddPanel(const QString &caption)
{
    m_rows.append(row(PanelRow::Group, caption));
}

void PropertiesListBuilder::AddSlider(
    const QString &label, const QString &property, float min, float max, int flags, int decimals)
{
    QVariantMap map = row(PanelRow::Slider, label);
    map.insert(QLatin1String(PanelRow::Property), property);
    map.insert(QLatin1String(PanelRow::Minimum), std::min(min, max));
    map.insert(QLatin1String(PanelRow::Maximum), std::max(min, max));
    map.insert(QLatin1String(PanelRow::Flags), flags);
    map.insert(QLatin1String(PanelRow::Decimals), std::clamp(decimals, 0, 6));
    m_rows.append(map);
}

void PropertiesListBuilder::AddPercentSlider(const QString &label,
                                             const QString &property,
                                             bool wholePercent)
{
    QVariantMap map = row(PanelRow::Percent, label);
    map.insert(QLatin1String(PanelRow::Property), property);
    map.insert(QLatin1String(PanelRow::Minimum), 0.0f);
    map.insert(QLatin1String(PanelRow::Maximum), 1.0f);
    map.insert(QLatin1String(PanelRow::Decimals), wholePercent ? 0 : 1);
    m_rows.append(map);
}

void PropertiesListBuilder::AddCheckBox(const QString &label, const QString &property, eOrder order)
{
    QVariantMap map = row(PanelRow::CheckBox, label);
    map.insert(QLatin1String(PanelRow::Property), property);
    map.insert(QLatin1String(PanelRow::Order), int(order));
    m_rows.append(map);
}

void PropertiesListBuilder::AddLabel(
    const QString &text, int sizeChange, eOrder order, eSide side, const QString &valueProperty)
{
    QVariantMap map = row(PanelRow::Label, text);
    map.insert(QLatin1String(PanelRow::SizeChange), sizeChange);
    map.insert(QLatin1String(PanelRow::Order), int(order));
    map.insert(QLatin1String(PanelRow::Side), int(side));
    map.insert(QLatin1String(PanelRow::Property), valueProperty);
    m_rows.append(map);
}

void PropertiesListBuilder::AddLineEdit(const QString &label, const QString &property)
{
    QVariantMap map = row(PanelRow::LineEdit, label);
    map.insert(QLatin1String(PanelRow::Property), property);
    m_rows.append(map);
}

void PropertiesListBuilder::AddFileChooser(const QString &label,
                                           const QString &property,
                                           const QString &filter)
{
    QVariantMap map = row(PanelRow::File, label);
    map.insert(QLatin1String(PanelRow::Property), property);
    map.insert(QLatin1String(PanelRow::Filter), filter);
    m_rows.append(map);
}
