// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QScriptValue>

class QScriptEngine;

namespace vantrel::host {

// The prototypes of node script objects: every node has name, visible, type, parent, children,
// worldMatrix, worldBox, addGroup, addShape, addLight and remove; nodes with a place also
// position, rotation and scale; shapes generator, params, setParam and vertexCount; lights
// intensity, shadowBlur and castShadows. kind is the node kind (0 root, 1 shape, 2 light,
// 3 group).
//
// The members every node has live in nodescriptapi.cpp, those of a kind in nodekindscriptapi.cpp.
QScriptValue makeNodePrototype(QScriptEngine *engine, int kind);

} // namespace vantrel::host
