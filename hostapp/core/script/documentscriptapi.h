// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QScriptValue>

class QScriptEngine;

namespace vantrel::host {

// The script global `document`: root, selection, ambient, camera, findNode, findNodes, undo,
// redo, undoCount, redoCount, toolTitles, runTool, window and dump (docs/scripting.md).
QScriptValue makeDocumentObject(QScriptEngine *engine);

} // namespace vantrel::host
