// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "plugin/toolsplugin.h"

#include "frame/toolsupport.h"
#include "host/iapplicationcontext.h"
#include "host/itoolregistry.h"
#include "tools/easylighting/easylightingtool.h"
#include "tools/fittoview/fittoviewtool.h"
#include "tools/putonthefloor/putonthefloor.h"
#include "tools/stack/stacktool.h"
#include "tools/stepandrepeat/stepandrepeattool.h"

ToolsPlugin::ToolsPlugin(QObject *parent)
    : IPlugin(parent)
{}

void ToolsPlugin::Initialize(IApplicationContext &app)
{
    SetApplicationContext(&app); // first, before the registry is asked for
    IToolRegistry *registry = app.GetToolRegistry();
    // The registration order is fixed; the tool list sorts by GetOrder on its own. A new tool
    // adds its folder to tools/CMakeLists.txt and one line here.
    registry->RegisterTool(new PutOnTheFloor);
    registry->RegisterTool(new StackTool);
    registry->RegisterTool(new StepAndRepeatTool);
    registry->RegisterTool(new EasyLightingTool);
    registry->RegisterTool(new FitToViewTool);
}

void ToolsPlugin::Uninitialize() {}
