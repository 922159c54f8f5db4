// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "frame/scriptcall.h"

#include "frame/scriptsettings.h"
#include "host/hostfunctions.h"
#include "host/idocument.h"
#include "host/idocumentcontext.h"
#include "host/iscriptrunner.h"

#include <QScriptContext>

ScriptCall::ScriptCall(QScriptContext *context,
                       QScriptEngine *engine,
                       const char *usage,
                       int argumentCount)
    : m_context(context)
{
    m_documentContext = documentContextFromScriptEngine(engine);
    if (!m_documentContext) {
        fail("Can't get document context");
        return;
    }
    m_runner = m_documentContext->GetScriptRunner();
    if (!m_runner) {
        fail("Can't get script runner");
        return;
    }
    if (context->isCalledAsConstructor()) {
        fail("Do not call this as a constructor");
        return;
    }
    if (context->argumentCount() != argumentCount) {
        fail(usage);
        return;
    }
    m_ok = true;
}

bool ScriptCall::dictionary(int index, const char *message, QVariantMap *out)
{
    if (!m_ok)
        return false;
    QVariantMap converted;
    if (!m_runner->ToDictionary(m_context->argument(index), &converted))
        return fail(message);
    // The dictionary's getters may have taken a node of an earlier argument out of the scene.
    if (!nodesInScene())
        return fail(m_nodesMessage);
    *out = converted;
    return true;
}

bool ScriptCall::nodes(int index, const char *message, std::vector<INode *> *out)
{
    if (!m_ok)
        return false;
    std::vector<INode *> converted;
    if (!m_runner->ToNodeList(m_context->argument(index), &converted))
        return fail(message);
    if (!nodesInScene())
        return fail(m_nodesMessage);
    m_nodes.assign(converted.begin(), converted.end());
    m_nodesMessage = message;
    *out = converted;
    return true;
}

bool ScriptCall::numbers(const QVariantMap &dictionary, const std::vector<const char *> &keys)
{
    if (!m_ok)
        return false;
    for (const char *key : keys) {
        const auto found = dictionary.constFind(QLatin1String(key));
        if (found != dictionary.constEnd() && IsUnfitScriptNumber(*found))
            return fail(QStringLiteral("%1 must be a finite number that fits in single precision")
                            .arg(QLatin1String(key)));
    }
    return true;
}

bool ScriptCall::nodesInScene() const
{
    const INode *root = m_documentContext->GetDocument()->GetRootNode();
    for (const QPointer<INode> &node : m_nodes) {
        const INode *top = node;
        if (!top)
            return false;
        while (top->GetParent())
            top = top->GetParent();
        if (top != root)
            return false;
    }
    return true;
}

bool ScriptCall::fail(const char *message)
{
    return fail(QString::fromLatin1(message));
}

bool ScriptCall::fail(const QString &message)
{
    if (m_context->state() != QScriptContext::ExceptionState)
        m_context->throwError(message);
    m_ok = false;
    return false;
}

IDocument &ScriptCall::document() const
{
    return *m_documentContext->GetDocument();
}
