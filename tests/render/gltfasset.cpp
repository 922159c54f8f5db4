// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tests/render/gltfasset.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QStandardPaths>
#include <QtEndian>

#include <cstring>
#include <iostream>

namespace vantrel::test {

namespace {

quint32 word(const QByteArray &bytes, int offset)
{
    return qFromLittleEndian<quint32>(bytes.constData() + offset);
}

} // namespace

// Reads a file as a viewer would: the GLB container by its documented layout, or the JSON text
// with its buffer in a base64 data: URI.
Asset readAsset(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    const QByteArray bytes = file.readAll();
    Asset asset;
    if (bytes.startsWith("glTF")) {
        asset.form = ".glb";
        EXPECT_EQ(word(bytes, 4), 2u) << "GLB version";
        EXPECT_EQ(word(bytes, 8), quint32(bytes.size())) << "GLB length";
        const quint32 jsonLength = word(bytes, 12);
        EXPECT_EQ(word(bytes, 16), 0x4E4F534Au) << "first chunk is JSON";
        asset.json = QJsonDocument::fromJson(bytes.mid(20, jsonLength)).object();
        const int bin = 20 + int(jsonLength);
        if (bin < bytes.size()) {
            EXPECT_EQ(word(bytes, bin + 4), 0x004E4942u) << "second chunk is BIN";
            asset.binary = bytes.mid(bin + 8, word(bytes, bin));
        }
    } else {
        asset.json = QJsonDocument::fromJson(bytes).object();
        if (!asset.json.contains(QStringLiteral("buffers")))
            return asset;
        const QString uri
            = std::as_const(asset.json)[QStringLiteral("buffers")][0][QStringLiteral("uri")]
                  .toString();
        const QString prefix = QStringLiteral("data:application/octet-stream;base64,");
        EXPECT_TRUE(uri.startsWith(prefix)) << "the buffer is inside the file";
        asset.binary = QByteArray::fromBase64(uri.mid(prefix.size()).toLatin1());
    }
    return asset;
}

QByteArray viewBytes(const Asset &asset, int view)
{
    const QJsonObject v = asset.json[QStringLiteral("bufferViews")][view].toObject();
    return asset.binary.mid(v[QStringLiteral("byteOffset")].toInt(),
                            v[QStringLiteral("byteLength")].toInt());
}

QVector3D readPosition(const Asset &asset, int accessor, int vertex)
{
    const QJsonObject a = asset.json[QStringLiteral("accessors")][accessor].toObject();
    const QByteArray bytes = viewBytes(asset, a[QStringLiteral("bufferView")].toInt());
    float p[3];
    std::memcpy(p, bytes.constData() + 12 * vertex, sizeof p);
    return QVector3D(p[0], p[1], p[2]);
}

QJsonValue at(const Asset &asset, const QString &pointer)
{
    QJsonValue value = asset.json;
    for (const QString &step : pointer.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        bool isIndex = false;
        const int index = step.toInt(&isIndex);
        value = isIndex ? value.toArray().at(index) : value.toObject().value(step);
    }
    return value;
}

const QJsonObject node(const Asset &asset, int index)
{
    return asset.json[QStringLiteral("nodes")][index].toObject();
}

int nodeNamed(const Asset &asset, const QString &name)
{
    const QJsonArray nodes = asset.json[QStringLiteral("nodes")].toArray();
    for (int i = 0; i < nodes.size(); ++i) {
        if (nodes[i][QStringLiteral("name")].toString() == name)
            return i;
    }
    ADD_FAILURE() << "no node named " << name.toStdString();
    return 0;
}

// The mesh of the node of that name, or -1.
int meshOf(const Asset &asset, const QString &name)
{
    return node(asset, nodeNamed(asset, name))[QStringLiteral("mesh")].toInt(-1);
}

// The node's matrix from its glTF translation, rotation (x, y, z, w) and scale: T * R * S.
QMatrix4x4 localMatrix(const QJsonObject &n)
{
    const QJsonArray t = n[QStringLiteral("translation")].toArray({0, 0, 0});
    const QJsonArray r = n[QStringLiteral("rotation")].toArray({0, 0, 0, 1});
    const QJsonArray s = n[QStringLiteral("scale")].toArray({1, 1, 1});
    QMatrix4x4 m;
    m.translate(t[0].toDouble(), t[1].toDouble(), t[2].toDouble());
    m.rotate(QQuaternion(r[3].toDouble(), r[0].toDouble(), r[1].toDouble(), r[2].toDouble()));
    m.scale(s[0].toDouble(), s[1].toDouble(), s[2].toDouble());
    return m;
}

// The world matrix of a node: the product of the matrices on the path from the scene's top.
QMatrix4x4 worldMatrix(const Asset &asset, int target)
{
    const QJsonArray nodes = asset.json[QStringLiteral("nodes")].toArray();
    for (int i = 0; i < nodes.size(); ++i) {
        for (const QJsonValue child : nodes[i][QStringLiteral("children")].toArray()) {
            if (child.toInt() == target)
                return worldMatrix(asset, i) * localMatrix(nodes[target].toObject());
        }
    }
    return localMatrix(nodes[target].toObject());
}

// Runs the Khronos validator on the file; skips where node or the validator is missing.
void expectValid(const QString &path)
{
    const QString node = QStandardPaths::findExecutable(QStringLiteral("node"));
    const QString validator = QStringLiteral(VANTREL_GLTF_VALIDATOR);
    if (node.isEmpty() || !QFile::exists(validator + QStringLiteral("/package.json")))
        GTEST_SKIP() << "the glTF validator needs node and " << validator.toStdString()
                     << " (./setup.sh installs both)";
    QProcess process;
    process.start(node, {QStringLiteral(VANTREL_GLTF_VALIDATE_SCRIPT), validator, path});
    ASSERT_TRUE(process.waitForFinished(50000));
    const QByteArray report = process.readAllStandardOutput();
    std::cout << path.toStdString() << ": " << report.toStdString();
    const QJsonObject summary = QJsonDocument::fromJson(report).object();
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    EXPECT_EQ(summary[QStringLiteral("errors")].toInt(-1), 0) << report.toStdString();
}

} // namespace vantrel::test
