// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/ui/hostuiexport.h"

#include <QString>
#include <QWidget>

class QLineEdit;
class QToolButton;

// A path field with a button that opens a file dialog. A path typed and confirmed with Enter,
// or picked in the dialog, is a user edit and emits pathEdited; an empty path is a valid edit
// (it clears whatever the path stood for).
class VANTREL_HOSTUI_EXPORT FileChooser : public QWidget
{
    Q_OBJECT

public:
    // filter: the file dialog's name filter, e.g. "Images (*.png *.jpg)".
    explicit FileChooser(const QString &filter, QWidget *parent = nullptr);

    QString path() const;
    // Shows a path without emitting anything.
    void setPath(const QString &path);
    QLineEdit *field() const { return m_field; }
    QToolButton *button() const { return m_button; }

signals:
    void pathEdited(const QString &path);

private:
    void browse();

    QString m_filter;
    QLineEdit *m_field;
    QToolButton *m_button;
};
