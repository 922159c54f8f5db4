// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QScriptValue>

class QScriptContext;
class QScriptEngine;

// The most shapes one stack may hold, copies included: a request for more is refused before
// anything changes, so a mistyped repeat count cannot flood the scene.
constexpr long long MostStackedShapes = 100000;

// tools.stack(nodes, params): builds a stack from the array of nodes and keeps it. Keys, each
// optional: "repeats" (3; zero or less means no repetition), "seed", "twistStep",
// "twistDisorder", "offsetX", "offsetY", "offsetDisorder" (all 0).
QScriptValue StackScript(QScriptContext *context, QScriptEngine *engine);
