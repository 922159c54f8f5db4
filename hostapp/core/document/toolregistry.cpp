// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/document/toolregistry.h"

#include <algorithm>

namespace vantrel::host {

ToolRegistry::~ToolRegistry() = default;

void ToolRegistry::RegisterTool(ITool *tool)
{
    if (tool)
        m_tools.emplace_back(tool);
}

std::vector<ITool *> ToolRegistry::toolsByOrder() const
{
    std::vector<ITool *> sorted;
    sorted.reserve(m_tools.size());
    for (const std::unique_ptr<ITool> &tool : m_tools)
        sorted.push_back(tool.get());
    std::stable_sort(sorted.begin(), sorted.end(), [](const ITool *a, const ITool *b) {
        return a->GetOrder() < b->GetOrder();
    });
    return sorted;
}

ITool *ToolRegistry::findTool(const QString &title) const
{
    for (const std::unique_ptr<ITool> &tool : m_tools) {
        if (tool->GetTitle() == title)
            return tool.get();
    }
    return nullptr;
}

} // namespace vantrel::host
