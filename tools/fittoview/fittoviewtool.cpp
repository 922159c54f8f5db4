// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/fittoview/fittoviewtool.h"

#include "frame/toolsupport.h"
#include "host/idocumentcontext.h"
#include "host/iscriptrunner.h"
#include "host/iuserinterface.h"
#include "tools/fittoview/fittoviewscript.h"
#include "tools/fittoview/fittoviewtoolbarhelper.h"
#include "tools/fittoview/fittoviewwindow.h"

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
    IUserInterface *ui = context.GetUserInterface();
    // The window saves and fits the camera before it is shown.
    ui->ShowToolWindow(new FitToViewWindow(*GetApplicationContext(), context, nullptr));
}

void FitToViewTool::AttachToDocument(IDocumentContext &context)
{
    if (IScriptRunner *runner = context.GetScriptRunner())
        runner->RegisterFunction("fitToView", FitToViewScript);
    if (context.GetUserInterface())
        new FitToViewToolbarHelper(this, &context);
}
