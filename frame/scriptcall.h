// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QScriptValue>
#include <QString>
#include <QVariantMap>

#include <vector>

#include "host/inode.h"

class IDocument;
class IDocumentContext;
class IScriptRunner;
class QScriptContext;
class QScriptEngine;

// The common frame of the tools' script functions (tools.<name>). Constructing it runs the
// checks every function makes, in this order, and throws the first failure as a script error:
//   1. the engine belongs to a document      "Can't get document context"
//   2. that document has a script runner     "Can't get script runner"
//   3. not called with new                   "Do not call this as a constructor"
//   4. exactly the function's argument count the function's usage message
// The arguments are then converted one by one with dictionary() and nodes(), first to last, each
// into a fresh container; further checks of a converted argument go through fail(). Nothing is
// created before every check has passed, so a failing call leaves the document untouched.
//
// Converting runs the script's own code (getters, valueOf), which may throw or change the scene.
// An exception it throws is the call's error, and no message of the frame replaces it. A node
// list holds only nodes in the document's scene, and after every later conversion the frame
// checks that they still are, throwing the node list's own message when one is not.
//
//   ScriptCall call(context, engine, "Usage: tools.fitToView(params)", 1);
//   QVariantMap params;
//   if (!call.dictionary(0, "The parameter has to be a dictionary", &params)
//       || !call.numbers(params, {"padding"}))
//       return call.result();
//
// Every function returns result(): undefined for the script, after success and failure alike.
class ScriptCall
{
public:
    ScriptCall(QScriptContext *context,
               QScriptEngine *engine,
               const char *usage,
               int argumentCount);

    // Whether every check so far has passed.
    bool ok() const { return m_ok; }

    // Converts argument index with the script runner; on failure throws message.
    bool dictionary(int index, const char *message, QVariantMap *out);
    bool nodes(int index, const char *message, std::vector<INode *> *out);
    // Refuses a dictionary whose value for one of the keys is a number that does not fit in
    // single precision (IsUnfitScriptNumber), throwing
    // "<key> must be a finite number that fits in single precision" for the first such key.
    bool numbers(const QVariantMap &dictionary, const std::vector<const char *> &keys);
    // Throws message (once: the first failure is the one the script sees, and an exception the
    // script's own code threw while an argument was read stays the one it sees).
    bool fail(const char *message);
    bool fail(const QString &message);

    // Valid only when ok().
    IDocumentContext &documentContext() const { return *m_documentContext; }
    IDocument &document() const;

    QScriptValue result() const { return QScriptValue(); }

private:
    // Whether every node of the converted node list is still in the document's scene.
    bool nodesInScene() const;

    QScriptContext *m_context;
    IDocumentContext *m_documentContext = nullptr;
    IScriptRunner *m_runner = nullptr;
    bool m_ok = false;
    // The converted node list, guarded: code run by a later conversion may even free a node.
    std::vector<QPointer<INode>> m_nodes;
    const char *m_nodesMessage = nullptr;
};
