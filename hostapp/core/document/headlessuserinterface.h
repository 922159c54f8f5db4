// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "host/iuserinterface.h"

#include <QDialog>
#include <QList>
#include <QPointer>
#include <QString>

class QAction;

namespace vantrel::host {

// The user interface of a document without a desktop window: `vantrel run` and the tests use it.
// It keeps what the tools show — messages, tool-bar actions and the one open tool window — so
// that a script or a test can read and drive them. A tool window is deleted (deleteLater) after
// it has closed. While one is open or not yet deleted, a further tool window is refused: it is
// closed as Cancel would close it and deleted at once (document.runTool closes the open window
// itself before it runs the next tool).
class VANTREL_HOST_EXPORT HeadlessUserInterface final : public IUserInterface
{
    Q_OBJECT

public:
    struct Message
    {
        QString text;
        int kind;
    };

    explicit HeadlessUserInterface(QObject *parent = nullptr);
    ~HeadlessUserInterface() override;

    void AddToolbarAction(QAction *action, int position) override;
    void ShowMessage(const QString &text, int kind) override;
    void ShowToolWindow(QDialog *window) override;

    const QList<Message> &messages() const { return m_messages; }
    // The tool-bar actions that still exist, by position (equal positions in arrival order).
    QList<QAction *> toolbarActions() const;
    // The tool window open now, or null.
    QDialog *openWindow() const { return m_window.data(); }

signals:
    void messageShown(const QString &text, int kind);

private:
    struct ToolbarEntry
    {
        QPointer<QAction> action;
        int position;
    };

    QList<Message> m_messages;
    QList<ToolbarEntry> m_toolbar;
    QPointer<QDialog> m_window;
};

} // namespace vantrel::host
