// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/stepandrepeat/stepandrepeatscript.h"

#include "frame/scriptcall.h"
#include "frame/scriptsettings.h"
#include "host/idocument.h"
#include "host/inode.h"
#include "tools/stepandrepeat/stepandrepeatimpl.h"
#include "tools/stepandrepeat/stepandrepeatsettings.h"

namespace {

const char *const notAShapeNode = "The first parameter has be a shape node";

} // namespace

QScriptValue StepAndRepeatScript(QScriptContext *context, QScriptEngine *engine)
{
    ScriptCall call(context, engine, "Usage: tools.stepAndRepeat(node, params)", 2);
    std::vector<INode *> nodes;
    if (!call.nodes(0, notAShapeNode, &nodes))
        return call.result();
    // The frame's node list holds only nodes in the scene: a removed shape never gets here.
    if (!IsSingleShape(nodes)) {
        call.fail(notAShapeNode);
        return call.result();
    }
    const std::vector<ScriptSetting> keys = ScriptSettings(StepAndRepeatSettings);
    // Read whole before the grid is built; reading may run getters that change the scene, and
    // the frame then checks the shape again.
    QVariantMap params;
    if (!call.dictionary(1, "The second parameter has to be a dictionary", &params)
        || !call.numbers(params, NumberKeys(StepAndRepeatImpl::staticMetaObject, keys)))
        return call.result();
    StepAndRepeatImpl settings(&call.document(), false, nodes.front());
    // Each key that changes a value lays the grid out again before the next one is read.
    ApplyScriptSettings(settings, params, keys);
    settings.setAccepted(true);
    return call.result();
}
