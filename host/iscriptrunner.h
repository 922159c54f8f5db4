// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QScriptEngine>
#include <QVariantMap>

#include <vector>

class INode;

// A document's script engine, as the tools see it.
class IScriptRunner
{
public:
    IScriptRunner(const IScriptRunner &) = delete;
    IScriptRunner &operator=(const IScriptRunner &) = delete;

    // Same order as the host's declaration: the vtable layout is part of the boundary.
    // Makes the native function reachable from scripts as tools.<name>.
    virtual void RegisterFunction(const char *name, QScriptEngine::FunctionSignature function) = 0;
    // Converts a script array of nodes (or a single node, as a one-element list), all of them in
    // the document's scene. False, with out left as it was, for anything else, including a node
    // that was removed or whose creation was undone.
    virtual bool ToNodeList(const QScriptValue &value, std::vector<INode *> *out) = 0;
    // Converts a plain script object to a key/value map of plain values, read once. False for
    // anything else (arrays, nodes, functions, null, numbers, strings). Reading runs the
    // script's getters: when one throws, or the object is nested too deep, the answer is false
    // and an exception is pending in the engine.
    virtual bool ToDictionary(const QScriptValue &value, QVariantMap *out) = 0;

protected:
    IScriptRunner() = default;
    virtual ~IScriptRunner() = default;
};
