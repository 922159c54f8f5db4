// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/idocument.h"
#include "host/idocumentcontext.h"
#include "host/iuserinterface.h"

#include <QString>

class IApplicationContext;

// The enabled rule of the tools that work on the selection: at least one node is selected.
inline bool HasSelection(const IDocumentContext &context)
{
    const IDocument *document = context.GetDocumentForReading();
    return document && !document->GetSelection().empty();
}

// The application context of the plug-in's last initialisation, for the rest of the process;
// null before the first. Tool windows need it to build their property panels.
IApplicationContext *GetApplicationContext();
// Kept by the plug-in when the host initialises it; never cleared, since the host's application
// context outlives the plug-in object and tool windows opened later still need it.
void SetApplicationContext(IApplicationContext *context);
