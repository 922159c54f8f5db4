// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"

#include <QString>

class QTextStream;

namespace vantrel::host {

// `vantrel demo`: loads the tools plug-in, lists the tools it registered, builds the sample scene
// and runs the tools on it, printing what each step did, then saves the scene when savePath is
// given. Returns the process exit status: 0, or 1 when the plug-in cannot be loaded or the scene
// cannot be saved (the reason goes to err).
VANTREL_HOST_EXPORT int
runDemo(const QString &pluginPath, const QString &savePath, QTextStream &out, QTextStream &err);

} // namespace vantrel::host
