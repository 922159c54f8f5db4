// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QScriptValue>

class QScriptContext;
class QScriptEngine;

// tools.stepAndRepeat(node, params): wraps the shape node in a group filled with a grid of its
// copies, as the window would, and keeps the result, outside any undo group of its own. node is a
// single shape (type 1) in the document's scene, bare or as a one-element array. Keys, each
// optional and lower case: "repeatx", "repeaty", "repeatz", "stepx", "stepy", "stepz".
QScriptValue StepAndRepeatScript(QScriptContext *context, QScriptEngine *engine);
