// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// The node script members that depend on the node's kind: position, rotation and scale of every
// node with a place; artwork, generator, params, vertexCount and setParam of shapes;
// intensity, shadowBlur and castShadows of lights. The members every node has are in
// nodescriptapi.cpp.

#include <QScriptValue>
#include <QString>
#include <QVariant>

class QScriptEngine;

namespace vantrel::host {

class ShapeGenerator;

void addPlacementMembers(QScriptEngine *engine, QScriptValue &prototype);
void addShapeMembers(QScriptEngine *engine, QScriptValue &prototype);
void addLightMembers(QScriptEngine *engine, QScriptValue &prototype);

// Writes one parameter through the generator's own limits; false with a message when the
// generator has no such parameter, the value is of the wrong kind or the generator refuses it
// (a model file that cannot be read: the message names the file).
bool writeParameter(ShapeGenerator &generator,
                    const QString &name,
                    const QVariant &value,
                    QString *error);

} // namespace vantrel::host
