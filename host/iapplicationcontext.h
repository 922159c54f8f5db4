// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

class IToolRegistry;

// The application as the tools plug-in sees it: one object for the whole process, handed to the
// plug-in's Initialize and valid until the process ends. Called on the GUI thread only.
class IApplicationContext
{
public:
    IApplicationContext(const IApplicationContext &) = delete;
    IApplicationContext &operator=(const IApplicationContext &) = delete;

    // Never null; owned by the application.
    virtual IToolRegistry *GetToolRegistry() = 0;

protected:
    IApplicationContext() = default;
    virtual ~IApplicationContext() = default;
};
