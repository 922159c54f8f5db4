// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/stack/stacktool.h"

#include "frame/toolsupport.h"
#include "host/iscriptrunner.h"
#include "tools/stack/stackclassification.h"
#include "tools/stack/stackscript.h"
#include "tools/stack/stacksettings.h"
#include "tools/stack/stackwindow.h"

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
    IDocument *document = context.GetDocument();
    IUserInterface *ui = context.GetUserInterface();
    // The selection's order is the stacking order, bottom first.
    std::vector<INode *> nodes = document->GetSelection();
    if (nodes.empty()) {
        ui->ShowMessage(QStringLiteral("Can't built a stack: nothing selected"), 0);
        return;
    }
    switch (FilterStackableNodes(nodes)) {
    case AllSuitable:
        ui->ShowToolWindow(new StackWindow(
            nodes, *GetApplicationContext(), context, int(StackRepeatSetting.initial), nullptr));
        break;
    case NoneSuitable:
        ui->ShowMessage(QStringLiteral("None of the selected shapes are suitable for stacking. "
                                       "Please select flat stackable object, like a book or box."),
                        0);
        break;
    case SomeUnsuitable:
        ui->ShowMessage(QStringLiteral("Some of the selected shapes are not suitable for stacking. "
                                       "Please select flat stackable objects only, like books or "
                                       "boxes."),
                        0);
        break;
    }
}

void StackTool::AttachToDocument(IDocumentContext &context)
{
    if (IScriptRunner *runner = context.GetScriptRunner())
        runner->RegisterFunction("stack", StackScript);
}
