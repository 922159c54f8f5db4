// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Artwork on shapes: which files are refused and why, one decoded image shared by copies, undo
// and scripts, and artwork paths in scene files.
#include "hostapp/core/commands/session.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/files/scenefile.h"
#include "hostapp/core/models/artworkfile.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/core/script/scriptrunner.h"
#include "tests/hostapp/filefixtures.h"
#include "tests/support/testsupport.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <sys/stat.h>

using namespace vantrel::host;
using namespace vantrel::test;

namespace {

// A picture whose pixels differ (so compression leaves plenty of data to cut off) with a red top
// left corner, saved in the format the suffix names.
void writeImage(const QString &path, int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, qRgb((x * 37 + y * 11) % 256, (x * y) % 256, (x ^ y) % 256));
    }
    image.setPixel(0, 0, qRgb(255, 0, 0));
    ASSERT_TRUE(image.save(path)) << qPrintable(path);
}

// The file's first bytes; the rest of it cut off.
QByteArray head(const QString &path, double fraction)
{
    const QByteArray bytes = readAll(path);
    return bytes.left(int(bytes.size() * fraction));
}

// A JPEG file whose frame header claims another picture size than it holds.
QByteArray jpegClaiming(const QString &path, int width, int height)
{
    QByteArray bytes = readAll(path);
    const int frame = bytes.indexOf(QByteArray("\xFF\xC0", 2));
    EXPECT_GT(frame, 0) << "Qt writes baseline JPEG";
    const char size[4] = {char(height >> 8), char(height), char(width >> 8), char(width)};
    bytes.replace(frame + 5, 4, size, 4);
    return bytes;
}

} // namespace

class ArtworkTest : public ::testing::Test
{
protected:
    ArtworkTest()
    {
        writeImage(file("cover.png"), 48, 32);
        writeImage(file("cover.jpg"), 48, 32);
        m_box = m_document.root()->createChildShape("generator.Boxes.Box", QStringLiteral("Box"));
    }

    QString file(const char *name) const { return m_dir.filePath(QLatin1String(name)); }

    QTemporaryDir m_dir;
    Document m_document;
    MeshNode *m_box = nullptr;
};

TEST_F(ArtworkTest, RefusalsNameTheFileAndTheReasonAndChangeNothing)
{
    // Bytes after a JPEG's end (some cameras append data of their own) are no damage.
    writeFile(file("trailer.jpg"), readAll(file("cover.jpg")) + QByteArray("\xFF\xDA\x00\x08x", 5));
    QString error;
    ASSERT_TRUE(m_box->setArtwork(file("trailer.jpg"), &error)) << error.toStdString();
    writeFile(file("empty.png"), QByteArray());
    writeFile(file("text.png"), "not a picture\n");
    writeFile(file("anim.gif"), QByteArray("GIF89a\x01\x00\x01\x00\x00\x00\x00;", 14));
    writeFile(file("half.png"), head(file("cover.png"), 0.6));
    writeFile(file("half.jpg"), head(file("cover.jpg"), 0.6));
    QByteArray broken = readAll(file("cover.png"));
    for (int i = broken.size() / 2; i < broken.size() / 2 + 16; ++i)
        broken[i] = char(~broken[i]);
    writeFile(file("broken.png"), broken);
    writeFile(file("wide.jpg"), jpegClaiming(file("cover.jpg"), 20000, 100));
    writeFile(file("huge.jpg"), jpegClaiming(file("cover.jpg"), 9000, 9000));
    ASSERT_TRUE(QDir(m_dir.path()).mkdir("folder"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(file("fifo.png")).constData(), 0600), 0);

    const QString tooBig
        = QStringLiteral("; artwork is limited to 16384 pixels a side and 67108864 pixels in all");
    const std::vector<std::pair<QString, QString>> cases = {
        {"absent.png", "no such file"},
        {"folder", "is a folder, not a file"},
        {"fifo.png", "is not a regular file (a device, FIFO or socket)"},
        {"empty.png", "the file is empty"},
        {"text.png", "not a PNG or JPEG image"},
        {"anim.gif", "the image is GIF; artwork must be PNG or JPEG"},
        {"half.png", "the image data cannot be decoded (Unable to read image data)"},
        {"half.jpg", "the JPEG data is cut off or damaged"},
        {"broken.png", "the image data cannot be decoded (Unable to read image data)"},
        {"wide.jpg", "the image is 20000 x 100 pixels" + tooBig},
        {"huge.jpg", "the image is 9000 x 9000 pixels" + tooBig},
    };
    const QByteArray before = dump(m_document);
    const int steps = m_document.history().undoCount();
    const int decoded = ArtworkFile::decodeCount();
    for (const auto &[name, reason] : cases) {
        const QString path = m_dir.filePath(name);
        EXPECT_FALSE(m_box->setArtwork(path, &error)) << qPrintable(name);
        EXPECT_EQ(error.toStdString(), (path + ": " + reason).toStdString());
    }
    EXPECT_EQ(dump(m_document), before) << "the shape keeps its artwork";
    EXPECT_EQ(m_document.history().undoCount(), steps) << "nothing recorded";
    EXPECT_EQ(ArtworkFile::decodeCount(), decoded + 2)
        << "only the cut-off and the broken PNG get as far as decoding: sizes are refused from "
           "the header, a cut-off JPEG by its missing end";
}

TEST_F(ArtworkTest, CopiesAndShapesOfOneFileShareOneImageReadOnce)
{
    Session session;
    QString error;
    ASSERT_TRUE(session.loadToolsPlugin(QStringLiteral(VANTREL_TOOLS_PLUGIN), &error))
        << error.toStdString();
    const int decoded = ArtworkFile::decodeCount();
    const QString cover = file("cover.png");
    const auto run = [&](const QString &program) {
        EXPECT_TRUE(session.runner().evaluate(program, QStringLiteral("test.js"), &error))
            << error.toStdString();
    };
    run(QStringLiteral("var box = document.root.addShape('generator.Boxes.Box', 'Box');"
                       "box.artwork = '%1';"
                       "var books = [0, 1, 2].map(function (i) {"
                       "  var b = document.root.addShape('generator.Book.HardCover', 'B' + i);"
                       "  b.artwork = '%1'; return b; });"
                       "tools.stepAndRepeat(box, {repeatx: 3, repeaty: 2});"
                       "tools.stack(books, {});")
            .arg(cover));
    // Every shape, wherever the tools put their copies.
    std::vector<const INode *> nodes(session.document().root()->GetChildren().begin(),
                                     session.document().root()->GetChildren().end());
    std::vector<const MeshNode *> shapes;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        nodes.insert(nodes.end(), nodes[i]->GetChildren().begin(), nodes[i]->GetChildren().end());
        if (const auto *shape = qobject_cast<const MeshNode *>(nodes[i]))
            shapes.push_back(shape);
    }
    EXPECT_EQ(shapes.size(), 6u + 3u * 3u) << "a grid of 6 boxes and 3 books stacked 3 times";
    const ArtworkImagePtr image = shapes.front()->artworkImage();
    ASSERT_TRUE(image);
    for (const MeshNode *shape : shapes)
        EXPECT_EQ(shape->artworkImage(), image) << qPrintable(shape->GetName());
    EXPECT_EQ(ArtworkFile::decodeCount(), decoded + 1) << "the file is decoded once";
    EXPECT_EQ(image->format(), QImage::Format_RGBA8888);
    EXPECT_EQ(image->size(), QSize(48, 32));
    EXPECT_EQ(image->pixel(0, 0), qRgb(255, 0, 0)) << "the top left corner, as saved";

    // An edited file is read again for the shapes that name it from then on; those that show
    // the first picture keep it.
    writeImage(cover, 20, 10);
    MeshNode *late = session.document().root()->createChildShape("generator.Boxes.Box", "Late");
    ASSERT_TRUE(late->setArtwork(cover, &error)) << error.toStdString();
    EXPECT_EQ(late->artworkImage()->size(), QSize(20, 10));
    EXPECT_EQ(shapes.back()->artworkImage(), image) << "a copy keeps the first picture";
    EXPECT_EQ(ArtworkFile::decodeCount(), decoded + 2);
}

TEST_F(ArtworkTest, ScriptAssignmentsAreOneUndoStepAndRefusalsThrowTheMessage)
{
    Session session;
    Document &document = session.document();
    const QString previous = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(m_dir.path())); // relative paths start here, for new shapes
    const auto run = [&](const QString &program) {
        QString error;
        return session.runner().evaluate(program, QStringLiteral("test.js"), &error) ? QString()
                                                                                     : error;
    };
    EXPECT_EQ(run("var box = document.root.addShape('generator.Boxes.Box', 'Box');"
                  "var light = document.root.addLight('Lamp');"),
              QString());
    const QByteArray none = dump(document);
    EXPECT_EQ(run("box.artwork = 'cover.png'; print(box.artwork)"), QString());
    const QByteArray shown = dump(document);
    const auto *box = static_cast<MeshNode *>(document.root()->childNode(0));
    EXPECT_EQ(box->artwork(), QStringLiteral("cover.png")) << "kept as written";
    EXPECT_TRUE(shown.contains("\"artwork\": \"cover.png\", \"artworkPixels\": [48, 32]"));

    EXPECT_EQ(run("box.artwork = 'absent.png'").toStdString(),
              "test.js:1: Error: " + file("absent.png").toStdString() + ": no such file");
    EXPECT_EQ(run("box.artwork = 7"),
              QStringLiteral("test.js:1: TypeError: artwork must be a string"));
    EXPECT_EQ(run("if (light.artwork !== undefined) throw 'a light has artwork'"), QString());
    EXPECT_EQ(dump(document), shown) << "refusals change nothing";

    // Undo and redo need no file: the step keeps both pictures.
    ASSERT_TRUE(QFile::remove(file("cover.png")));
    EXPECT_EQ(run("document.undo()"), QString());
    EXPECT_EQ(dump(document), none);
    EXPECT_EQ(run("document.redo()"), QString());
    EXPECT_EQ(dump(document), shown);
    EXPECT_EQ(run("box.artwork = ''; box.artwork = 'cover.jpg'"), QString());
    EXPECT_EQ(box->artworkImage()->size(), QSize(48, 32));
    EXPECT_EQ(run("document.undo()"), QString());
    EXPECT_EQ(dump(document), shown) << "one script, one step";
    QDir::setCurrent(previous);
}

TEST_F(ArtworkTest, SceneFilesKeepPathsAsWrittenAndFollowAMovedFolder)
{
    // An absolute path outside the scene's folder, and a relative one inside it.
    const QString folder = file("shelf");
    ASSERT_TRUE(QDir(m_dir.path()).mkpath("shelf/art"));
    ASSERT_TRUE(QFile::copy(file("cover.jpg"), folder + "/art/front.jpg"));
    const QString scene = folder + "/scene.json";
    writeFile(scene,
              QStringLiteral(R"({"format": "vantrel-scene", "version": 1, "root": {"children": [
                  {"type": "shape", "generator": "generator.Boxes.Box", "artwork": "%1"},
                  {"type": "shape", "generator": "generator.Boxes.Box", "artwork": "art/front.jpg"},
                  {"type": "shape", "generator": "generator.Boxes.Box"}]}})")
                  .arg(file("cover.png"))
                  .toUtf8());
    QString error;
    const auto loaded = SceneFile::load(scene, &error);
    ASSERT_TRUE(loaded) << error.toStdString();

    // The same scene built through the host.
    Document expected;
    for (const QString &path : {file("cover.png"), QStringLiteral("art/front.jpg"), QString()}) {
        MeshNode *shape = expected.root()->createChildShape("generator.Boxes.Box", QString());
        shape->setArtworkDirectory(folder);
        ASSERT_TRUE(shape->setArtwork(path, &error)) << error.toStdString();
    }
    EXPECT_EQ(dump(*loaded), dump(expected));

    // Saved and read again, and read again after the folder moved: the relative path follows.
    const QString again = folder + "/again.json";
    ASSERT_TRUE(SceneFile::save(again, *loaded, &error)) << error.toStdString();
    const QByteArray text = readAll(again);
    EXPECT_EQ(text.count("\"artwork\""), 2) << "written only when set";
    ASSERT_TRUE(QDir(m_dir.path()).rename("shelf", "moved"));
    const auto moved = SceneFile::load(file("moved/again.json"), &error);
    ASSERT_TRUE(moved) << error.toStdString();
    EXPECT_EQ(dump(*moved), dump(expected));
    EXPECT_EQ(SceneFile::toJson(*moved), text);

    // The relative image gone: the scene names itself, the place and the image.
    ASSERT_TRUE(QFile::remove(file("moved/art/front.jpg")));
    EXPECT_EQ(SceneFile::load(file("moved/again.json"), &error), nullptr);
    EXPECT_EQ(error.toStdString(),
              (file("moved/again.json") + ": root.children[1].artwork: " + file("moved")
               + "/art/front.jpg: no such file")
                  .toStdString());

    // A path no scene file could hold is refused by the save, which keeps the file it had.
    auto *shape = static_cast<MeshNode *>(moved->root()->childNode(2));
    shape->applyArtwork(QStringLiteral("front\n.jpg"), nullptr);
    EXPECT_FALSE(SceneFile::save(file("moved/again.json"), *moved, &error));
    EXPECT_EQ(error.toStdString(),
              ("Cannot save " + file("moved/again.json")
               + ": root.children[2].artwork: the text holds a control character (code 10)")
                  .toStdString());
    EXPECT_EQ(readAll(file("moved/again.json")), text);
}
