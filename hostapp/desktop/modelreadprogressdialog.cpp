// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/desktop/modelreadprogressdialog.h"

#include <QApplication>
#include <QFileInfo>
#include <QProgressDialog>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace vantrel::host {

ModelReadProgressDialog::ModelReadProgressDialog(QWidget *window)
    : m_window(window)
    , m_scope(this)
{}

ModelReadProgressDialog::~ModelReadProgressDialog()
{
    delete m_dialog.data();
}

QProgressDialog *ModelReadProgressDialog::dialog() const
{
    return m_dialog;
}

int ModelReadProgressDialog::cancelsSoFar()
{
    const auto *dialog
        = dynamic_cast<const ModelReadProgressDialog *>(ModelReadProgress::current());
    return dialog ? dialog->m_cancels : 0;
}

QWidget *ModelReadProgressDialog::parentForDialog() const
{
    // A reading started from a tool window (or any other modal window) must show over it: under
    // the main window the dialog would be hidden and blocked by the window in front.
    if (QWidget *modal = QApplication::activeModalWidget())
        return modal;
    return m_window;
}

void ModelReadProgressDialog::started(const QString &path)
{
    if (m_depth++ > 0)
        return;
    m_cancelled = false;
    m_clock.start();
    m_dialog = new QProgressDialog(QStringLiteral("Reading %1...").arg(QFileInfo(path).fileName()),
                                   QStringLiteral("Cancel"),
                                   0,
                                   Steps,
                                   parentForDialog());
    m_dialog->setWindowTitle(QStringLiteral("Reading Model"));
    m_dialog->setWindowModality(Qt::WindowModal);
    // Its own timer would show it after the same time, but only from an event loop, and a
    // reading runs none before progressed() shows the dialog.
    m_dialog->setMinimumDuration(ShowAfterMilliseconds);
    // The reading ends the dialog, not the bar reaching its end: the mesh still has to arrive.
    m_dialog->setAutoReset(false);
    m_dialog->setAutoClose(false);
}

bool ModelReadProgressDialog::progressed(double fraction)
{
    if (m_depth == 0)
        return true;
    // Shown by the clock alone: the bar may stand still for a while (a reader that cannot yet
    // tell how far it is), and QProgressDialog's own estimate would show it early or late.
    if (m_dialog && !m_dialog->wasCanceled()) {
        if (!m_dialog->isVisible() && m_clock.elapsed() >= ShowAfterMilliseconds)
            m_dialog->show();
        // Only a shown dialog lets events through: it blocks the window behind it, so the user
        // can press Cancel and the window repaints, but nothing can start another reading.
        if (m_dialog->isVisible()) {
            // Written so that NaN fails the test and shows as nothing read.
            const double share = fraction >= 0 ? std::min(fraction, 1.0) : 0.0;
            m_dialog->setValue(int(std::lround(share * Steps)));
            QCoreApplication::processEvents();
        }
    }
    // A dialog gone with its parent counts as Cancel: the user closed what the reading was for.
    if (!m_cancelled && (!m_dialog || m_dialog->wasCanceled())) {
        m_cancelled = true;
        ++m_cancels;
    }
    return !m_cancelled;
}

void ModelReadProgressDialog::finished(bool)
{
    if (m_depth == 0 || --m_depth > 0)
        return;
    delete m_dialog.data();
}

} // namespace vantrel::host
