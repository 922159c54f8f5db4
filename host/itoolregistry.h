// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

class ITool;

// The application's list of tools (the host's tool list and menus are built from it).
class IToolRegistry
{
public:
    IToolRegistry(const IToolRegistry &) = delete;
    IToolRegistry &operator=(const IToolRegistry &) = delete;

    // Takes ownership of the tool; the registry deletes it when the application ends.
    // A null tool is ignored.
    virtual void RegisterTool(ITool *tool) = 0;

protected:
    IToolRegistry() = default;
    virtual ~IToolRegistry() = default;
};
