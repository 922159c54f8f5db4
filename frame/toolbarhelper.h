// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class IDocumentContext;
class ITool;
class QAction;

// Puts a tool's button on a document window's tool bar. The helper and its action are Qt
// children of the window's user interface and live as long as it does. Pressing the button runs
// the tool on the document context the helper was made for, whichever document is active then.
class ToolbarHelper : public QObject
{
    Q_OBJECT

protected:
    // The context must have a user interface. The action's text is the tool's title; its
    // "buttonId" property names the button for the host.
    ToolbarHelper(ITool *tool, IDocumentContext *context, const QString &buttonId, int position);

    QAction *action() const { return m_action; }
    // Runs the tool on the kept context.
    void runTool();

private:
    IDocumentContext *m_context;
    ITool *m_tool;
    QAction *m_action;
};
