// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "host/iscriptrunner.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QScriptValue>

#include <memory>

class INode;
class QDialog;
class IDocumentContext;

namespace vantrel::host {

class BaseNode;
class Document;
class DocumentContext;
class ScriptTimeLimit;
class ToolRegistry;

// A document's script engine: one QScriptEngine per document with the globals `tools` (filled by
// RegisterFunction), `document` and `print` (see docs/scripting.md).
//
// Nodes reach scripts as Qt objects of the document (the document keeps ownership); a node is
// always the same script object, so `===` compares nodes. A whole evaluation is one undo step;
// a script that fails has its changes reverted.
class VANTREL_HOST_EXPORT ScriptRunner final : public QObject, public IScriptRunner
{
    Q_OBJECT

public:
    // Binds itself to the context (context.GetScriptRunner() answers this runner, and
    // documentContextFromScriptEngine(engine()) the context). The registry, if given, is what
    // document.toolTitles() and document.runTool() see.
    explicit ScriptRunner(DocumentContext &context, ToolRegistry *registry = nullptr);
    ~ScriptRunner() override;

    void RegisterFunction(const char *name, QScriptEngine::FunctionSignature function) override;
    // An array of this document's nodes in its scene, or one such node as a one-element list.
    // Reading the array may run the script's getters, which may throw (false, the exception left
    // pending) or take a node out of the scene: every node is judged after all were read.
    bool ToNodeList(const QScriptValue &value, std::vector<INode *> *out) override;
    // A plain script object (made with {} or new Object), nothing else, read into plain values by
    // ScriptValueReader. False with an exception pending when reading it threw or it is nested
    // too deep.
    bool ToDictionary(const QScriptValue &value, QVariantMap *out) override;

    // ToNodeList's verdict in full, for the host's own messages.
    enum class NodeListRead {
        Read,
        NotNodes, // not an array of nodes (or a node) of this document
        Gone,     // one of the nodes is no longer in the scene
        Threw     // reading an element threw; the exception is pending
    };
    NodeListRead readNodeList(const QScriptValue &value, std::vector<INode *> *out);
    // Any script value as plain values (see ScriptValueReader); false with an exception pending.
    bool readValue(const QScriptValue &value, QVariant *out);

    // Runs a whole program as one undo step. On an uncaught error it reverts the program's
    // changes, returns false and sets errorMessage to "<file>:<line>: <message>".
    bool evaluate(const QString &program, const QString &fileName, QString *errorMessage);

    // From now on evaluations share a time limit of `seconds` (> 0), counted from now: one still
    // running when it is reached stops between two of its steps, and one that would start after
    // it does not run; either fails as a script error does, with the message "<file>[:<line>]:
    // script stopped: time limit of <seconds> s reached". See ScriptTimeLimit.
    void setTimeLimit(double seconds);

    QScriptEngine *engine() const { return m_engine; }
    DocumentContext &context() const { return m_context; }
    Document &document() const;
    ToolRegistry *registry() const { return m_registry; }

    // The script object of a node (null for null), the same object every time.
    QScriptValue wrap(INode *node);
    // The node of a script object, if it is one of this document's nodes.
    BaseNode *unwrap(const QScriptValue &value) const;

    // Whole undo steps from a script: the running evaluation's changes so far become a step of
    // their own first, so that undo() takes back what the user expects.
    bool undoFromScript(bool redo);

    // The tool window open now (headless user interface), or null.
    QDialog *openWindow() const;

signals:
    // A line written by the script's print(...).
    void printed(const QString &line);

private:
    QScriptEngine *m_engine;
    DocumentContext &m_context;
    ToolRegistry *m_registry;
    QScriptValue m_tools;
    // As the engine started, before a script could replace them: what makes an object a plain
    // one, and the valueOf that plain objects inherit.
    QScriptValue m_objectPrototype;
    QScriptValue m_defaultValueOf;
    QScriptValue m_prototypes[4]; // by node kind: root, mesh, light, group
    // One script object per node, so that === compares nodes; dropped when the node is freed.
    QHash<BaseNode *, QScriptValue> m_wrappers;
    int m_evaluationDepth = 0;
    std::unique_ptr<ScriptTimeLimit> m_timeLimit;
};

// Makes documentContextFromScriptEngine(engine) answer context; for engines of hosts' own making.
VANTREL_HOST_EXPORT void bindScriptEngine(QScriptEngine *engine, IDocumentContext *context);

} // namespace vantrel::host
