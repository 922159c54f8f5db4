// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Saving scene files: a failed save says why and keeps the previous file, even when the write
// fails half-way, and every scene within the limits fits the file size limit.
#include "hostapp/core/document/document.h"
#include "hostapp/core/files/scenefile.h"
#include "hostapp/core/scene/generatorregistry.h"
#include "hostapp/core/scene/lightnode.h"
#include "hostapp/core/scene/meshnode.h"
#include "tests/hostapp/filefixtures.h"
#include "tests/hostapp/scenefixtures.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <utility>

#include <sys/stat.h>

using namespace vantrel::host;
using namespace vantrel::test;

TEST(SceneFile, FailedSaveSaysWhyAndKeepsThePreviousFile)
{
    QTemporaryDir dir;
    QString error;
    Document document;
    group(document.root(), QStringLiteral("Shelf"));

    const QString noFolder = dir.filePath(QStringLiteral("missing/shelf.json"));
    EXPECT_FALSE(SceneFile::save(noFolder, document, &error));
    EXPECT_EQ(error.toStdString(),
              QString("Cannot save " + noFolder + ": no such folder: " + dir.filePath("missing"))
                  .toStdString());

    const QString folder = dir.filePath(QStringLiteral("folder.json"));
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("folder.json")));
    EXPECT_FALSE(SceneFile::save(folder, document, &error));
    EXPECT_EQ(error.toStdString(),
              QString("Cannot save " + folder + ": is a folder").toStdString());
    EXPECT_TRUE(QFileInfo(folder).isDir());

    // A FIFO stays a FIFO: a temporary file renamed over it would replace it.
    const QString fifo = dir.filePath(QStringLiteral("fifo.json"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    EXPECT_FALSE(SceneFile::save(fifo, document, &error));
    EXPECT_EQ(error.toStdString(),
              QString("Cannot save " + fifo + ": is not a regular file (a device, FIFO or socket)")
                  .toStdString());
    EXPECT_FALSE(QFileInfo(fifo).isFile());
    EXPECT_EQ(SceneFile::load(fifo, &error), nullptr) << "refused at once, not read for ever";
    EXPECT_EQ(error.toStdString(),
              QString(fifo + ": is not a regular file (a device, FIFO or socket)").toStdString());
    ASSERT_TRUE(QFile::remove(fifo));

    // Scenes the loader would refuse are not written, so the user keeps a file that opens.
    const QString previous = dir.filePath(QStringLiteral("shelf.json"));
    writeFile(previous, "the previous contents\n");
    static_cast<SceneNode *>(document.root()->childNode(0))
        ->SetPosition(Vector3(2e7f, 0.f, 0.f), true);
    EXPECT_FALSE(SceneFile::save(previous, document, &error));
    EXPECT_EQ(error.toStdString(),
              QString("Cannot save " + previous
                      + ": root.children[0].position[0]: 20000000 is outside -10000000..10000000")
                  .toStdString());
    Document deep;
    BaseNode *node = deep.root();
    for (int level = 0; level < 300; ++level)
        node = group(node, QString());
    EXPECT_FALSE(SceneFile::save(previous, deep, &error));
    EXPECT_EQ(error.toStdString(),
              QString("Cannot save " + previous + ": root"
                      + QStringLiteral(".children[0]").repeated(257)
                      + ": nodes nested deeper than 256 levels")
                  .toStdString());
    EXPECT_EQ(readAll(previous), "the previous contents\n");
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList{"shelf.json"});
}

TEST(SceneFile, WriteFailureHalfWayLeavesThePreviousFile)
{
    QTemporaryDir dir;
    const QString scene = dir.filePath(QStringLiteral("scene.json"));
    const QString target = dir.filePath(QStringLiteral("target/shelf.json"));
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("target")));
    QString error;
    const auto document = everythingScene();
    ASSERT_TRUE(SceneFile::save(scene, *document, &error)) << qPrintable(error);
    const QByteArray sceneBytes = readAll(scene);
    ASSERT_GT(sceneBytes.size(), 8192);
    writeFile(target, "the previous contents\n");

    auto saveWithLimit = [&](qint64 bytes) {
        QProcess helper;
        helper.start(QStringLiteral(VANTREL_SAVE_WITH_FILE_LIMIT),
                     {QString::number(bytes), scene, target});
        EXPECT_TRUE(helper.waitForFinished(30000));
        EXPECT_EQ(helper.exitStatus(), QProcess::NormalExit);
        return std::make_pair(helper.exitCode(),
                              QString::fromLocal8Bit(helper.readAllStandardError()));
    };
    const auto [code, message] = saveWithLimit(4096);
    EXPECT_EQ(code, 1);
    EXPECT_EQ(message.toStdString(),
              ("Cannot save " + target + ": File too large\n").toStdString());
    EXPECT_EQ(readAll(target), "the previous contents\n");
    EXPECT_EQ(QDir(dir.filePath(QStringLiteral("target"))).entryList(QDir::Files | QDir::Hidden),
              QStringList{"shelf.json"})
        << "no temporary file is left behind";

    // The same save with room enough succeeds: the limit, not the helper, made it fail.
    const auto [roomyCode, roomyMessage] = saveWithLimit(sceneBytes.size() + 1);
    EXPECT_EQ(roomyCode, 0) << qPrintable(roomyMessage);
    EXPECT_EQ(readAll(target), sceneBytes);
}

// The limits agree: a scene within the node, depth and text limits makes a file within the size
// limit, so that whatever opens or is built within them can be saved. The bound is derived from
// the writer's real output: the longest line a node of each kind can have, at the deepest level,
// with a name of the longest UTF-8 encoding, every number as long as a number's text can be and
// every text parameter at its limit.
TEST(SceneFile, EveryNodeWithinTheLimitsFitsTheFileLimit)
{
    const QString longestName(SceneFile::MaximumNameLength, QChar(0x20ac)); // 3 bytes in UTF-8
    QTemporaryDir images;
    const QString cover = images.filePath(QStringLiteral("cover.png"));
    ASSERT_TRUE(QImage(4, 4, QImage::Format_RGB32).save(cover));
    Document document;
    BaseNode *parent = document.root();
    for (int level = 1; level < SceneFile::MaximumDepth; ++level)
        parent = group(parent, QString());
    auto *light = static_cast<LightNode *>(parent->CreateChildLight(longestName));
    light->SetCastShadows(true);
    group(parent, longestName);
    for (const QByteArray &id : generatorIdentifiers()) {
        MeshNode *shape = parent->createChildShape(id, longestName);
        if (shape->generator()->parameters().contains(QStringLiteral("path")))
            shape->generator()->setProperty("path", s_jar);
        shape->applyArtwork(cover, nullptr); // the file's reader reads it
    }
    const QByteArray text = SceneFile::toJson(document);
    QString error;
    ASSERT_TRUE(SceneFile::fromJson(text, QStringLiteral("deepest.json"), &error))
        << qPrintable(error);

    // The shortest-round-trip text of a double is at most 24 characters
    // ("-2.2250738585072014e-308").
    static const QRegularExpression number(QStringLiteral("-?[0-9][0-9.e+-]*"));
    static const QRegularExpression string(QStringLiteral("\"path\": \"[^\"]*\""));
    static const QRegularExpression artwork(QStringLiteral("\"artwork\": \"[^\"]*\""));
    qint64 longest = 0;
    int lines = 0;
    for (const QByteArray &line : text.split('\n')) {
        if (!line.contains(longestName.toUtf8()))
            continue;
        ++lines;
        QString bound = QString::fromUtf8(line);
        bound.replace(number, QStringLiteral("-2.2250738585072014e-308"));
        bound.replace(string,
                      QStringLiteral("\"path\": \"%1\"")
                          .arg(QString(SceneFile::MaximumTextLength, QChar(0x20ac))));
        bound.replace(artwork,
                      QStringLiteral("\"artwork\": \"%1\"")
                          .arg(QString(SceneFile::MaximumArtworkPathLength, QChar(0x20ac))));
        longest = std::max<qint64>(longest, bound.toUtf8().size() + 1);
    }
    EXPECT_EQ(lines, int(generatorIdentifiers().size()) + 2) << "a line for every node";
    const qint64 topLevel = text.left(text.indexOf("\"children\": [")).size() + 4096;
    std::printf("longest node line: %lld bytes\n", (long long) longest);
    EXPECT_LE(SceneFile::MaximumNodeCount * longest + topLevel, SceneFile::MaximumFileSize)
        << "the longest node line is " << longest << " bytes";

    // Beyond the text limits, neither a file nor a save takes the node.
    Document tooLong;
    group(tooLong.root(), QString(SceneFile::MaximumNameLength + 1, QLatin1Char('x')));
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("long.json"));
    EXPECT_FALSE(SceneFile::save(path, tooLong, &error));
    EXPECT_EQ(error.toStdString(),
              ("Cannot save " + path
               + ": root.children[0].name: the name is 257 characters long; the limit is 256")
                  .toStdString());
    const QByteArray tabbed = R"({"format": "vantrel-scene", "version": 1, "root": {"children": [
             {"type": "group", "name": "A\tB"}]}})";
    EXPECT_FALSE(SceneFile::fromJson(tabbed, QStringLiteral("tab.json"), &error));
    EXPECT_EQ(error.toStdString(),
              "tab.json: root.children[0].name: the name holds a control character (code 9)");
}
