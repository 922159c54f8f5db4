// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/document/document.h"
#include "hostapp/core/document/documentcontext.h"
#include "hostapp/core/document/headlessuserinterface.h"
#include "hostapp/core/files/scenefile.h"
#include "hostapp/core/models/modelfile.h"
#include "hostapp/core/scene/generators/externalmodelgenerator.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/core/script/scriptrunner.h"
#include "tests/support/testsupport.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <utility>

#include <sys/stat.h>

using namespace vantrel::host;
using vantrel::test::dump;
using vantrel::test::Near;

namespace {

const QString s_jar = QStringLiteral(VANTREL_SOURCE_DIR "/examples/models/jar.obj");

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(path);
    ASSERT_EQ(file.write(bytes), bytes.size());
}

MeshPtr load(const QString &path)
{
    QString error;
    MeshPtr mesh = ModelFile::load(path, &error);
    EXPECT_TRUE(mesh) << qPrintable(error);
    return mesh;
}

Vector3 position(const VertexRecord &v)
{
    return {v.position[0], v.position[1], v.position[2]};
}

Vector3 minOf(const Mesh &mesh)
{
    return {mesh.localBox().min[0], mesh.localBox().min[1], mesh.localBox().min[2]};
}

Vector3 maxOf(const Mesh &mesh)
{
    return {mesh.localBox().max[0], mesh.localBox().max[1], mesh.localBox().max[2]};
}

// Calls f(a, b, c) with the corners of every triangle of the mesh.
template<typename F>
void forEachTriangle(const Mesh &mesh, F f)
{
    for (const IMeshPart *face : mesh.parts()) {
        const auto *part = static_cast<const MeshPart *>(face);
        const std::vector<quint32> &indices = part->indices();
        for (std::size_t i = 0; i + 2 < indices.size(); i += 3)
            f(part->GetVertices()[indices[i]],
              part->GetVertices()[indices[i + 1]],
              part->GetVertices()[indices[i + 2]]);
    }
}

Vector3 faceNormal(const Vector3 &a, const Vector3 &b, const Vector3 &c)
{
    const double u[3] = {b.x - a.x, b.y - a.y, b.z - a.z}, v[3] = {c.x - a.x, c.y - a.y, c.z - a.z};
    const double n[3]
        = {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
    const double length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
    return {float(n[0] / length), float(n[1] / length), float(n[2] / length)};
}

// The volume the triangles enclose (divergence theorem): positive when they face outwards.
double signedVolume(const Mesh &mesh)
{
    double volume = 0.;
    forEachTriangle(mesh,
                    [&volume](const VertexRecord &a, const VertexRecord &b, const VertexRecord &c) {
                        const float *p = a.position, *q = b.position, *r = c.position;
                        volume += (double(p[0]) * (q[1] * r[2] - q[2] * r[1])
                                   - double(p[1]) * (q[0] * r[2] - q[2] * r[0])
                                   + double(p[2]) * (q[0] * r[1] - q[1] * r[0]))
                                  / 6.;
                    });
    return volume;
}

// A box from (0, 0, 0) to (2, 3, 4) as six quads, without normals: the loader must split them
// into triangles and give each corner its face's normal.
const QByteArray s_boxObj
    = "v 0 0 0\nv 2 0 0\nv 2 3 0\nv 0 3 0\nv 0 0 4\nv 2 0 4\nv 2 3 4\nv 0 3 4\n"
      "f 1 4 3 2\nf 5 6 7 8\nf 1 2 6 5\nf 2 3 7 6\nf 3 4 8 7\nf 4 1 5 8\n";

// A glTF file whose one mesh is a triangle over the first three of the positions (x, y, z
// floats), placed by the nodes (JSON objects), with the buffer embedded. The scene lists the
// given nodes, or every node when none are given.
QByteArray gltf(const QStringList &nodes,
                const std::vector<float> &positions,
                QStringList sceneNodes = QStringList())
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

// Node i lists node i + 1; the last of the count shows the triangle. The scene lists node 0.
QByteArray chainGltf(int count)
{
    QStringList nodes;
    for (int i = 0; i + 1 < count; ++i)
        nodes.append(QStringLiteral(R"({"children": [%1]})").arg(i + 1));
    nodes.append(QStringLiteral(R"({"mesh": 0})"));
    return gltf(nodes, s_triangle, {"0"});
}

// Node 0 shows the triangle and each of the levels further nodes lists the one before it twice,
// so the scene, which lists the last, holds 2^(levels + 1) - 1 nodes and 2^levels triangles.
QByteArray doublingGltf(int levels)
{
    QStringList nodes = {R"({"mesh": 0})"};
    for (int i = 1; i <= levels; ++i)
        nodes.append(QStringLiteral(R"({"children": [%1, %1]})").arg(i - 1));
    return gltf(nodes, s_triangle, {QString::number(levels)});
}

QByteArray sceneWithModel(const QString &path)
{
    return QStringLiteral(R"({"format": "vantrel-scene", "version": 1, "root": {"children": [
        {"type": "shape", "name": "Jar", "generator": "generator.external.model",
         "params": {"path": "%1"}}]}})")
        .arg(path)
        .toUtf8();
}

} // namespace

TEST(ModelFile, EachFormatGivesTheGeometryItsFileDescribes)
{
    QTemporaryDir dir;
    const QString obj = dir.filePath("box.obj");
    writeFile(obj, s_boxObj);
    const MeshPtr box = load(obj);
    ASSERT_TRUE(box);
    EXPECT_EQ(box->triangleCount(), 12) << "six quads";
    EXPECT_EQ(box->vertexCount(), 24) << "corners are not shared across the box's sharp edges";
    EXPECT_TRUE(Near(minOf(*box), Vector3(0, 0, 0)) && Near(maxOf(*box), Vector3(2, 3, 4)));
    forEachTriangle(*box, [](const VertexRecord &a, const VertexRecord &b, const VertexRecord &c) {
        const Vector3 n = faceNormal(position(a), position(b), position(c));
        const Vector3 centre((a.position[0] + b.position[0] + c.position[0]) / 3.f - 1.f,
                             (a.position[1] + b.position[1] + c.position[1]) / 3.f - 1.5f,
                             (a.position[2] + b.position[2] + c.position[2]) / 3.f - 2.f);
        EXPECT_GT(n.x * centre.x + n.y * centre.y + n.z * centre.z, 0.f)
            << "wound to face outwards";
        for (const VertexRecord *v : {&a, &b, &c})
            EXPECT_TRUE(Near(Vector3(v->normal[0], v->normal[1], v->normal[2]), n))
                << "generated: the face's own";
    });
    EXPECT_NEAR(signedVolume(*box), 24., 1e-4);

    // Two materials give two parts; texture v runs down the image, as in every host mesh.
    writeFile(dir.filePath("two.mtl"), "newmtl red\nKd 1 0 0\nnewmtl blue\nKd 0 0 1\n");
    writeFile(dir.filePath("two.obj"),
              "mtllib two.mtl\nv 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nvt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\n"
              "usemtl red\nf 1/1 2/2 3/3\nusemtl blue\nf 1/1 3/3 4/4\n");
    const MeshPtr two = load(dir.filePath("two.obj"));
    ASSERT_TRUE(two);
    ASSERT_EQ(two->parts().size(), 2u);
    for (const IMeshPart *part : two->parts()) {
        for (const VertexRecord &v : part->GetVertices())
            EXPECT_EQ(v.texCoord[1], 1.f - v.position[1]) << "vt (x, y) lies at position (x, y)";
    }

    // A tetrahedron in ASCII STL and a square pyramid (with a quad base) in ASCII PLY.
    writeFile(dir.filePath("tetra.stl"),
              "solid t\n"
              "facet normal 0 0 -1\nouter loop\nvertex 0 0 0\nvertex 0 5 0\nvertex 5 0 "
              "0\nendloop\nendfacet\n"
              "facet normal 0 -1 0\nouter loop\nvertex 0 0 0\nvertex 5 0 0\nvertex 0 0 "
              "5\nendloop\nendfacet\n"
              "facet normal -1 0 0\nouter loop\nvertex 0 0 0\nvertex 0 0 5\nvertex 0 5 "
              "0\nendloop\nendfacet\n"
              "facet normal 1 1 1\nouter loop\nvertex 5 0 0\nvertex 0 5 0\nvertex 0 0 "
              "5\nendloop\nendfacet\n"
              "endsolid t\n");
    writeFile(
        dir.filePath("pyramid.ply"),
        "ply\nformat ascii 1.0\nelement vertex 5\nproperty float x\nproperty float y\nproperty "
        "float z\n"
        "element face 5\nproperty list uchar int vertex_indices\nend_header\n"
        "-1 -1 0\n1 -1 0\n1 1 0\n-1 1 0\n0 0 3\n4 0 3 2 1\n3 0 1 4\n3 1 2 4\n3 2 3 4\n3 3 0 4\n");
    // The triangle (0,0,0), (1,0,0), (0,1,0) placed twice: scaled by 2 and moved to (10, 20, 30),
    // and moved to (-10, 0, 0).
    writeFile(dir.filePath("placed.gltf"),
              gltf({R"({"mesh": 0, "translation": [10, 20, 30], "scale": [2, 2, 2]})",
                    R"({"mesh": 0, "translation": [-10, 0, 0]})"},
                   {0, 0, 0, 1, 0, 0, 0, 1, 0}));
    struct Expected
    {
        const char *file;
        int triangles;
        Vector3 min, max;
        double volume; // of the closed ones; 0 for the open pair of triangles
    };
    for (const Expected &e : {Expected{"tetra.stl", 4, {0, 0, 0}, {5, 5, 5}, 125. / 6.},
                              Expected{"pyramid.ply", 6, {-1, -1, 0}, {1, 1, 3}, 4.},
                              Expected{"placed.gltf", 2, {-10, 0, 0}, {12, 22, 30}, 0.}}) {
        const MeshPtr mesh = load(dir.filePath(e.file));
        ASSERT_TRUE(mesh) << e.file;
        EXPECT_EQ(mesh->triangleCount(), e.triangles) << e.file;
        EXPECT_TRUE(Near(minOf(*mesh), e.min) && Near(maxOf(*mesh), e.max)) << e.file;
        if (e.volume > 0.) {
            EXPECT_NEAR(signedVolume(*mesh), e.volume, 1e-4) << e.file << ": closed and outward";
        }
    }
    // The glTF node transforms are baked in: the scaled copy's corners, exactly.
    const MeshPtr placed = load(dir.filePath("placed.gltf"));
    std::vector<Vector3> corners;
    for (const VertexRecord &v : placed->parts().front()->GetVertices())
        corners.push_back(position(v));
    for (const Vector3 &p :
         {Vector3(10, 20, 30), Vector3(12, 20, 30), Vector3(10, 22, 30), Vector3(-9, 0, 0)})
        EXPECT_EQ(std::count_if(corners.begin(),
                                corners.end(),
                                [&p](const Vector3 &c) { return Near(c, p); }),
                  1)
            << p.x << ", " << p.y << ", " << p.z;
}

TEST(ModelFile, TheSampleJarIsAClosedJarOfItsStatedSize)
{
    const MeshPtr jar = load(s_jar);
    ASSERT_TRUE(jar);
    // 7 cm across at the body, 10.7 cm tall, standing on the floor round the z axis.
    EXPECT_TRUE(Near(minOf(*jar), Vector3(-3.5f, -3.5f, 0.f))
                && Near(maxOf(*jar), Vector3(3.5f, 3.5f, 10.7f)));
    // 24 sides: the base and lid top are fans of 24, the step under the lid a ring of 48, and
    // the walls 7 + 3 bands of 48.
    EXPECT_EQ(jar->triangleCount(), 24 + 48 + 24 + 10 * 48);
    // Every horizontal slice holds the 24-gon of the 3 cm neck and lies inside the 3.5 cm circle.
    const double pi = std::acos(-1.);
    const double polygonArea = 12. * std::sin(2. * pi / 24.); // per unit radius squared
    EXPECT_GT(signedVolume(*jar), polygonArea * 3.0 * 3.0 * 10.7) << "closed and facing outwards";
    EXPECT_LT(signedVolume(*jar), pi * 3.5 * 3.5 * 10.7);
    forEachTriangle(*jar, [](const VertexRecord &a, const VertexRecord &, const VertexRecord &) {
        EXPECT_NEAR(std::hypot(a.normal[0], a.normal[1], a.normal[2]), 1., 1e-5);
    });
}

TEST(ModelFile, BadFilesAreRefusedNamingTheFileAndTheReason)
{
    QTemporaryDir dir;
    writeFile(dir.filePath("empty.obj"), QByteArray());
    QByteArray garbage;
    for (int i = 0; i < 600; ++i)
        garbage.append(char((i * 7919) % 251));
    for (const char *name :
         {"garbage.obj", "garbage.stl", "garbage.ply", "garbage.gltf", "garbage.xyz"})
        writeFile(dir.filePath(name), garbage);
    writeFile(dir.filePath("lines.obj"), "v 0 0 0\nv 1 0 0\nv 0 1 0\nl 1 2 3\np 1\n");
    writeFile(dir.filePath("solid.stl"), "solid nothing\nendsolid nothing\n");
    ASSERT_TRUE(QDir(dir.path()).mkdir("folder.obj"));
    // One mesh of 65536 vertices placed by 230 nodes: a file of 1 MB that would bake into 15
    // million vertices.
    QStringList placements;
    for (int i = 0; i < 230; ++i)
        placements.append(QStringLiteral(R"({"mesh": 0})"));
    writeFile(dir.filePath("many.gltf"), gltf(placements, std::vector<float>(65536 * 3, 0.f)));
    const std::vector<std::pair<QString, QString>> cases = {
        {"absent.obj", "no such file"},
        {"folder.obj", "is a folder, not a model file"},
        {"/dev/zero", "is not a regular file"},
        {"empty.obj", "the file is empty"},
        {"lines.obj", "contains no triangles"},
        {"many.gltf",
         "more than 15000000 vertices before identical ones are joined; models are limited to "
         "5000000 vertices"},
        // The importer's own words for data it cannot read.
        {"garbage.obj", ""},
        {"garbage.stl", ""},
        {"garbage.ply", ""},
        {"garbage.gltf", ""},
        {"garbage.xyz", ""},
        {"solid.stl", ""},
    };
    for (const auto &[name, reason] : cases) {
        const QString path = QDir(dir.path()).filePath(name); // as it is when absolute
        QString error;
        EXPECT_EQ(ModelFile::load(path, &error), nullptr) << qPrintable(name);
        EXPECT_TRUE(error.startsWith(path + ": ")) << qPrintable(error);
        EXPECT_GT(error.size(), path.size() + 2) << qPrintable(name) << ": a reason is given";
        if (!reason.isEmpty()) {
            EXPECT_EQ(error.toStdString(), (path + ": " + reason).toStdString());
        }
    }
}

TEST(ModelFile, AnUnchangedFileIsSharedAndAChangedOneReadAgain)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("box.obj");
    writeFile(path, s_boxObj);
    const MeshPtr first = load(path);
    EXPECT_EQ(load(QDir(dir.path()).filePath("./box.obj")), first)
        << "the same file by another name";

    // A different size too: a rewrite within the file system's clock tick keeps the time.
    QByteArray taller = s_boxObj;
    taller.replace(" 4\n", " 12\n"); // the top corners move from z = 4 to z = 12
    writeFile(path, taller);
    const MeshPtr second = load(path);
    ASSERT_TRUE(second);
    EXPECT_NE(second, first);
    EXPECT_EQ(maxOf(*second).z, 12.f);
    EXPECT_EQ(maxOf(*first).z, 4.f) << "meshes in use stay as they were";
}

TEST(ModelFile, NodeLimitsHoldExactlyAtTheirBoundariesInEveryFormat)
{
    QTemporaryDir dir;
    const auto readWith = [&dir](const char *name, const QByteArray &bytes, int depth, int nodes) {
        const QString path = QDir(dir.path()).filePath(name);
        writeFile(path, bytes);
        ModelFile::Limits limits;
        limits.nodeDepth = depth;
        limits.nodeCount = nodes;
        QString error;
        MeshPtr mesh = ModelFile::read(path, limits, &error);
        return std::make_pair(mesh, error.mid(path.size() + 2));
    };

    // 9 doublings: 1023 nodes in the scene, which place the triangle 512 times.
    const auto [doubled, noError] = readWith("doubling.gltf", doublingGltf(9), 256, 1023);
    ASSERT_TRUE(doubled) << qPrintable(noError);
    EXPECT_EQ(doubled->triangleCount(), 512);
    EXPECT_EQ(readWith("doubling.gltf", doublingGltf(9), 256, 1022).second.toStdString(),
              "scenes[0] places more than 1022 nodes, counting a node once for each path that "
              "reaches it; models are limited to 1022 nodes");

    // A chain of 40 nodes is 40 levels deep.
    EXPECT_TRUE(readWith("chain.gltf", chainGltf(40), 40, 1000).first);
    EXPECT_EQ(readWith("chain.gltf", chainGltf(40), 39, 1000).second.toStdString(),
              "nodes[0] starts a chain of more than 39 nested nodes; models are limited to 39 "
              "levels of nodes");
    // glTF 1 names its nodes instead of numbering them.
    EXPECT_EQ(readWith("cycle.gltf",
                       R"({"asset": {"version": "1.0"}, "scene": "s",
                           "scenes": {"s": {"nodes": ["a"]}},
                           "nodes": {"a": {"children": ["b"]}, "b": {"children": ["a"]}}})",
                       256,
                       1000)
                  .second.toStdString(),
              R"(nodes["b"] lists nodes["a"], which contains it: the nodes form a cycle)");

    // Other formats are held to the same limits on the tree the importer built, before the
    // steps that walk it recursively and copy every piece into place.
    EXPECT_TRUE(readWith("nested.dae",
                         vantrel::test::colladaModel(vantrel::test::nestedColladaNodes(40)),
                         40,
                         1000)
                    .first);
    EXPECT_EQ(readWith("nested.dae",
                       vantrel::test::colladaModel(vantrel::test::nestedColladaNodes(40)),
                       39,
                       1000)
                  .second.toStdString(),
              "the nodes are nested more than 39 levels deep; models are limited to 39 levels of "
              "nodes");
    const QByteArray wide
        = QByteArray(R"(<node><instance_geometry url="#g"/></node>)").repeated(150);
    EXPECT_TRUE(readWith("wide.dae", vantrel::test::colladaModel(wide), 256, 150).first);
    EXPECT_EQ(
        readWith("wide.dae", vantrel::test::colladaModel(wide), 256, 149).second.toStdString(),
        "more than 149 nodes; models are limited to 149 nodes");
}

TEST(ModelFile, TheGraphIsCheckedBeforeTheImporterAndTheImporterWithinLimits)
{
    QTemporaryDir dir;
    const QString doubling24 = dir.filePath("doubling24.gltf");
    const QString doubling18 = dir.filePath("doubling18.gltf");
    writeFile(doubling24, doublingGltf(24));
    writeFile(doubling18, doublingGltf(18));
    ModelFile::Limits narrow;
    narrow.memoryBytes = qint64(64) << 20;
    QString error;

    // 33 million nodes, refused by the count before anything is copied: not even 64 MiB are
    // needed for that.
    EXPECT_EQ(ModelFile::read(doubling24, narrow, &error), nullptr);
    EXPECT_EQ(error.toStdString(),
              (doubling24
               + ": scenes[0] places more than 100000 nodes, counting a node once for "
                 "each path that reaches it; models are limited to 100000 nodes")
                  .toStdString());

    // With the graph check out of the way, the importer's copy of half a million nodes (some
    // 600 MiB) meets the memory limit instead.
    ModelFile::Limits unchecked = narrow;
    unchecked.nodeCount = qint64(1) << 40;
    EXPECT_EQ(ModelFile::read(doubling18, unchecked, &error), nullptr);
    EXPECT_EQ(error.toStdString(),
              (doubling18 + ": reading the model needed more than 64 MiB").toStdString());

    // A buffer in a FIFO that no one writes: the importer waits for ever to open it.
    ASSERT_EQ(::mkfifo(QFile::encodeName(dir.filePath("buffer.bin")).constData(), 0600), 0);
    const QString waiting = dir.filePath("waiting.gltf");
    QString waitingText = QString::fromUtf8(gltf({R"({"mesh": 0})"}, s_triangle));
    waitingText.replace(QRegularExpression(R"("uri": "[^"]*")"), R"("uri": "buffer.bin")");
    writeFile(waiting, waitingText.toUtf8());
    ModelFile::Limits brief;
    brief.timeMilliseconds = 500;
    EXPECT_EQ(ModelFile::read(waiting, brief, &error), nullptr);
    EXPECT_EQ(error.toStdString(),
              (waiting + ": reading the model took more than 0.5 s").toStdString());
}

TEST(ModelFile, AFaultInsideTheImporterIsReportedAndTheProgramGoesOn)
{
    QTemporaryDir dir;
    const QString crash = ": the model importer failed (killed by signal 11: Segmentation fault)";
    // The importer recurses through nested Collada nodes while it reads them, past its stack.
    const QString deep = dir.filePath("deep.dae");
    writeFile(deep, vantrel::test::colladaModel(vantrel::test::nestedColladaNodes(20000)));
    QString error;
    EXPECT_EQ(ModelFile::load(deep, &error), nullptr);
    EXPECT_EQ(error.toStdString(), (deep + crash).toStdString());

    // The same happens to a deep glTF chain when nothing checks the graph first.
    const QString chain = dir.filePath("chain.gltf");
    writeFile(chain, chainGltf(20000));
    ModelFile::Limits unchecked;
    unchecked.nodeDepth = 1 << 30;
    EXPECT_EQ(ModelFile::read(chain, unchecked, &error), nullptr);
    EXPECT_EQ(error.toStdString(), (chain + crash).toStdString());

    // This process carries on reading.
    const MeshPtr jar = ModelFile::read(s_jar, ModelFile::Limits(), &error);
    ASSERT_TRUE(jar) << qPrintable(error);
    EXPECT_EQ(jar->triangleCount(), 24 + 48 + 24 + 10 * 48);
}

class ExternalModelTest : public ::testing::Test
{
protected:
    ExternalModelTest()
        : m_context(&m_document, &m_ui)
        , m_runner(m_context)
    {
        writeFile(m_dir.filePath("box.obj"), s_boxObj);
    }

    QString run(const QString &program)
    {
        QString error;
        return m_runner.evaluate(program, QStringLiteral("test.js"), &error) ? QString() : error;
    }

    QTemporaryDir m_dir;
    Document m_document;
    HeadlessUserInterface m_ui;
    DocumentContext m_context;
    ScriptRunner m_runner;
};

TEST_F(ExternalModelTest, PathChangesLoadShareAndUndoWithoutReadingAgain)
{
    MeshNode *jar = m_document.root()->createChildShape("generator.external.model", "Jar");
    auto *generator = qobject_cast<ExternalModelGenerator *>(jar->generator());
    ASSERT_NE(generator, nullptr);
    generator->setPath(s_jar);
    const MeshPtr jarMesh = jar->mesh();
    EXPECT_EQ(jarMesh, load(s_jar)) << "the shape shows the file's mesh";

    auto *copy = static_cast<MeshNode *>(m_document.CloneNode(jar, 0));
    EXPECT_EQ(copy->mesh(), jarMesh) << "a clone shares the mesh";

    const QString box = m_dir.filePath("box.obj");
    const QByteArray beforeBox = dump(m_document);
    const int steps = m_document.history().undoCount();
    jar->generator()->setProperty("path", box);
    EXPECT_EQ(jar->mesh()->vertexCount(), 24);
    EXPECT_EQ(copy->mesh(), jarMesh) << "the clone keeps its own path and mesh";
    EXPECT_EQ(m_document.history().undoCount(), steps + 1);

    ASSERT_TRUE(QFile::remove(box));
    ASSERT_TRUE(m_document.undo());
    EXPECT_EQ(jar->mesh(), jarMesh) << "undo restores the previous mesh itself";
    EXPECT_EQ(dump(m_document), beforeBox);
    ASSERT_TRUE(m_document.redo());
    EXPECT_EQ(jar->mesh()->vertexCount(), 24) << "redo needs no file either";

    // A file that cannot be read is refused and changes nothing, not even the undo history.
    const QByteArray before = dump(m_document);
    const QString absent = m_dir.filePath("absent.obj");
    jar->generator()->setProperty("path", absent);
    EXPECT_EQ(generator->refusal().toStdString(), (absent + ": no such file").toStdString());
    EXPECT_EQ(dump(m_document), before);
    EXPECT_EQ(m_document.history().undoCount(), steps + 1);
    EXPECT_EQ(generator->path(), box) << "the path of the shown mesh stays";

    // Relative paths start from the working directory.
    const QString previous = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(QStringLiteral(VANTREL_SOURCE_DIR "/examples")));
    generator->setPath(QStringLiteral("models/jar.obj"));
    QDir::setCurrent(previous);
    EXPECT_EQ(jar->mesh(), jarMesh);
    EXPECT_EQ(generator->path(), QStringLiteral("models/jar.obj")) << "kept as given";
}

TEST_F(ExternalModelTest, ScriptsGetTheMessageAndTheSceneStaysAsItWas)
{
    const QString box = m_dir.filePath("box.obj");
    EXPECT_EQ(run(QStringLiteral(
                      "document.root.addShape('generator.external.model', 'Box', {path: '%1'})")
                      .arg(box)),
              QString());
    const QByteArray before = dump(m_document);
    const QString absent = m_dir.filePath("absent.obj");
    const QString empty = m_dir.filePath("empty.obj");
    writeFile(empty, QByteArray());
    EXPECT_EQ(run(QStringLiteral("document.findNode('Box').setParam('path', '%1')").arg(absent))
                  .toStdString(),
              ("test.js:1: Error: " + absent + ": no such file").toStdString());
    EXPECT_EQ(run(QStringLiteral(
                      "document.root.addShape('generator.external.model', 'Other', {path: '%1'})")
                      .arg(empty))
                  .toStdString(),
              ("test.js:1: Error: " + empty + ": the file is empty").toStdString());
    EXPECT_EQ(dump(m_document), before);
}

TEST(ExternalModelScene, PathsResolveFromTheSceneFolderAndRoundTripExactly)
{
    QTemporaryDir dir;
    ASSERT_TRUE(QDir(dir.path()).mkpath("models"));
    writeFile(dir.filePath("models/bottle 19.obj"), s_boxObj);
    const QString scene = dir.filePath("shelf.json");
    writeFile(scene, sceneWithModel("models/bottle 19.obj"));
    QString error;
    std::unique_ptr<Document> document = SceneFile::load(scene, &error);
    ASSERT_TRUE(document) << qPrintable(error) << " (working directory "
                          << qPrintable(QDir::currentPath()) << ")";
    auto *shape = static_cast<MeshNode *>(document->root()->childNode(0));
    EXPECT_EQ(shape->mesh()->vertexCount(), 24);

    // Saved as given, even once the model is gone: its absence does not stop a save.
    ASSERT_TRUE(QFile::remove(dir.filePath("models/bottle 19.obj")));
    const QString again = dir.filePath("again.json");
    ASSERT_TRUE(SceneFile::save(again, *document, &error)) << qPrintable(error);
    QFile saved(again);
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    EXPECT_TRUE(saved.readAll().contains("\"path\": \"models/bottle 19.obj\""));

    // Reading it now fails naming the scene, the place and the model file.
    EXPECT_EQ(SceneFile::load(again, &error), nullptr);
    EXPECT_EQ(error.toStdString(),
              (again + ": root.children[0].params.path: " + dir.filePath("models/bottle 19.obj")
               + ": no such file")
                  .toStdString());

    // The open shape keeps resolving from the scene's folder when its path changes later.
    ASSERT_TRUE(QFile::copy(s_jar, dir.filePath("models/jar.obj")));
    shape->generator()->setProperty("path", QStringLiteral("models/jar.obj"));
    EXPECT_EQ(shape->generator()->refusal(), QString());
    EXPECT_EQ(shape->mesh()->vertexCount(), load(s_jar)->vertexCount()) << "the copied jar";
}
