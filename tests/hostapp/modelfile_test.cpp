// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Model files read into meshes: each format's geometry, the sample jar, bad files refused with
// their reason, and meshes shared while their file is unchanged.
#include "hostapp/core/models/modelfile.h"
#include "tests/hostapp/filefixtures.h"
#include "tests/support/testsupport.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace vantrel::host;
using namespace vantrel::test;

namespace {

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

// The box of s_boxObj, centred on (1, 1.5, 2): every triangle faces away from the centre, and
// its corners carry the face's own normal.
void expectBoxFacesOutwardWithFaceNormals(const Mesh &box)
{
    forEachTriangle(box, [](const VertexRecord &a, const VertexRecord &b, const VertexRecord &c) {
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
}

// A tetrahedron in ASCII STL, a square pyramid (with a quad base) in ASCII PLY, and a triangle
// placed twice in glTF.
void writeSolidsAndPlacedTriangles(const QTemporaryDir &dir)
{
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
}

} // namespace

TEST(ModelFile, EachFormatGivesTheGeometryItsFileDescribes)
{
    QTemporaryDir dir;
    const QString obj = dir.filePath("box.obj");
    writeFile(obj, s_boxObj);
    const MeshPtr box = loadModel(obj);
    ASSERT_TRUE(box);
    EXPECT_EQ(box->triangleCount(), 12) << "six quads";
    EXPECT_EQ(box->vertexCount(), 24) << "corners are not shared across the box's sharp edges";
    EXPECT_TRUE(Near(minOf(*box), Vector3(0, 0, 0)) && Near(maxOf(*box), Vector3(2, 3, 4)));
    expectBoxFacesOutwardWithFaceNormals(*box);
    EXPECT_NEAR(signedVolume(*box), 24., 1e-4);

    // Two materials give two parts; texture v runs down the image, as in every host mesh.
    writeFile(dir.filePath("two.mtl"), "newmtl red\nKd 1 0 0\nnewmtl blue\nKd 0 0 1\n");
    writeFile(dir.filePath("two.obj"),
              "mtllib two.mtl\nv 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nvt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\n"
              "usemtl red\nf 1/1 2/2 3/3\nusemtl blue\nf 1/1 3/3 4/4\n");
    const MeshPtr two = loadModel(dir.filePath("two.obj"));
    ASSERT_TRUE(two);
    ASSERT_EQ(two->parts().size(), 2u);
    for (const IMeshPart *part : two->parts()) {
        for (const VertexRecord &v : part->GetVertices())
            EXPECT_EQ(v.texCoord[1], 1.f - v.position[1]) << "vt (x, y) lies at position (x, y)";
    }

    writeSolidsAndPlacedTriangles(dir);
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
        const MeshPtr mesh = loadModel(dir.filePath(e.file));
        ASSERT_TRUE(mesh) << e.file;
        EXPECT_EQ(mesh->triangleCount(), e.triangles) << e.file;
        EXPECT_TRUE(Near(minOf(*mesh), e.min) && Near(maxOf(*mesh), e.max)) << e.file;
        if (e.volume > 0.) {
            EXPECT_NEAR(signedVolume(*mesh), e.volume, 1e-4) << e.file << ": closed and outward";
        }
    }
    // The glTF node transforms are baked in: the scaled copy's corners, exactly.
    const MeshPtr placed = loadModel(dir.filePath("placed.gltf"));
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
    const MeshPtr jar = loadModel(s_jar);
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
    // Under a limit of 5 million vertices, a soup is allowed three times as many corners.
    ModelFile::Limits limits;
    limits.vertexCount = 5000000;
    QString error;
    EXPECT_EQ(ModelFile::read(dir.filePath("many.gltf"), limits, &error), nullptr);
    EXPECT_EQ(error.toStdString(),
              (dir.filePath("many.gltf")
               + ": more than 15000000 vertices before identical ones are joined; models are "
                 "limited to 5000000 vertices")
                  .toStdString());
}

TEST(ModelFile, AnUnchangedFileIsSharedAndAChangedOneReadAgain)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("box.obj");
    writeFile(path, s_boxObj);
    const MeshPtr first = loadModel(path);
    EXPECT_EQ(loadModel(QDir(dir.path()).filePath("./box.obj")), first)
        << "the same file by another name";

    // A different size too: a rewrite within the file system's clock tick keeps the time.
    QByteArray taller = s_boxObj;
    taller.replace(" 4\n", " 12\n"); // the top corners move from z = 4 to z = 12
    writeFile(path, taller);
    const MeshPtr second = loadModel(path);
    ASSERT_TRUE(second);
    EXPECT_NE(second, first);
    EXPECT_EQ(maxOf(*second).z, 12.f);
    EXPECT_EQ(maxOf(*first).z, 4.f) << "meshes in use stay as they were";
}
