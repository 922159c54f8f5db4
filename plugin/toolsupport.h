// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/idocument.h"
#include "host/idocumentcontext.h"
#include "host/iuserinterface.h"

#include <QString>

// The enabled rule of the tools that work on the selection: at least one node is selected.
inline bool HasSelection(const IDocumentContext &context)
{
    const IDocument *document = context.GetDocumentForReading();
    return document && !document->GetSelection().empty();
}
