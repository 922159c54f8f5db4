// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "host/iapplicationcontext.h"
#include "hostapp/core/document/toolregistry.h"

namespace vantrel::host {

// The stand-in host's application: the tool registry. One per process in `vantrel`; tests make
// as many as they need (nothing here is global).
class VANTREL_HOST_EXPORT ApplicationContext final : public IApplicationContext
{
public:
    ApplicationContext() = default;
    ~ApplicationContext() override;

    IToolRegistry *GetToolRegistry() override { return &m_registry; }
    ToolRegistry &registry() { return m_registry; }

private:
    ToolRegistry m_registry;
};

} // namespace vantrel::host
