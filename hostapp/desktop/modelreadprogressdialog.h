// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/core/models/modelreadprogress.h"
#include "hostapp/desktop/desktopexport.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QString>

class QProgressDialog;
class QWidget;

namespace vantrel::host {

// What the window shows while a model file is read: after half a second, a window-modal dialog
// "Reading <file name>..." with a bar and Cancel, over whatever window is in front (the main
// window, a tool window). The window installs one for its life, so every reading started in it
// reports here: the Add menu's Import Model..., a scene file opening, a script, the Properties
// dock's model path.
//
// Until the dialog shows, the window's events wait (a short reading is not worth letting the user
// start something else in the middle of it). Once it shows, it blocks the window behind it and
// lets the window repaint; so no second reading can start from inside a first one.
class VANTREL_DESKTOP_EXPORT ModelReadProgressDialog final : public ModelReadProgress
{
public:
    // How long a reading runs before the dialog appears: a file read faster than this never
    // flashes a dialog on the screen.
    static constexpr int ShowAfterMilliseconds = 500;
    // The bar's steps: a tenth of a percent, so that a slow reading visibly moves.
    static constexpr int Steps = 1000;
    // How long the status bar says that a reading the user cancelled stopped an import or an
    // opening.
    static constexpr int CancelMessageMilliseconds = 5000;

    // Installs itself for as long as it lives; window is the dialog's parent when no modal window
    // is in front.
    explicit ModelReadProgressDialog(QWidget *window);
    ~ModelReadProgressDialog() override;

    void started(const QString &path) override;
    bool progressed(double fraction) override;
    void finished(bool read) override;

    // The dialog while a reading shows one, else null (for tests).
    QProgressDialog *dialog() const;

    // How many readings the user has cancelled with the installed observer (0 when the window
    // installed none). An operation compares the count before and after: when it grew, the
    // operation failed because the user asked it to stop, and it shows no error box for that.
    static int cancelsSoFar();

private:
    QWidget *parentForDialog() const;

    QPointer<QWidget> m_window;
    QPointer<QProgressDialog> m_dialog; // goes with its parent should that close first
    QElapsedTimer m_clock;
    // Readings under way: a reading nested in another (none is expected) shares its dialog.
    int m_depth = 0;
    bool m_cancelled = false; // the reading under way
    int m_cancels = 0;
    ModelReadProgress::Scope m_scope;
};

} // namespace vantrel::host
