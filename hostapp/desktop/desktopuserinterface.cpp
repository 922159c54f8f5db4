// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/desktop/desktopuserinterface.h"

#include <QAbstractButton>
#include <QAction>
#include <QDialog>
#include <QMessageBox>
#include <QToolBar>

#include <algorithm>

namespace vantrel::host {

DesktopUserInterface::DesktopUserInterface(QWidget *window, QToolBar *toolBar, QObject *parent)
    : IUserInterface(parent)
    , m_window(window)
    , m_toolBar(toolBar)
{}

void DesktopUserInterface::AddToolbarAction(QAction *action, int position)
{
    if (!action || !m_toolBar)
        return;
    m_entries.erase(std::remove_if(m_entries.begin(),
                                   m_entries.end(),
                                   [](const Entry &e) { return e.action.isNull(); }),
                    m_entries.end());
    // After every action of a lower or equal position: equal positions keep their arrival order.
    const auto at
        = std::upper_bound(m_entries.begin(), m_entries.end(), position, [](int p, const Entry &e) {
              return p < e.position;
          });
    QAction *before = at == m_entries.end() ? nullptr : at->action.data();
    m_entries.insert(at, Entry{action, position});
    m_toolBar->insertAction(before, action);
    if (auto *button = qobject_cast<QAbstractButton *>(m_toolBar->widgetForAction(action)))
        connect(button, &QAbstractButton::pressed, this, [this, action] {
            emit toolbarActionPressed(action);
        });
}

void DesktopUserInterface::ShowMessage(const QString &text, int kind)
{
    emit messageShown(text, kind);
    const QString title = QStringLiteral("Vantrel");
    switch (kind) {
    case 1:
        QMessageBox::warning(m_window, title, text);
        break;
    case 2:
        QMessageBox::critical(m_window, title, text);
        break;
    default:
        QMessageBox::information(m_window, title, text);
        break;
    }
}

void DesktopUserInterface::ShowToolWindow(QDialog *window)
{
    if (!window)
        return;
    if (m_window)
        window->setParent(m_window, window->windowFlags());
    m_open = window;
    window->exec();
    // Deleting the closed window settles its settings: kept when accepted, taken back otherwise.
    delete m_open.data();
}

} // namespace vantrel::host
