// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "host/itool.h"
#include "host/itoolregistry.h"

#include <memory>
#include <vector>

namespace vantrel::host {

// The application's tools, in registration order. It owns them and deletes them with itself;
// the libraries they came from stay loaded for the whole process, so their code outlives them.
class VANTREL_HOST_EXPORT ToolRegistry final : public IToolRegistry
{
public:
    ToolRegistry() = default;
    ~ToolRegistry() override;

    void RegisterTool(ITool *tool) override;

    const std::vector<std::unique_ptr<ITool>> &tools() const { return m_tools; }
    // The tools sorted by GetOrder (ties keep registration order): the tool list's order.
    std::vector<ITool *> toolsByOrder() const;
    // The tool with exactly this title, or null.
    ITool *findTool(const QString &title) const;

private:
    std::vector<std::unique_ptr<ITool>> m_tools;
};

} // namespace vantrel::host
