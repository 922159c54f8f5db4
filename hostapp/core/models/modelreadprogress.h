// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"

#include <QString>

namespace vantrel::host {

// What the user sees while a model file is read: a large scanned model takes seconds, wherever
// its reading starts (a script, a scene file opening, the Add menu, the Properties dock). The
// program in front of the user installs one observer (the desktop window a progress dialog with
// Cancel, the command line a progress line on a terminal), and ModelFile reports every reading
// that really reads a file to it; a mesh found in the cache is not reported.
//
// Everything is called on the thread that reads the model (the GUI thread in the window).
class VANTREL_HOST_EXPORT ModelReadProgress
{
public:
    virtual ~ModelReadProgress();

    // The file at path (as the caller named it) starts being read.
    virtual void started(const QString &path) = 0;
    // The share of the reading done, from 0 to 1. Called at least every 100 ms while the file
    // is read, also when the share has not moved, so that a window can handle its events.
    // Returning false cancels the reading: the reader is stopped at once and the load fails with
    // "<path>: reading was cancelled", leaving everything as it was.
    virtual bool progressed(double fraction) = 0;
    // The reading ended: read is true when the mesh arrived, false when the file was refused,
    // the reading failed or it was cancelled.
    virtual void finished(bool read) = 0;

    // The installed observer, or null.
    static ModelReadProgress *current();

    // Installs an observer for as long as the scope lives. The latest scope's observer is the
    // current one; when a scope ends, whichever order scopes end in (windows close in any
    // order), its observer is no longer current and the latest of those left is.
    class Scope
    {
    public:
        explicit Scope(ModelReadProgress *observer);
        ~Scope();
        Scope(const Scope &) = delete;
        Scope &operator=(const Scope &) = delete;

    private:
        ModelReadProgress *m_observer;
    };
};

} // namespace vantrel::host
