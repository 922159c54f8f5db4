// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "frame/settingstable.h"

#include "hostapp/ui/propertieslistbuilder.h"

namespace {

void addRow(PropertiesListBuilder &builder, const ToolSetting &setting)
{
    if (setting.groupBefore) {
        // An empty caption is passed as a null text, as a panel without a title is asked for.
        builder.AddPanel(*setting.groupBefore ? QString::fromLatin1(setting.groupBefore)
                                              : QString());
    }
    if (setting.spaced) {
        builder.AddLabel(QString(),
                         0,
                         PropertiesListBuilder::TextFirst,
                         PropertiesListBuilder::LeftSide,
                         QString());
    }
    const QString label = QString::fromLatin1(setting.label);
    const QString property = QString::fromLatin1(setting.property);
    switch (setting.control) {
    case PanelControl::Slider:
        builder.AddSlider(label,
                          property,
                          setting.minimum,
                          setting.maximum,
                          setting.displayCode,
                          setting.decimals);
        break;
    case PanelControl::WholePercent:
    case PanelControl::FinePercent:
        builder.AddPercentSlider(label, property, setting.control == PanelControl::WholePercent);
        break;
    case PanelControl::CheckBox:
        builder.AddCheckBox(label, property, PropertiesListBuilder::TextFirst);
        break;
    }
}

} // namespace

void AddSettingRows(PropertiesListBuilder &builder, const ToolSetting *table, std::size_t count)
{
    for (std::size_t row = 0; row < count; ++row) {
        for (std::size_t i = 0; i < count; ++i) {
            if (table[i].panelRow == int(row))
                addRow(builder, table[i]);
        }
    }
}

std::vector<ScriptSetting> ScriptSettings(const ToolSetting *table, std::size_t count)
{
    std::vector<ScriptSetting> keys;
    keys.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        keys.push_back(ScriptSetting{table[i].key, table[i].property});
    return keys;
}
