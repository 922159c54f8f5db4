// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The model reader's limits: node graphs checked before the importer runs, the importer held to
// memory and time, and a fault inside it reported while the program goes on.
#include "hostapp/core/models/modelfile.h"
#include "tests/hostapp/filefixtures.h"
#include "tests/support/testsupport.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <atomic>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include <sys/stat.h>

using namespace vantrel::host;
using namespace vantrel::test;

namespace {

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

} // namespace

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

// A reader made by copying this process (fork) would start with whatever locks other threads held
// at that moment, the memory allocator's among them, and could wait for ever on one. Here two
// threads allocate all the time while models are read; every read must still end with its mesh.
TEST(ModelFile, ReadsWhileOtherThreadsHoldTheAllocator)
{
    std::atomic<bool> stop{false};
    std::vector<std::thread> allocating;
    for (int t = 0; t < 2; ++t) {
        allocating.emplace_back([&stop, t] {
            // Batches of blocks of every size, small to large, so that the allocator's shared
            // lists (and their locks) are reached, not only each thread's own cache.
            std::vector<std::unique_ptr<char[]>> blocks(512);
            std::size_t size = 16 + std::size_t(t);
            while (!stop.load(std::memory_order_relaxed)) {
                for (std::unique_ptr<char[]> &block : blocks) {
                    block.reset(new char[size]);
                    block[size / 2] = char(size);
                    size = size > (std::size_t(1) << 20) ? 16 : size * 5 / 4 + 1;
                }
                for (std::unique_ptr<char[]> &block : blocks)
                    block.reset();
            }
        });
    }
    ModelFile::Limits limits;
    limits.timeMilliseconds = 10000;
    int read = 0;
    QString error;
    for (int i = 0; i < 40; ++i) {
        const MeshPtr jar = ModelFile::read(s_jar, limits, &error);
        if (!jar)
            break;
        read += jar->triangleCount() == 24 + 48 + 24 + 10 * 48;
    }
    stop = true;
    for (std::thread &thread : allocating)
        thread.join();
    EXPECT_EQ(read, 40) << qPrintable(error);
}
