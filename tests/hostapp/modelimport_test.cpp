// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Large and scanned models: counts refused from the file's header, meshes that share their
// corners taken as they are, and the progress of a reading, which the user may cancel.
#include "hostapp/core/models/modelfile.h"
#include "hostapp/core/models/modelheader.h"
#include "hostapp/core/models/modelreadprogress.h"
#include "tests/hostapp/filefixtures.h"
#include "tests/support/gridply.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <algorithm>
#include <cerrno>
#include <cmath>

#include <sys/wait.h>

using namespace vantrel::host;
using namespace vantrel::test;

namespace {

// A regular octahedron of radius 1, its eight faces turned outwards, so that the area-weighted
// normal of each corner is the corner's own direction.
PlyModel octahedron()
{
    PlyModel model;
    model.positions = {1, 0, 0, -1, 0, 0, 0, 1, 0, 0, -1, 0, 0, 0, 1, 0, 0, -1};
    for (const int sx : {1, -1}) {
        for (const int sy : {1, -1}) {
            for (const int sz : {1, -1}) {
                const int x = sx > 0 ? 0 : 1, y = sy > 0 ? 2 : 3, z = sz > 0 ? 4 : 5;
                model.faces.push_back(sx * sy * sz > 0 ? std::vector<int>{x, y, z}
                                                       : std::vector<int>{x, z, y});
            }
        }
    }
    return model;
}

ModelFile::Limits smallLimits()
{
    ModelFile::Limits limits;
    limits.vertexCount = 1000;
    limits.triangleCount = 2000;
    return limits;
}

// What the header check says of the file, "" when it lets the file through.
QString headerProblem(const QTemporaryDir &dir,
                      const char *name,
                      const QByteArray &bytes,
                      const ModelFile::Limits &limits = smallLimits())
{
    writeFile(dir.filePath(name), bytes);
    QString problem;
    return ModelHeader::check(dir.filePath(name), limits, &problem) ? QString() : problem;
}

// Records what a reading reports, and cancels it at the first report when asked to.
class ProgressRecorder final : public ModelReadProgress
{
public:
    explicit ProgressRecorder(bool cancel = false)
        : m_cancel(cancel)
    {}
    void started(const QString &path) override { paths.append(path); }
    bool progressed(double fraction) override
    {
        fractions.push_back(fraction);
        return !m_cancel;
    }
    void finished(bool read) override { reads.push_back(read); }

    QStringList paths;
    std::vector<double> fractions;
    std::vector<bool> reads; // what each finishing said

private:
    const bool m_cancel;
};

} // namespace

TEST(ModelHeader, CountsOverTheLimitsAreRefusedFromTheHeaderAlone)
{
    QTemporaryDir dir;
    // Headers without their data: only the header can have refused them.
    PlyModel stated;
    stated.statedVertices = 1001;
    EXPECT_EQ(headerProblem(dir, "a.ply", binaryPly(stated)).toStdString(),
              "1001 vertices; models are limited to 1000 vertices");
    stated.statedVertices = 1000;
    stated.statedFaces = 2001;
    EXPECT_EQ(headerProblem(dir, "b.ply", binaryPly(stated)).toStdString(),
              "2001 faces; models are limited to 2000 triangles");
    stated.statedFaces = 2000;
    EXPECT_EQ(headerProblem(dir, "c.ply", binaryPly(stated)), QString()) << "at the limits";
    stated.statedVertices = -1;
    QByteArray tooLong = binaryPly(stated);
    tooLong.replace("element vertex 0", "element vertex 184467440737095516160");
    EXPECT_NE(headerProblem(dir, "d.ply", tooLong), QString()) << "beyond 64 bits";

    // A binary STL file states its triangles after 80 bytes; three corners each before joining.
    const auto stl = [](quint32 triangles) {
        QByteArray bytes(84 + 50 * int(triangles), '\0');
        bytes.replace(80, 4, QByteArray(reinterpret_cast<const char *>(&triangles), 4));
        return bytes;
    };
    EXPECT_EQ(headerProblem(dir, "a.stl", stl(2001)).toStdString(),
              "2001 triangles; models are limited to 2000 triangles");
    EXPECT_EQ(headerProblem(dir, "b.stl", stl(1001)).toStdString(),
              "3003 vertices before identical ones are joined; models are limited to 1000 "
              "vertices (3000 before joining)");
    EXPECT_EQ(headerProblem(dir, "c.stl", stl(1000)), QString());

    // OBJ: position and face lines, not normals, texture coordinates or comments.
    QByteArray obj = "# v 1 2 3\nvn 0 0 1\nvt 0 0\n";
    for (int i = 0; i < 5; ++i)
        obj += "v 0 0 " + QByteArray::number(i) + "\nf 1 2 3\n";
    ModelFile::Limits four = smallLimits();
    four.vertexCount = 5;
    four.triangleCount = 4;
    EXPECT_EQ(headerProblem(dir, "a.obj", obj, four).toStdString(),
              "5 faces; models are limited to 4 triangles");
    four.vertexCount = 4;
    EXPECT_EQ(headerProblem(dir, "a.obj", obj, four).toStdString(),
              "5 vertices; models are limited to 4 vertices");

    // Through the whole reading, with the machine's limits, the file named.
    stated.statedVertices = qint64(1) << 40;
    writeFile(dir.filePath("huge.ply"), binaryPly(stated));
    QString error;
    EXPECT_EQ(ModelFile::load(dir.filePath("huge.ply"), &error), nullptr);
    EXPECT_EQ(error.toStdString(),
              QStringLiteral("%1: 1099511627776 vertices; models are limited to %2 vertices")
                  .arg(dir.filePath("huge.ply"))
                  .arg(ModelFile::vertexLimit())
                  .toStdString());
}

TEST(ModelImport, AMeshThatSharesItsCornersIsTakenAsItIsWithNormalsOnlyWhereItHasNone)
{
    QTemporaryDir dir;
    PlyModel model = octahedron();
    model.faces.push_back({0, 0, 2}); // repeats a corner: covers nothing
    writeFile(dir.filePath("octahedron.ply"), binaryPly(model));
    const MeshPtr mesh = loadModel(dir.filePath("octahedron.ply"));
    ASSERT_TRUE(mesh);
    EXPECT_EQ(mesh->vertexCount(), 6) << "no corner split or joined";
    EXPECT_EQ(mesh->triangleCount(), 8);
    for (const VertexRecord &v : mesh->meshParts()[0]->GetVertices()) {
        for (int k = 0; k < 3; ++k)
            EXPECT_NEAR(v.normal[k], v.position[k], 1e-6) << "area-weighted, outwards";
    }

    // The file's normals are kept as they are, however unlikely.
    model.normals.assign(model.positions.size(), 0.f);
    for (std::size_t i = 2; i < model.normals.size(); i += 3)
        model.normals[i] = 1.f;
    writeFile(dir.filePath("up.ply"), binaryPly(model));
    const MeshPtr up = loadModel(dir.filePath("up.ply"));
    ASSERT_TRUE(up);
    for (const VertexRecord &v : up->meshParts()[0]->GetVertices())
        EXPECT_EQ(std::vector<float>(v.normal, v.normal + 3), std::vector<float>({0, 0, 1}));

    // Polygons become triangles over the same corners: two quads sharing an edge.
    PlyModel strip;
    strip.positions = {0, 0, 0, 1, 0, 0, 2, 0, 0, 0, 1, 0, 1, 1, 0, 2, 1, 0};
    strip.faces = {{0, 1, 4, 3}, {1, 2, 5, 4}};
    writeFile(dir.filePath("strip.ply"), binaryPly(strip));
    const MeshPtr quads = loadModel(dir.filePath("strip.ply"));
    ASSERT_TRUE(quads);
    EXPECT_EQ(quads->vertexCount(), 6);
    EXPECT_EQ(quads->triangleCount(), 4);
    for (const VertexRecord &v : quads->meshParts()[0]->GetVertices())
        EXPECT_NEAR(v.normal[2], 1.f, 1e-6);
}

TEST(ModelReadProgress, ALargeModelReportsHowFarItIsAndCanBeCancelled)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("scan.ply");
    ASSERT_TRUE(writeGridPly(path, 1000));
    {
        ProgressRecorder recorder;
        const ModelReadProgress::Scope scope(&recorder);
        QString error;
        const MeshPtr mesh = ModelFile::read(path, ModelFile::Limits(), &error);
        ASSERT_TRUE(mesh) << qPrintable(error);
        EXPECT_EQ(mesh->vertexCount(), 1000000);
        EXPECT_EQ(mesh->triangleCount(), 2 * 999 * 999);
        EXPECT_EQ(recorder.paths, QStringList{path});
        EXPECT_EQ(recorder.reads, std::vector<bool>{true});
        EXPECT_TRUE(std::is_sorted(recorder.fractions.begin(), recorder.fractions.end()));
        for (const double fraction : recorder.fractions)
            EXPECT_TRUE(fraction >= 0. && fraction <= 1.) << fraction;
    }
    EXPECT_EQ(ModelReadProgress::current(), nullptr) << "the scope ended";

    ProgressRecorder canceller(true);
    const ModelReadProgress::Scope scope(&canceller);
    QString error;
    EXPECT_EQ(ModelFile::read(path, ModelFile::Limits(), &error), nullptr);
    EXPECT_EQ(error.toStdString(), (path + ": reading was cancelled").toStdString());
    EXPECT_EQ(canceller.fractions.size(), 1u) << "stopped at the first word";
    EXPECT_EQ(canceller.reads, std::vector<bool>{false});
    errno = 0;
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "the reader is gone, not left behind";
    EXPECT_EQ(errno, ECHILD);
}
