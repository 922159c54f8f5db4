// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "frame/toolsettings.h"

#include "host/idocument.h"

ToolSettings::ToolSettings(IDocument *document, bool opensUndoGroup)
    : m_document(document)
    , m_opensUndoGroup(opensUndoGroup && document)
{
    if (m_opensUndoGroup)
        m_document->BeginUndoGroup();
}

ToolSettings::~ToolSettings()
{
    if (!m_opensUndoGroup)
        return;
    if (m_accepted)
        m_document->EndUndoGroup();
    else
        m_document->CancelUndoGroup();
}
