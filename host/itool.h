// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QKeySequence>
#include <QString>

class IDocumentContext;

// One tool of a plug-in, as listed in the host's tool list. Tools hold no state: every answer
// depends only on the arguments. The host owns the tool objects and calls them on the GUI thread,
// in any order and any number of times after the plug-in registered them.
class ITool
{
public:
    ITool(const ITool &) = delete;
    ITool &operator=(const ITool &) = delete;

    // Same order as the host's declaration: the vtable layout is part of the boundary.
    virtual ~ITool() = default;
    virtual QString GetTitle() const = 0;         // ends in "..." when the tool opens a window
    virtual QKeySequence GetShortcut() const = 0; // empty for none
    virtual int GetOrder() const = 0;             // sort key of the tool list, lowest first
    // Whether the tool can run on the document; reads only.
    virtual bool IsEnabled(const IDocumentContext &context) const = 0;
    // Runs the tool; failures are shown with IUserInterface::ShowMessage, never thrown.
    virtual void Execute(IDocumentContext &context) = 0;
    // Publishes the tool's script function and tool-bar button for a document context. The host
    // calls it once per document window; every call registers anew.
    virtual void AttachToDocument(IDocumentContext &context) = 0;

protected:
    ITool() = default;
};
