// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/iuserinterface.h"
#include "hostapp/desktop/desktopexport.h"

#include <QDialog>
#include <QList>
#include <QPointer>

class QToolBar;
class QWidget;

namespace vantrel::host {

// The user interface of a document window on the desktop. Tool-bar actions go on the window's
// tool bar, sorted by position; messages are message boxes; tool windows are modal: the window
// runs until it closes and is deleted at once, so two tools' undo groups never interleave.
class VANTREL_DESKTOP_EXPORT DesktopUserInterface final : public IUserInterface
{
    Q_OBJECT

public:
    // window: the parent of message boxes and tool windows; toolBar: where actions go.
    DesktopUserInterface(QWidget *window, QToolBar *toolBar, QObject *parent = nullptr);

    void AddToolbarAction(QAction *action, int position) override;
    void ShowMessage(const QString &text, int kind) override;
    void ShowToolWindow(QDialog *window) override;

    // The tool window running now, or null.
    QDialog *openWindow() const { return m_open.data(); }

signals:
    void messageShown(const QString &text, int kind);
    // A tool-bar button went down: its action is about to run. The window names the undo step
    // the action makes before the tool's own handler opens it.
    void toolbarActionPressed(QAction *action);

private:
    struct Entry
    {
        QPointer<QAction> action;
        int position;
    };

    QPointer<QWidget> m_window;
    QPointer<QToolBar> m_toolBar;
    QList<Entry> m_entries;
    QPointer<QDialog> m_open;
};

} // namespace vantrel::host
