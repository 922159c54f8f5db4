// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// Driving a tool's settings window headless, as a user would: open it from its tool-bar button
// or from the tool list, move the sliders of its real property panel, press OK. The demo runs the
// tools this way.

#include <QString>

#include <utility>
#include <vector>

class QTextStream;

namespace vantrel::host {

class Session;

// Panel values to set, by property name, in order.
using PanelSettings = std::vector<std::pair<const char *, double>>;

// Each names the undo step after the button or the tool, prints the window's title and the
// values it took to out, and returns false (with the reason on err) when there is no such button
// or tool or it opened no settings window.
bool runToolbarWindow(Session &session,
                      const QString &buttonId,
                      const PanelSettings &settings,
                      QTextStream &out,
                      QTextStream &err);
bool runListedWindow(Session &session,
                     const QString &title,
                     const PanelSettings &settings,
                     QTextStream &out,
                     QTextStream &err);

} // namespace vantrel::host
