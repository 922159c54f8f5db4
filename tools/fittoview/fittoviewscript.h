// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QScriptValue>

class QScriptContext;
class QScriptEngine;

// tools.fitToView(params): fits the document camera as the window would and keeps it. Keys, each
// optional: "padding" (0..1), "keepAspect".
QScriptValue FitToViewScript(QScriptContext *context, QScriptEngine *engine);
