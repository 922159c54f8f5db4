// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"

#include <QList>
#include <QString>

#include <functional>

class QTextStream;

namespace vantrel::host {

class Session;

struct RunOptions
{
    struct Script
    {
        bool isFile; // text is a file name, else the code itself (-e)
        QString text;
    };
    QString pluginPath;
    QString scenePath; // empty: start from an empty scene
    QList<Script> scripts;
    QString savePath; // empty: do not save
    // The seconds all the scripts together may take (--time-limit); 0 for no limit.
    double timeLimit = 0;
};

// --time-limit: a number of seconds, decimals allowed, within these bounds (a millisecond, a
// week). Returns the seconds, or 0 with message set when text is none of them.
constexpr double MinimumTimeLimit = 0.001;
constexpr double MaximumTimeLimit = 7 * 24 * 3600;
VANTREL_HOST_EXPORT double parseTimeLimit(const QString &text, QString *message);

// `vantrel run`: opens the scene (or an empty one), loads and attaches the tools plug-in, runs
// the scripts in order, each as one undo step, and saves when asked. print() goes to out, errors
// to err as "<file>:<line>: <message>". Returns the exit status: 0, or 1 for a script error or a
// file that cannot be read or written, or scripts stopped by the time limit; nothing is saved after
// an error.
// When given, finish runs on the session after the scripts and the save have succeeded, and its
// result is the exit status (other commands build on this one, such as `vantrel render`).
VANTREL_HOST_EXPORT int runScripts(const RunOptions &options,
                                   QTextStream &out,
                                   QTextStream &err,
                                   const std::function<int(Session &)> &finish = {});

} // namespace vantrel::host
