// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

class IDocument;
class IScriptRunner;
class IUserInterface;

// The context of one document: its document, the user interface of its window and its script
// runner. It lives as long as the document window; the host hands it to every tool operation.
class IDocumentContext
{
public:
    IDocumentContext(const IDocumentContext &) = delete;
    IDocumentContext &operator=(const IDocumentContext &) = delete;

    // Same order as the host's declaration: the vtable layout is part of the boundary.
    virtual IDocument *GetDocument() = 0;                       // for reading and changing
    virtual const IDocument *GetDocumentForReading() const = 0; // the same document, read only
    virtual IUserInterface *GetUserInterface() const = 0; // null when the document has no window
    virtual IScriptRunner *GetScriptRunner() const = 0;   // null when it has no script engine

protected:
    IDocumentContext() = default;
    virtual ~IDocumentContext() = default;
};
