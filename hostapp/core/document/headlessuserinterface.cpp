// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/document/headlessuserinterface.h"

#include <QAction>
#include <QDialog>

#include <algorithm>

namespace vantrel::host {

HeadlessUserInterface::HeadlessUserInterface(QObject *parent)
    : IUserInterface(parent)
{}

HeadlessUserInterface::~HeadlessUserInterface()
{
    // A window still open is owned here; deleting it settles its settings (unaccepted: cancelled).
    delete m_window.data();
}

void HeadlessUserInterface::AddToolbarAction(QAction *action, int position)
{
    if (!action)
        return;
    const auto at = std::upper_bound(m_toolbar.begin(),
                                     m_toolbar.end(),
                                     position,
                                     [](int p, const ToolbarEntry &e) { return p < e.position; });
    m_toolbar.insert(at, ToolbarEntry{action, position});
}

QList<QAction *> HeadlessUserInterface::toolbarActions() const
{
    QList<QAction *> actions;
    for (const ToolbarEntry &entry : m_toolbar) {
        if (entry.action)
            actions.append(entry.action.data());
    }
    return actions;
}

void HeadlessUserInterface::ShowMessage(const QString &text, int kind)
{
    m_messages.append(Message{text, kind});
    emit messageShown(text, kind);
}

void HeadlessUserInterface::ShowToolWindow(QDialog *window)
{
    if (!window)
        return;
    if (m_window) {
        // One tool window at a time, as with modal windows on a desktop. The newcomer was built
        // while the open window's undo group was still open, so its own group lies inside that
        // one; closing the open window first would cancel the newcomer's group instead of its
        // own. So the newcomer goes, at once and as Cancel would close it.
        window->reject();
        delete window;
        return;
    }
    m_window = window;
    connect(window, &QDialog::finished, window, &QObject::deleteLater);
    window->show();
}

} // namespace vantrel::host
