// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Reading a model file: what the separate reading process costs over reading in this process
// (the same importer and conversion; an OBJ grid of 400 x 400 vertices and 318 402 triangles),
// and how soon a glTF file whose 24 nodes expand into 33 million is refused. The reading
// process's share is the ratio of the first two figures.

#include "hostapp/core/models/modelfile.h"
#include "hostapp/core/models/modelimport.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace vantrel::host;

namespace {

constexpr int Side = 400; // vertices along each edge of the grid

struct Files
{
    QTemporaryDir dir;
    QString grid = dir.filePath(QStringLiteral("grid.obj"));
    QString doubling = dir.filePath(QStringLiteral("doubling.gltf"));

    Files()
    {
        // A waved grid, so that the normals have something to smooth.
        QByteArray obj;
        for (int y = 0; y < Side; ++y) {
            for (int x = 0; x < Side; ++x)
                obj += QByteArray("v ") + QByteArray::number(x) + ' ' + QByteArray::number(y) + ' '
                       + QByteArray::number((x * 7 + y * 13) % 17 * 0.1) + '\n';
        }
        for (int y = 0; y + 1 < Side; ++y) {
            for (int x = 0; x + 1 < Side; ++x) {
                const int a = y * Side + x + 1, b = a + 1, c = a + Side, d = c + 1;
                obj += "f " + QByteArray::number(a) + ' ' + QByteArray::number(b) + ' '
                       + QByteArray::number(d) + "\nf " + QByteArray::number(a) + ' '
                       + QByteArray::number(d) + ' ' + QByteArray::number(c) + '\n';
            }
        }
        write(grid, obj);

        QByteArray nodes = R"({"mesh": 0})";
        for (int i = 1; i <= 24; ++i)
            nodes += R"(, {"children": [)" + QByteArray::number(i - 1) + ", "
                     + QByteArray::number(i - 1) + "]}";
        write(doubling,
              R"({"asset": {"version": "2.0"}, "scenes": [{"nodes": [24]}], "nodes": [)" + nodes
                  + R"(], "meshes": [{"primitives": [{"attributes": {"POSITION": 0}}]}],
                  "buffers": [{"byteLength": 36, "uri": "data:application/octet-stream;base64,)"
                  + QByteArray(36, '\0').toBase64() + R"("}],
                  "bufferViews": [{"buffer": 0, "byteLength": 36}],
                  "accessors": [{"bufferView": 0, "componentType": 5126, "count": 3,
                                 "type": "VEC3"}]})");
    }

    static void write(const QString &path, const QByteArray &bytes)
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(path));
    }
};

Files &files()
{
    static Files s_files;
    return s_files;
}

void BM_ReadGridInThisProcess(benchmark::State &state)
{
    for (auto _ : state) {
        ModelImport::Parts parts;
        QString problem;
        if (ModelImport::read(files().grid, ModelFile::Limits(), parts, &problem)
            != ModelImport::Result::Read)
            state.SkipWithError(qPrintable(problem));
        benchmark::DoNotOptimize(parts.take().data());
    }
}
BENCHMARK(BM_ReadGridInThisProcess)->Unit(benchmark::kMillisecond);

void BM_ReadGridInAReadingProcess(benchmark::State &state)
{
    int triangles = 0;
    for (auto _ : state) {
        QString error;
        const MeshPtr mesh = ModelFile::read(files().grid, ModelFile::Limits(), &error);
        if (!mesh)
            state.SkipWithError(qPrintable(error));
        else
            triangles = mesh->triangleCount();
    }
    state.counters["triangles"] = triangles;
}
BENCHMARK(BM_ReadGridInAReadingProcess)->Unit(benchmark::kMillisecond);

void BM_RefuseDoubling24(benchmark::State &state)
{
    for (auto _ : state) {
        QString error;
        if (ModelFile::read(files().doubling, ModelFile::Limits(), &error))
            state.SkipWithError("the doubling graph was read");
    }
}
BENCHMARK(BM_RefuseDoubling24)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
