// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/stepandrepeat/stepandrepeatscript.h"

#include "frame/scriptcall.h"
#include "frame/scriptsettings.h"
#include "host/idocument.h"
#include "host/inode.h"
#include "tools/stepandrepeat/stepandrepeatimpl.h"
#include "tools/stepandrepeat/stepandrepeatsettings.h"

#include <iterator>

namespace {

const char *const notAShapeNode = "The first parameter has be a shape node";

// Whether the node hangs below the document's root. A script can still hold a node it removed;
// such a node has no place to be wrapped in and cannot be cloned.
bool isInScene(const INode *node, const IDocument &document)
{
    while (node->GetParent())
        node = node->GetParent();
    return node == document.GetRootNode();
}

} // namespace

QScriptValue StepAndRepeatScript(QScriptContext *context, QScriptEngine *engine)
{
    ScriptCall call(context, engine, "Usage: tools.stepAndRepeat(node, params)", 2);
    std::vector<INode *> nodes;
    if (!call.nodes(0, notAShapeNode, &nodes))
        return call.result();
    if (nodes.size() != 1 || nodes.front()->GetNodeType() != INode::MeshNodeType
        || !isInScene(nodes.front(), call.document())) {
        call.fail(notAShapeNode);
        return call.result();
    }
    QVariantMap params;
    if (!call.dictionary(1, "The second parameter has to be a dictionary", &params))
        return call.result();

    ScriptSetting keys[std::size(StepAndRepeatSettings)];
    for (std::size_t i = 0; i < std::size(keys); ++i)
        keys[i] = ScriptSetting{StepAndRepeatSettings[i].key, StepAndRepeatSettings[i].property};
    StepAndRepeatImpl settings(&call.document(), false, nodes.front());
    // Each key that changes a value lays the grid out again before the next one is read.
    ApplyScriptSettings(settings, params, keys);
    settings.setAccepted(true);
    return call.result();
}
