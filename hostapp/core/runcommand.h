// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"

#include <QList>
#include <QString>

class QTextStream;

namespace vantrel::host {

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
};

// `vantrel run`: opens the scene (or an empty one), loads and attaches the tools plug-in, runs
// the scripts in order, each as one undo step, and saves when asked. print() goes to out, errors
// to err as "<file>:<line>: <message>". Returns the exit status: 0, or 1 for a script error or a
// file that cannot be read or written; nothing is saved after an error.
VANTREL_HOST_EXPORT int runScripts(const RunOptions &options, QTextStream &out, QTextStream &err);

} // namespace vantrel::host
