// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/stepandrepeat/stepandrepeattool.h"

#include "frame/toolsupport.h"
#include "host/idocument.h"
#include "host/idocumentcontext.h"
#include "host/inode.h"
#include "host/iscriptrunner.h"
#include "host/iuserinterface.h"
#include "tools/stepandrepeat/stepandrepeatimpl.h"
#include "tools/stepandrepeat/stepandrepeatscript.h"
#include "tools/stepandrepeat/stepandrepeatwindow.h"

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

// Enabled for any selection, so that a wrong one gets the message below rather than a greyed-out
// entry that does not say why.
bool StepAndRepeatTool::IsEnabled(const IDocumentContext &context) const
{
    return HasSelection(context);
}

void StepAndRepeatTool::Execute(IDocumentContext &context)
{
    IDocument *document = context.GetDocument();
    IUserInterface *ui = context.GetUserInterface();
    if (!document || !ui)
        return; // nowhere to show the window: nothing to do
    if (!IsSingleShape(document->GetSelection())) {
        ui->ShowMessage(
            QStringLiteral("Step and Repeat tool requires a single shape object to be selected."),
            0);
        return;
    }
    // The window opens the undo group and builds the default grid before it is shown; the host
    // owns it from here and deletes it after it has closed.
    ui->ShowToolWindow(new StepAndRepeatWindow(*GetApplicationContext(), context, nullptr));
}

void StepAndRepeatTool::AttachToDocument(IDocumentContext &context)
{
    // A script function only: Step and Repeat has no tool-bar button.
    if (IScriptRunner *runner = context.GetScriptRunner())
        runner->RegisterFunction("stepAndRepeat", StepAndRepeatScript);
}
