// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Model files built to hurt the importer: deep node chains, instance explosions, damaged files.

#include "tests/faults/faultcase.h"
#include "tests/support/testsupport.h"

#include <QRegularExpression>
#include <QtEndian>

namespace vantrel::test {

namespace {

// A glTF file whose one mesh is a valid triangle (its buffer embedded as a data: URI), placed by
// the given nodes (a JSON array's contents) under the given scene nodes: the graph is the only
// thing wrong with it.
QByteArray gltf(const QByteArray &nodes, const QByteArray &sceneNodes = "0")
{
    QByteArray buffer;
    for (float v : {0.f, 0.f, 0.f, 1.f, 0.f, 0.f, 0.f, 1.f, 0.f})
        buffer.append(reinterpret_cast<const char *>(&v), 4);
    buffer.append(QByteArray::fromHex("0000010002000000")); // indices 0, 1, 2 and padding
    return R"({"asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [)" + sceneNodes
           + R"(]}], "nodes": [)" + nodes + R"(],
        "meshes": [{"primitives": [{"attributes": {"POSITION": 0}, "indices": 1}]}],
        "buffers": [{"byteLength": 44, "uri": "data:application/octet-stream;base64,)"
           + buffer.toBase64() + R"("}],
        "bufferViews": [{"buffer": 0, "byteLength": 36},
                        {"buffer": 0, "byteOffset": 36, "byteLength": 6}],
        "accessors": [{"bufferView": 0, "componentType": 5126, "count": 3, "type": "VEC3"},
                      {"bufferView": 1, "componentType": 5123, "count": 3, "type": "SCALAR"}]})";
}

// Node i lists node i + 1 as its only child; the last one shows the mesh.
QByteArray chainNodes(int count)
{
    QByteArray nodes;
    for (int i = 0; i + 1 < count; ++i)
        nodes += R"({"children": [)" + QByteArray::number(i + 1) + "]},";
    return nodes + R"({"mesh": 0})";
}

// Node 0 shows the mesh and every further node lists the one before it twice: the last of them
// reaches node 0 by 2^levels paths.
QByteArray doublingNodes(int levels)
{
    QByteArray nodes = R"({"mesh": 0})";
    for (int i = 1; i <= levels; ++i)
        nodes += R"(, {"children": [)" + QByteArray::number(i - 1) + ", "
                 + QByteArray::number(i - 1) + "]}";
    return nodes;
}

void appendLittleEndian(QByteArray *bytes, quint32 value)
{
    char word[4];
    qToLittleEndian(value, word);
    bytes->append(word, 4);
}

// The same file in the binary form (.glb): a 12-byte header, then the JSON as the only chunk.
QByteArray glb(QByteArray json)
{
    while (json.size() % 4 != 0)
        json.append(' ');
    QByteArray bytes;
    for (quint32 word : {0x46546C67u,
                         2u,
                         quint32(20 + json.size()),
                         quint32(json.size()),
                         0x4E4F534Au}) // "glTF", version, length; the chunk's length, "JSON"
        appendLittleEndian(&bytes, word);
    return bytes + json;
}

// A binary STL of 1000 triangles and a binary PLY of 100, each cut off half-way.
QByteArray halfStl()
{
    QByteArray bytes(80, '\0');
    appendLittleEndian(&bytes, 1000);
    for (int i = 0; i < 1000; ++i) {
        for (float v : {0.f, 0.f, 1.f, float(i), 0.f, 0.f, i + 1.f, 0.f, 0.f, float(i), 1.f, 0.f})
            bytes.append(reinterpret_cast<const char *>(&v), 4);
        bytes.append(2, '\0');
    }
    return bytes.left(bytes.size() / 2);
}

QByteArray plyHeader(int vertices, qint64 faces)
{
    return "ply\nformat binary_little_endian 1.0\nelement vertex " + QByteArray::number(vertices)
           + "\nproperty float x\nproperty float y\nproperty float z\nelement face "
           + QByteArray::number(faces) + "\nproperty list uchar int vertex_indices\nend_header\n";
}

QByteArray plyBody(int vertices, int faces)
{
    QByteArray body;
    for (int i = 0; i < vertices; ++i) {
        for (float v : {float(i), float(i % 7), float(i % 5)})
            body.append(reinterpret_cast<const char *>(&v), 4);
    }
    for (int f = 0; f < faces; ++f) {
        body.append(char(3));
        for (qint32 index : {3 * f, 3 * f + 1, 3 * f + 2})
            body.append(reinterpret_cast<const char *>(&index), 4);
    }
    return body;
}

QString addModel(const QString &file)
{
    return QStringLiteral("document.root.addShape('generator.external.model', 'M', "
                          "{path: '{dir}/%1'})")
        .arg(file);
}

FaultCase
modelRow(std::string name, const QString &file, const QByteArray &bytes, const QString &message)
{
    return {.name = std::move(name),
            .arguments = {"run", "-e", addModel(file)},
            .exitCode = 1,
            .message = QRegularExpression::escape(file) + ": " + message,
            .prepare = [file, bytes](const QDir &dir) { writeFile(dir, file, bytes); },
            .timeoutSeconds = 15};
}

// A table, one row per input, however long: the size rule is for functions that do things.
// NOLINTNEXTLINE(readability-function-size)
std::vector<FaultCase> modelsCases()
{
    const QString depthLimit = "nodes\\[19743\\] starts a chain of more than 256 nested nodes; "
                               "models are limited to 256 levels of nodes";
    const QString countLimit = "scenes\\[0\\] places more than 100000 nodes, counting a node once "
                               "for each path that reaches it; models are limited to 100000 nodes";
    const QString crash = "the model importer failed \\(killed by signal 11: Segmentation fault\\)";
    return {
        modelRow("NodeChain20000Deep", "chain.gltf", gltf(chainNodes(20000)), depthLimit),
        modelRow(
            "NodesDoubling24Times", "doubling.gltf", gltf(doublingNodes(24), "24"), countLimit),
        modelRow("NodesDoubling24TimesBinary",
                 "doubling.glb",
                 glb(gltf(doublingNodes(24), "24")),
                 countLimit),
        modelRow("NodeChain20000DeepBinary", "chain.glb", glb(gltf(chainNodes(20000))), depthLimit),
        modelRow("NodeCycle",
                 "cycle.gltf",
                 gltf(R"({"mesh": 0, "children": [1]}, {"children": [2]}, {"children": [0]})"),
                 "nodes\\[2\\] lists nodes\\[0\\], which contains it: the nodes form a cycle"),
        modelRow("NodeListsMissingChild",
                 "orphan.gltf",
                 gltf(R"({"mesh": 0, "children": [99]})"),
                 "nodes\\[0\\]\\.children\\[0\\]: no node 99"),
        modelRow("SceneListsMissingNode",
                 "scene.gltf",
                 gltf(R"({"mesh": 0})", "0, 5"),
                 "scenes\\[0\\]\\.nodes\\[1\\]: no node 5"),
        // Damaged binaries: the importer's own words, whatever they are, after the file's name.
        modelRow("BinaryStlCutInHalf", "half.stl", halfStl(), "\\S"),
        modelRow("BinaryPlyCutInHalf",
                 "half.ply",
                 (plyHeader(300, 100) + plyBody(300, 100)).left(2500),
                 "\\S"),
        // A header that promises two billion faces would make the importer reserve room for
        // them at once; the header's count is refused before the importer starts.
        modelRow("PlyPromisingTwoBillionFaces",
                 "liar.ply",
                 plyHeader(3, 2000000000) + plyBody(3, 1),
                 "2000000000 faces; models are limited to \\d+ triangles"),
        modelRow("ImporterCrashesOnDeepCollada",
                 "deep.dae",
                 colladaModel(nestedColladaNodes(20000)),
                 crash),
        // The program survives the importer's crash: the script goes on and saves its work.
        {.name = "WorkGoesOnAfterTheImporterCrashed",
         .arguments = {"run",
                       "-e",
                       "try { " + addModel("deep.dae") + " } catch (e) { print(e.message) }",
                       "-e",
                       "document.root.addGroup('After')",
                       "--save",
                       "{dir}/out.vscene"},
         .exitCode = 0,
         .prepare =
             [](const QDir &dir) {
                 writeFile(dir, "deep.dae", colladaModel(nestedColladaNodes(20000)));
             },
         .check =
             [crash](const QDir &dir, const FaultRun &run) {
                 EXPECT_TRUE(QRegularExpression("deep\\.dae: " + crash).match(run.out).hasMatch())
                     << run.out.toStdString();
                 EXPECT_TRUE(readFile(dir.filePath("out.vscene")).contains("\"After\""));
             },
         .timeoutSeconds = 15},
        // A scene that shows a hostile model is refused as a whole, and the save that would
        // follow never happens.
        {.name = "SceneShowingDeepNodeChain",
         .arguments = {"run", "{dir}/in.vscene", "--save", "{dir}/in.vscene"},
         .exitCode = 1,
         .message
         = "in\\.vscene: root\\.children\\[0\\]\\.params\\.path: .*chain\\.gltf: " + depthLimit,
         .prepare =
             [](const QDir &dir) {
                 writeFile(dir, "chain.gltf", gltf(chainNodes(20000)));
                 QByteArray scene = smallScene();
                 const QByteArray children = "\"children\": [";
                 const int at = scene.indexOf(children);
                 ASSERT_GE(at, 0);
                 scene.insert(at + children.size(),
                              R"({"type": "shape", "name": "Jar",
                                  "generator": "generator.external.model",
                                  "params": {"path": "chain.gltf"}},)");
                 writeFile(dir, "in.vscene", scene);
             },
         .timeoutSeconds = 15},
    };
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Models, FaultTest, ::testing::ValuesIn(modelsCases()), faultCaseName);

} // namespace vantrel::test
