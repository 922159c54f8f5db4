// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Model files as shapes of a scene: path changes with undo and redo, scripts, and paths saved in
// scene files.
#include "hostapp/core/document/document.h"
#include "hostapp/core/document/documentcontext.h"
#include "hostapp/core/document/headlessuserinterface.h"
#include "hostapp/core/files/scenefile.h"
#include "hostapp/core/scene/generators/externalmodelgenerator.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/core/script/scriptrunner.h"
#include "tests/hostapp/filefixtures.h"
#include "tests/support/testsupport.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace vantrel::host;
using namespace vantrel::test;

namespace {

QByteArray sceneWithModel(const QString &path)
{
    return QStringLiteral(R"({"format": "vantrel-scene", "version": 1, "root": {"children": [
        {"type": "shape", "name": "Jar", "generator": "generator.external.model",
         "params": {"path": "%1"}}]}})")
        .arg(path)
        .toUtf8();
}

} // namespace

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
    EXPECT_EQ(jarMesh, loadModel(s_jar)) << "the shape shows the file's mesh";

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
    EXPECT_EQ(shape->mesh()->vertexCount(), loadModel(s_jar)->vertexCount()) << "the copied jar";
}
