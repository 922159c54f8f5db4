// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class QAction;
class QDialog;
class QString;

// The user interface of one document window. It is a QObject: tool-bar helpers and their
// actions are its Qt children and live as long as it does.
class IUserInterface : public QObject
{
public:
    // Same order as the host's declaration: the vtable layout is part of the boundary.
    // Puts the action on the window's tool bar; position is the sort key, lowest first.
    virtual void AddToolbarAction(QAction *action, int position) = 0;
    // kind: 0 information, 1 warning, 2 error.
    virtual void ShowMessage(const QString &text, int kind) = 0;
    // Takes ownership of the window, shows it, and deletes it after it has closed.
    virtual void ShowToolWindow(QDialog *window) = 0;

protected:
    explicit IUserInterface(QObject *parent = nullptr)
        : QObject(parent)
    {}
};
