// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// What every node script member needs: the runner behind the engine, and the checks that the
// node a member was called on (or is about to change) is still one of the scene's nodes.

#include "hostapp/core/scene/basenode.h"
#include "hostapp/core/script/scriptrunner.h"

#include <QPointer>
#include <QScriptContext>
#include <QScriptEngine>

namespace vantrel::host {

inline ScriptRunner &nodeScriptRunner(QScriptEngine *engine)
{
    return *qobject_cast<ScriptRunner *>(engine->parent());
}

inline const QString &goneNodeMessage()
{
    static const QString message = QStringLiteral("This node no longer exists");
    return message;
}

// The node the function was called on; null (with a script error thrown) when `this` is no node
// of the document's scene: a node removed, or whose creation was undone, still has its script
// object, and a node a tool window's Cancel took back has one that points nowhere.
template<class Node>
Node *scriptSelf(QScriptContext *context, QScriptEngine *engine)
{
    BaseNode *base = nodeScriptRunner(engine).unwrap(context->thisObject());
    auto *node = qobject_cast<Node *>(base);
    if (!node || !base->isInScene()) {
        context->throwError(QScriptContext::TypeError, goneNodeMessage());
        return nullptr;
    }
    return node;
}

// After reading an argument, which may run the script's own code: whether the node is still in
// the scene (false, with the error thrown, when not, or when that code threw).
template<class Node>
bool stillThere(QScriptContext *context, QScriptEngine *engine, const QPointer<Node> &node)
{
    if (engine->hasUncaughtException())
        return false;
    if (!node || !node->isInScene()) {
        context->throwError(QScriptContext::TypeError, goneNodeMessage());
        return false;
    }
    return true;
}

} // namespace vantrel::host
