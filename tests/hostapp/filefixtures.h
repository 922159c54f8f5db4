// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// Files for the tests of the scene and model readers: writing and reading them, the sample jar,
// and small model files whose geometry the tests know exactly.

#include "hostapp/core/scene/mesh.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

namespace vantrel::test {

// The sample model shipped with the examples.
inline const QString s_jar = QStringLiteral(VANTREL_SOURCE_DIR "/examples/models/jar.obj");

// Writes the bytes as the whole file; a test failure when that cannot be done.
void writeFile(const QString &path, const QByteArray &bytes);
// The whole file, or "(unreadable)".
QByteArray readAll(const QString &path);

// The model file's mesh; a test failure, with the reader's message, when there is none.
host::MeshPtr loadModel(const QString &path);

// A box from (0, 0, 0) to (2, 3, 4) as six quads, without normals: the loader must split them
// into triangles and give each corner its face's normal.
extern const QByteArray s_boxObj;

// A glTF file whose one mesh is a triangle over the first three of the positions (x, y, z
// floats), placed by the nodes (JSON objects), with the buffer embedded. The scene lists the
// given nodes, or every node when none are given.
QByteArray gltf(const QStringList &nodes,
                const std::vector<float> &positions,
                QStringList sceneNodes = QStringList());

// The triangle (0, 0, 0), (1, 0, 0), (0, 1, 0).
extern const std::vector<float> s_triangle;

// A binary little-endian PLY file: x y z per vertex (and nx ny nz when normals are given), and
// faces as index lists of any length. The header states the given counts, or the data's own.
struct PlyModel
{
    std::vector<float> positions;
    std::vector<float> normals;
    std::vector<std::vector<int>> faces;
    qint64 statedVertices = -1;
    qint64 statedFaces = -1;
};
QByteArray binaryPly(const PlyModel &model);

} // namespace vantrel::test
