// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/document/documentcontext.h"

#include "hostapp/core/document/document.h"

namespace vantrel::host {

DocumentContext::DocumentContext(Document *document,
                                 IUserInterface *userInterface,
                                 IScriptRunner *scriptRunner)
    : m_document(document)
    , m_userInterface(userInterface)
    , m_scriptRunner(scriptRunner)
{}

DocumentContext::~DocumentContext() = default;

IDocument *DocumentContext::GetDocument()
{
    return m_document;
}

const IDocument *DocumentContext::GetDocumentForReading() const
{
    return m_document;
}

} // namespace vantrel::host
