// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/easylighting/easylightingtool.h"

#include "frame/toolsupport.h"
#include "host/idocumentcontext.h"
#include "host/iscriptrunner.h"
#include "host/iuserinterface.h"
#include "tools/easylighting/easylightingscript.h"
#include "tools/easylighting/easylightingwindow.h"
#include "tools/easylighting/easylighttoolbarhelper.h"

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
    IUserInterface *ui = context.GetUserInterface();
    // The window opens the undo group, adopts or creates the light and hides the others before
    // it is shown.
    ui->ShowToolWindow(new EasyLightingWindow(*GetApplicationContext(), context, nullptr));
}

void EasyLightingTool::AttachToDocument(IDocumentContext &context)
{
    if (IScriptRunner *runner = context.GetScriptRunner())
        runner->RegisterFunction("easyLighting", EasyLightingScript);
    if (context.GetUserInterface())
        new EasyLightToolbarHelper(this, &context);
}
