// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "frame/scriptcall.h"

#include "host/hostfunctions.h"
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
    *out = converted;
    return true;
}

bool ScriptCall::fail(const char *message)
{
    if (m_context->state() != QScriptContext::ExceptionState)
        m_context->throwError(QString::fromLatin1(message));
    m_ok = false;
    return false;
}

IDocument &ScriptCall::document() const
{
    return *m_documentContext->GetDocument();
}
