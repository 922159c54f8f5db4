// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/iplugin.h"

class IApplicationContext;

// The tools plug-in's object, handed to the host by qt_plugin_instance. Initialize keeps the
// application context for the rest of the process (GetApplicationContext) and registers the five
// tools.
class ToolsPlugin final : public IPlugin
{
    Q_OBJECT
    Q_INTERFACES(IPlugin)

public:
    explicit ToolsPlugin(QObject *parent = nullptr);

    // Registers one object of each tool with the host's registry, which owns them from then on.
    // Every call registers five new tools: the host is expected to call it once.
    void Initialize(IApplicationContext &app) override;
    // Nothing to release: the tools belong to the host and the context outlives the plug-in.
    void Uninitialize() override;
};
