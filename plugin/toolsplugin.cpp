// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "plugin/toolsplugin.h"

#include "host/iapplicationcontext.h"
#include "host/itoolregistry.h"
#include "plugin/easylightingtool.h"
#include "plugin/fittoviewtool.h"
#include "plugin/putonthefloor.h"
#include "plugin/stacktool.h"
#include "plugin/stepandrepeattool.h"

namespace {
// Written by every Initialize, never cleared: the host's application context outlives the
// plug-in object, and tool windows opened later still need it.
IApplicationContext *s_applicationContext = nullptr;
} // namespace

IApplicationContext *GetApplicationContext()
{
    return s_applicationContext;
}

ToolsPlugin::ToolsPlugin(QObject *parent)
    : IPlugin(parent)
{}

void ToolsPlugin::Initialize(IApplicationContext &app)
{
    s_applicationContext = &app; // first, before the registry is asked for
    IToolRegistry *registry = app.GetToolRegistry();
    // The registration order is fixed; the tool list sorts by GetOrder on its own.
    registry->RegisterTool(new PutOnTheFloor);
    registry->RegisterTool(new StackTool);
    registry->RegisterTool(new StepAndRepeatTool);
    registry->RegisterTool(new EasyLightingTool);
    registry->RegisterTool(new FitToViewTool);
}

void ToolsPlugin::Uninitialize() {}
