// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "frame/toolbarhelper.h"

#include "host/idocumentcontext.h"
#include "host/itool.h"
#include "host/iuserinterface.h"

#include <QAction>

ToolbarHelper::ToolbarHelper(ITool *tool,
                             IDocumentContext *context,
                             const QString &buttonId,
                             int position)
    : m_context(context)
    , m_tool(tool)
{
    IUserInterface *ui = context->GetUserInterface();
    setParent(ui);
    m_action = new QAction(ui);
    m_action->setText(tool->GetTitle());
    m_action->setProperty("buttonId", buttonId);
    ui->AddToolbarAction(m_action, position);
}

void ToolbarHelper::runTool()
{
    m_tool->Execute(*m_context);
}
