// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "plugin/stepandrepeattool.h"

#include "plugin/toolsupport.h"

QString StepAndRepeatTool::GetTitle() const
{
    return QStringLiteral("Step and Repeat...");
}

QKeySequence StepAndRepeatTool::GetShortcut() const
{
    return QKeySequence();
}

int StepAndRepeatTool::GetOrder() const
{
    return 4;
}

bool StepAndRepeatTool::IsEnabled(const IDocumentContext &context) const
{
    return HasSelection(context);
}

void StepAndRepeatTool::Execute(IDocumentContext &context)
{
    ReportNotAvailable(context, GetTitle());
}

void StepAndRepeatTool::AttachToDocument(IDocumentContext &) {}
