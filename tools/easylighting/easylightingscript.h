// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QScriptValue>

class QScriptContext;
class QScriptEngine;

// tools.easyLighting(params): lights the scene as the window would and keeps the result, outside
// any undo group of its own. Keys, each optional: "hangle", "vangle", "blur", "contrast".
QScriptValue EasyLightingScript(QScriptContext *context, QScriptEngine *engine);
