// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "host/idocumentcontext.h"

namespace vantrel::host {

class Document;

// Binds a document to the user interface of its window and its script runner, either of which
// may be absent. It owns none of the three.
class VANTREL_HOST_EXPORT DocumentContext final : public IDocumentContext
{
public:
    DocumentContext(Document *document,
                    IUserInterface *userInterface = nullptr,
                    IScriptRunner *scriptRunner = nullptr);
    ~DocumentContext() override;

    IDocument *GetDocument() override;
    const IDocument *GetDocumentForReading() const override;
    IUserInterface *GetUserInterface() const override { return m_userInterface; }
    IScriptRunner *GetScriptRunner() const override { return m_scriptRunner; }

    Document *document() const { return m_document; }
    void setUserInterface(IUserInterface *userInterface) { m_userInterface = userInterface; }
    void setScriptRunner(IScriptRunner *scriptRunner) { m_scriptRunner = scriptRunner; }

private:
    Document *m_document;
    IUserInterface *m_userInterface;
    IScriptRunner *m_scriptRunner;
};

} // namespace vantrel::host
