// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "plugin/fittoviewtool.h"

#include "plugin/toolsupport.h"

QString FitToViewTool::GetTitle() const
{
    return QStringLiteral("Fit To View...");
}

QKeySequence FitToViewTool::GetShortcut() const
{
    return QKeySequence(Qt::Key_V);
}

int FitToViewTool::GetOrder() const
{
    return 0;
}

bool FitToViewTool::IsEnabled(const IDocumentContext &) const
{
    return true;
}

void FitToViewTool::Execute(IDocumentContext &context)
{
    ReportNotAvailable(context, GetTitle());
}

void FitToViewTool::AttachToDocument(IDocumentContext &) {}
