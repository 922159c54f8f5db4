// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "plugin/stacktool.h"

#include "plugin/toolsupport.h"

QString StackTool::GetTitle() const
{
    return QStringLiteral("Stack...");
}

QKeySequence StackTool::GetShortcut() const
{
    return QKeySequence();
}

int StackTool::GetOrder() const
{
    return 3;
}

bool StackTool::IsEnabled(const IDocumentContext &context) const
{
    return HasSelection(context);
}

void StackTool::Execute(IDocumentContext &context)
{
    ReportNotAvailable(context, GetTitle());
}

void StackTool::AttachToDocument(IDocumentContext &) {}
