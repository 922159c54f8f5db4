// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "plugin/easylightingtool.h"

#include "plugin/toolsupport.h"

QString EasyLightingTool::GetTitle() const
{
    return QStringLiteral("Easy Lighting...");
}

QKeySequence EasyLightingTool::GetShortcut() const
{
    return QKeySequence(Qt::Key_L);
}

int EasyLightingTool::GetOrder() const
{
    return 1;
}

bool EasyLightingTool::IsEnabled(const IDocumentContext &) const
{
    return true;
}

void EasyLightingTool::Execute(IDocumentContext &context)
{
    ReportNotAvailable(context, GetTitle());
}

void EasyLightingTool::AttachToDocument(IDocumentContext &) {}
