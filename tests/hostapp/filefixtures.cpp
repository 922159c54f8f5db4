// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tests/hostapp/filefixtures.h"

#include "hostapp/core/models/modelfile.h"

#include <gtest/gtest.h>

#include <QFile>

namespace vantrel::test {

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(path);
    ASSERT_EQ(file.write(bytes), bytes.size());
}

host::MeshPtr loadModel(const QString &path)
{
    QString error;
    host::MeshPtr mesh = host::ModelFile::load(path, &error);
    EXPECT_TRUE(mesh) << qPrintable(error);
    return mesh;
}

QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
}

const QByteArray s_boxObj
    = "v 0 0 0\nv 2 0 0\nv 2 3 0\nv 0 3 0\nv 0 0 4\nv 2 0 4\nv 2 3 4\nv 0 3 4\n"
      "f 1 4 3 2\nf 5 6 7 8\nf 1 2 6 5\nf 2 3 7 6\nf 3 4 8 7\nf 4 1 5 8\n";

QByteArray
gltf(const QStringList &nodes, const std::vector<float> &positions, QStringList sceneNodes)
{
    QByteArray buffer(reinterpret_cast<const char *>(positions.data()), int(positions.size() * 4));
    const int indexOffset = buffer.size();
    buffer.append(QByteArray::fromHex("0000010002000000")); // 0, 1, 2 and padding, 16 bits each
    if (sceneNodes.isEmpty()) {
        for (int i = 0; i < nodes.size(); ++i)
            sceneNodes.append(QString::number(i));
    }
    return QStringLiteral(R"({"asset": {"version": "2.0"}, "scene": 0,
        "scenes": [{"nodes": [%1]}], "nodes": [%2],
        "meshes": [{"primitives": [{"attributes": {"POSITION": 0}, "indices": 1}]}],
        "buffers": [{"byteLength": %3, "uri": "data:application/octet-stream;base64,%4"}],
        "bufferViews": [{"buffer": 0, "byteLength": %5},
                        {"buffer": 0, "byteOffset": %5, "byteLength": 6}],
        "accessors": [{"bufferView": 0, "componentType": 5126, "count": %6, "type": "VEC3"},
                      {"bufferView": 1, "componentType": 5123, "count": 3, "type": "SCALAR"}]})")
        .arg(sceneNodes.join(','), nodes.join(','))
        .arg(buffer.size())
        .arg(QString::fromLatin1(buffer.toBase64()))
        .arg(indexOffset)
        .arg(positions.size() / 3)
        .toUtf8();
}

const std::vector<float> s_triangle = {0, 0, 0, 1, 0, 0, 0, 1, 0};

QByteArray binaryPly(const PlyModel &model)
{
    const qint64 vertices = qint64(model.positions.size() / 3);
    QByteArray ply
        = "ply\nformat binary_little_endian 1.0\nelement vertex "
          + QByteArray::number(model.statedVertices < 0 ? vertices : model.statedVertices)
          + "\nproperty float x\nproperty float y\nproperty float z\n";
    if (!model.normals.empty())
        ply += "property float nx\nproperty float ny\nproperty float nz\n";
    ply += "element face "
           + QByteArray::number(model.statedFaces < 0 ? qint64(model.faces.size())
                                                      : model.statedFaces)
           + "\nproperty list uchar int vertex_indices\nend_header\n";
    const auto append = [&ply](const auto &value) {
        ply.append(reinterpret_cast<const char *>(&value), sizeof value);
    };
    for (qint64 i = 0; i < vertices; ++i) {
        for (int k = 0; k < 3; ++k)
            append(model.positions[std::size_t(3 * i + k)]);
        for (int k = 0; k < 3 && !model.normals.empty(); ++k)
            append(model.normals[std::size_t(3 * i + k)]);
    }
    for (const std::vector<int> &face : model.faces) {
        append(quint8(face.size()));
        for (const int index : face)
            append(qint32(index));
    }
    return ply;
}

} // namespace vantrel::test
