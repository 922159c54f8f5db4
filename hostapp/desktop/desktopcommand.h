// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/desktop/desktopexport.h"

#include <QString>

class QTextStream;

namespace vantrel::host {

// `vantrel` and `vantrel open SCENE`: shows the main window with the scene (or an empty one) and
// runs until it closes. A scene that cannot be read is reported in the window and on err, and
// the window opens on an empty scene. Returns 1 when there is no display to show a window on or
// the tools plug-in cannot be loaded, else 0 once the window was closed.
VANTREL_DESKTOP_EXPORT int
runDesktop(const QString &pluginPath, const QString &scenePath, QTextStream &err);

} // namespace vantrel::host
