// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/script/scriptrunner.h"

#include "host/hostfunctions.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/document/documentcontext.h"
#include "hostapp/core/document/headlessuserinterface.h"
#include "hostapp/core/scene/basenode.h"
#include "hostapp/core/script/documentscriptapi.h"
#include "hostapp/core/script/nodescriptapi.h"
#include "hostapp/core/script/scripttimelimit.h"
#include "hostapp/core/script/scriptvaluereader.h"

#include <QScriptContext>
#include <QScriptEngine>

#include <QPointer>

namespace vantrel::host {

namespace {

// The engine's dynamic property that names its document context.
const char *const ContextProperty = "vantrelDocumentContext";

// The Qt wrapper a node's script object holds shows nothing of QObject (no objectName, no
// deleteLater): the script API is the accessors of the node prototypes.
const QScriptEngine::QObjectWrapOptions NodeWrapOptions
    = QScriptEngine::PreferExistingWrapperObject | QScriptEngine::ExcludeSuperClassContents
      | QScriptEngine::ExcludeDeleteLater | QScriptEngine::ExcludeChildObjects;

QScriptValue print(QScriptContext *context, QScriptEngine *engine)
{
    QStringList parts;
    for (int i = 0; i < context->argumentCount(); ++i) {
        parts.append(context->argument(i).toString());
        // An object's toString may throw (or run out of stack): then nothing is printed.
        if (engine->hasUncaughtException())
            return QScriptValue();
    }
    if (auto *runner = qobject_cast<ScriptRunner *>(engine->parent()))
        emit runner->printed(parts.join(QLatin1Char(' ')));
    return engine->undefinedValue();
}

} // namespace

void bindScriptEngine(QScriptEngine *engine, IDocumentContext *context)
{
    engine->setProperty(ContextProperty, QVariant::fromValue(quintptr(context)));
}

ScriptRunner::ScriptRunner(DocumentContext &context, ToolRegistry *registry)
    : m_engine(new QScriptEngine(this))
    , m_context(context)
    , m_registry(registry)
{
    bindScriptEngine(m_engine, &context);
    context.setScriptRunner(this);
    m_objectPrototype = m_engine->globalObject()
                            .property(QStringLiteral("Object"))
                            .property(QStringLiteral("prototype"));
    m_defaultValueOf = m_objectPrototype.property(QStringLiteral("valueOf"));
    for (int kind = 0; kind < 4; ++kind)
        m_prototypes[kind] = makeNodePrototype(m_engine, kind);
    QScriptValue global = m_engine->globalObject();
    m_tools = m_engine->newObject();
    global.setProperty(QStringLiteral("tools"), m_tools, QScriptValue::Undeletable);
    global.setProperty(
        QStringLiteral("document"), makeDocumentObject(m_engine), QScriptValue::Undeletable);
    global.setProperty(QStringLiteral("print"), m_engine->newFunction(print));
}

ScriptRunner::~ScriptRunner()
{
    if (m_context.GetScriptRunner() == this)
        m_context.setScriptRunner(nullptr);
    bindScriptEngine(m_engine, nullptr);
}

Document &ScriptRunner::document() const
{
    return *m_context.document();
}

void ScriptRunner::RegisterFunction(const char *name, QScriptEngine::FunctionSignature function)
{
    m_tools.setProperty(QString::fromLatin1(name), m_engine->newFunction(function));
}

bool ScriptRunner::ToNodeList(const QScriptValue &value, std::vector<INode *> *out)
{
    return readNodeList(value, out) == NodeListRead::Read;
}

ScriptRunner::NodeListRead ScriptRunner::readNodeList(const QScriptValue &value,
                                                      std::vector<INode *> *out)
{
    // Guarded pointers: an element's getter may even free a node read before it (an undone
    // creation whose redo a later change discards).
    std::vector<QPointer<BaseNode>> read;
    if (BaseNode *single = unwrap(value)) {
        read.emplace_back(single);
    } else if (value.isArray()) {
        const quint32 length = value.property(QStringLiteral("length")).toUInt32();
        for (quint32 i = 0; i < length; ++i) {
            const QScriptValue element = value.property(i);
            if (m_engine->hasUncaughtException())
                return NodeListRead::Threw;
            BaseNode *node = unwrap(element);
            if (!node)
                return NodeListRead::NotNodes; // one element that is not a node spoils the list
            read.emplace_back(node);
        }
    } else {
        return NodeListRead::NotNodes;
    }
    std::vector<INode *> nodes;
    nodes.reserve(read.size());
    for (const QPointer<BaseNode> &node : read) {
        if (!node || !node->isInScene())
            return NodeListRead::Gone;
        nodes.push_back(node);
    }
    *out = std::move(nodes);
    return NodeListRead::Read;
}

bool ScriptRunner::ToDictionary(const QScriptValue &value, QVariantMap *out)
{
    // Only objects whose prototype is Object.prototype: arrays, functions, dates, regular
    // expressions and Qt objects (nodes) all have prototypes of their own.
    if (!value.isObject() || value.isQObject() || value.isVariant()
        || !value.prototype().strictlyEquals(m_objectPrototype))
        return false;
    return ScriptValueReader(m_engine, m_defaultValueOf).readProperties(value, out);
}

bool ScriptRunner::readValue(const QScriptValue &value, QVariant *out)
{
    return ScriptValueReader(m_engine, m_defaultValueOf).read(value, out);
}

void ScriptRunner::setTimeLimit(double seconds)
{
    m_timeLimit = std::make_unique<ScriptTimeLimit>(m_engine, seconds);
}

bool ScriptRunner::evaluate(const QString &program, const QString &fileName, QString *errorMessage)
{
    // Only the outermost evaluation keeps time; one made from inside a script is part of it.
    ScriptTimeLimit *limit = m_evaluationDepth == 0 ? m_timeLimit.get() : nullptr;
    if (limit && limit->expired()) {
        if (errorMessage)
            *errorMessage = limit->message(fileName);
        return false;
    }
    UndoHistory &history = document().history();
    history.setNextStepName(QStringLiteral("Script"));
    history.beginGroup();
    const int groups = history.openGroupCount();
    ++m_evaluationDepth;
    if (limit)
        limit->arm();
    const QScriptValue result = m_engine->evaluate(program, fileName);
    const bool stopped = limit && limit->disarm();
    --m_evaluationDepth;
    // A tool window the script left open keeps its own group open; close it the way Cancel
    // would, so that the script's group is the innermost again.
    if (history.openGroupCount() > groups) {
        if (QDialog *window = openWindow())
            delete window;
    }
    while (history.openGroupCount() > groups)
        history.cancelGroup();
    if (stopped || m_engine->hasUncaughtException()) {
        if (errorMessage && stopped) {
            *errorMessage = limit->message(limit->where().isEmpty() ? fileName : limit->where());
        } else if (errorMessage) {
            *errorMessage = QStringLiteral("%1:%2: %3")
                                .arg(fileName)
                                .arg(m_engine->uncaughtExceptionLineNumber())
                                .arg(result.toString());
        }
        m_engine->clearExceptions();
        history.cancelGroup();
        emit document().changed();
        return false;
    }
    history.endGroup(UndoHistory::EmptyGroup::Drop);
    return true;
}

QScriptValue ScriptRunner::wrap(INode *node)
{
    auto *own = document().ownNode(node);
    if (!own)
        return m_engine->nullValue();
    const auto existing = m_wrappers.constFind(own);
    if (existing != m_wrappers.constEnd())
        return *existing;
    // A plain object with the node's prototype, holding the node in its data. Were the node's
    // own Qt wrapper the script object, QtScript would answer a member of a node that was freed
    // (a copy a cancelled tool window took back) with its own message before the prototype's
    // accessor could say that the node no longer exists.
    QScriptValue object = m_engine->newObject();
    const int kind = own->GetNodeType();
    object.setPrototype(m_prototypes[kind >= 0 && kind < 4 ? kind : 3]);
    object.setData(m_engine->newQObject(own, QScriptEngine::QtOwnership, NodeWrapOptions));
    m_wrappers.insert(own, object);
    connect(own, &QObject::destroyed, this, [this, own] { m_wrappers.remove(own); });
    return object;
}

BaseNode *ScriptRunner::unwrap(const QScriptValue &value) const
{
    if (!value.isObject())
        return nullptr;
    auto *node = qobject_cast<BaseNode *>(value.data().toQObject());
    return node && node->document() == &document() ? node : nullptr;
}

bool ScriptRunner::undoFromScript(bool redo)
{
    UndoHistory &history = document().history();
    const bool inScript = m_evaluationDepth > 0 && history.openGroupCount() == 1;
    if (inScript)
        history.endGroup(UndoHistory::EmptyGroup::Drop);
    const bool done = redo ? document().redo() : document().undo();
    if (inScript) {
        history.setNextStepName(QStringLiteral("Script"));
        history.beginGroup();
    }
    return done;
}

QDialog *ScriptRunner::openWindow() const
{
    auto *ui = qobject_cast<HeadlessUserInterface *>(m_context.GetUserInterface());
    return ui ? ui->openWindow() : nullptr;
}

} // namespace vantrel::host
