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

// What a tool whose window is not part of this build answers when it is run: a message instead
// of silence, and no change to the document.
inline void ReportNotAvailable(IDocumentContext &context, const QString &title)
{
    if (IUserInterface *ui = context.GetUserInterface())
        ui->ShowMessage(
            QStringLiteral("%1 is not available in this version of the tools plug-in.").arg(title),
            0);
}
