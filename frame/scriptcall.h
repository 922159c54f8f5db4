// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QScriptValue>
#include <QString>
#include <QVariantMap>

#include <vector>

class IDocument;
class IDocumentContext;
class INode;
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
//   ScriptCall call(context, engine, "Usage: tools.fitToView(params)", 1);
//   QVariantMap params;
//   if (!call.dictionary(0, "The parameter has to be a dictionary", &params))
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
    // Throws message (once: the first failure is the one the script sees).
    bool fail(const char *message);

    // Valid only when ok().
    IDocumentContext &documentContext() const { return *m_documentContext; }
    IDocument &document() const;

    QScriptValue result() const { return QScriptValue(); }

private:
    QScriptContext *m_context;
    IDocumentContext *m_documentContext = nullptr;
    IScriptRunner *m_runner = nullptr;
    bool m_ok = false;
};
