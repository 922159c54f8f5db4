// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QScriptValue>

class QDialog;
class QScriptEngine;

namespace vantrel::host {

// The script object of an open tool window (null for none): title, get(property),
// set(property, value), accept(), cancel(), and for a window with a node list ("nodes") rows and
// moveRow(from, to). Everything acts as a user would: set goes through the property panel,
// accept and cancel press the OK and Cancel buttons, moveRow drags a row.
QScriptValue wrapWindow(QScriptEngine *engine, QDialog *window);

} // namespace vantrel::host
