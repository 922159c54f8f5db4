// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"

#include <QString>

#include <functional>

class QTextStream;

namespace vantrel::host {

class Document;

// Called by the demo after it has built the sample scene and after each tool step, with the
// step's name ("sample scene", then the name of the tool it ran) and the document as the step
// left it. Returning false stops the demo with exit status 1 (the hook reports why).
using DemoStepHook = std::function<bool(const QString &step, Document &document)>;

// `vantrel demo`: loads the tools plug-in, lists the tools it registered, builds the sample scene
// and runs the tools on it, printing what each step did, then saves the scene when savePath is
// given. Returns the process exit status: 0, or 1 when the plug-in cannot be loaded, the scene
// cannot be saved or afterStep says no (the reason goes to err).
VANTREL_HOST_EXPORT int runDemo(const QString &pluginPath,
                                const QString &savePath,
                                QTextStream &out,
                                QTextStream &err,
                                const DemoStepHook &afterStep = {});

} // namespace vantrel::host
