// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once
// A glTF file read back as a viewer reads it, for the export tests: the JSON, the buffer, the
// nodes' matrices from their written values, and the Khronos validator's verdict.

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QMatrix4x4>
#include <QString>
#include <QVector3D>

namespace vantrel::test {

struct Asset
{
    const char *form = ".gltf";
    QJsonObject json;
    QByteArray binary; // the buffer: the BIN chunk, or the data: URI decoded
};

// Reads a file as a viewer would: the GLB container by its documented layout, or the JSON text
// with its buffer in a base64 data: URI. Layout faults fail the calling test.
Asset readAsset(const QString &path);

// The bytes of a bufferView, and the vertex'th position of a float VEC3 accessor.
QByteArray viewBytes(const Asset &asset, int view);
QVector3D readPosition(const Asset &asset, int accessor, int vertex);

// The value at a JSON pointer ("/meshes/0/primitives/0/material"); undefined where there is none.
QJsonValue at(const Asset &asset, const QString &pointer);
const QJsonObject node(const Asset &asset, int index);
// The index of the first node of that name (a failure, and 0, when there is none).
int nodeNamed(const Asset &asset, const QString &name);
// The mesh of the node of that name, or -1.
int meshOf(const Asset &asset, const QString &name);

// The node's matrix from its glTF translation, rotation (x, y, z, w) and scale: T * R * S.
QMatrix4x4 localMatrix(const QJsonObject &node);
// The world matrix of a node: the product of the matrices on the path from the scene's top.
QMatrix4x4 worldMatrix(const Asset &asset, int target);

// Runs the Khronos validator on the file (a test failure on any error, the report printed);
// skips the test where node or the validator is missing.
void expectValid(const QString &path);

} // namespace vantrel::test
