// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/ui/filechooser.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QToolButton>

FileChooser::FileChooser(const QString &filter, QWidget *parent)
    : QWidget(parent)
    , m_filter(filter)
    , m_field(new QLineEdit(this))
    , m_button(new QToolButton(this))
{
    m_field->setObjectName(QStringLiteral("path"));
    m_field->setPlaceholderText(tr("none"));
    m_field->setClearButtonEnabled(true);
    m_button->setObjectName(QStringLiteral("browse"));
    m_button->setText(QStringLiteral("\u2026"));
    m_button->setToolTip(tr("Choose a file"));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    layout->addWidget(m_field, 1);
    layout->addWidget(m_button, 0);
    connect(m_field, &QLineEdit::returnPressed, this, [this] {
        if (m_field->isModified()) {
            m_field->setModified(false);
            emit pathEdited(m_field->text().trimmed());
        }
    });
    connect(m_button, &QToolButton::clicked, this, &FileChooser::browse);
}

QString FileChooser::path() const
{
    return m_field->text();
}

void FileChooser::setPath(const QString &path)
{
    m_field->setText(path);
    m_field->setModified(false);
}

void FileChooser::browse()
{
    // Qt's own dialog rather than the platform's, so that it is a child of this window that
    // behaves the same on every desktop (and that tests can answer).
    QFileDialog dialog(window(), tr("Choose a File"), QFileInfo(path()).absolutePath(), m_filter);
    dialog.setObjectName(QStringLiteral("fileChooserDialog"));
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setFileMode(QFileDialog::ExistingFile);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return;
    const QString chosen = dialog.selectedFiles().constFirst();
    setPath(chosen);
    emit pathEdited(chosen);
}
