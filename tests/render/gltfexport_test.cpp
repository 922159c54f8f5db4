// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// glTF export: the files pass the Khronos validator, and what a viewer would compute from them
// (node matrices from the written translations, quaternions and scales; vertex positions read
// back from the buffer) lands where the host puts it, converted to metres with Y up.

#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "hostapp/core/commands/session.h"
#include "hostapp/core/scene/lightnode.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/render/exportcommand.h"
#include "tests/render/gltfasset.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QPainter>
#include <QTemporaryDir>

namespace {

using namespace vantrel;
using namespace vantrel::test;

// The host's world point in glTF's frame: metres, Y up, the host's y away from the viewer.
QVector3D converted(const Vector3 &p)
{
    return QVector3D(p.x, p.z, -p.y) * 0.01f;
}

void expectNear(const QVector3D &actual, const QVector3D &expected, const std::string &what)
{
    EXPECT_LT((actual - expected).length(), 1e-5f)
        << what << ": (" << actual.x() << ", " << actual.y() << ", " << actual.z()
        << ") instead of (" << expected.x() << ", " << expected.y() << ", " << expected.z() << ")";
}

class GltfExportTest : public ::testing::Test
{
protected:
    GltfExportTest()
    {
        QString error;
        EXPECT_TRUE(m_session.loadToolsPlugin(QStringLiteral(VANTREL_TOOLS_PLUGIN), &error))
            << error.toStdString();
    }

    void run(const QString &program)
    {
        QString error;
        EXPECT_TRUE(m_session.runner().evaluate(program, QStringLiteral("test.js"), &error))
            << error.toStdString();
    }

    template<class T>
    T *find(const char *name)
    {
        for (INode *n : CollectAllChildren(MakeListOfNodes(m_session.document().GetRootNode()))) {
            if (n->GetName() == QLatin1String(name))
                return qobject_cast<T *>(n);
        }
        ADD_FAILURE() << "no node " << name;
        return nullptr;
    }

    QString write(const char *name)
    {
        const QString path = m_folder.filePath(QLatin1String(name));
        QString error;
        EXPECT_TRUE(render::writeGltf(m_session.document(), path, &error)) << error.toStdString();
        return path;
    }

    host::Session m_session;
    QTemporaryDir m_folder;
    QImage m_print{64, 32, QImage::Format_ARGB32}; // the novel's artwork

    // Groups turned and scaled unevenly on three levels, a Step and Repeat grid of six boxes, a
    // shape with artwork (a picture painted here), a point light, a directional light in a
    // turned group and a hidden light.
    void buildScene()
    {
        run(QStringLiteral(
            "var shelf = document.root.addGroup('Shelf');"
            "shelf.position = [12, -4, 3]; shelf.rotation = [15, -30, 50]; shelf.scale = [1.5, 1, "
            "0.8];"
            "var inner = shelf.addGroup('Inner');"
            "inner.position = [3, 2, 1]; inner.rotation = [-20, 35, 110];"
            "var novel = inner.addShape('generator.Book.Paperback', 'Novel');"
            "novel.position = [1, 2, 3]; novel.rotation = [5, 10, -15]; novel.scale = [1, 2, 1];"
            "var box = document.root.addShape('generator.Boxes.Box', 'Gift Box');"
            "box.position = [-40, 10, 0];"
            "tools.stepAndRepeat(box, {repeatx: 3, repeaty: 2, stepx: 5});"
            "var key = document.root.addLight('Key'); key.position = [50, -50, 80];"
            "var sun = shelf.addLight('Sun'); sun.position = [0, -100, 100];"
            "document.root.addLight('Off').visible = false;"));
        m_print.fill(Qt::red);
        QPainter(&m_print).fillRect(32, 0, 32, 32, Qt::blue);
        auto *novel = find<host::MeshNode>("Novel");
        ASSERT_NE(novel, nullptr);
        novel->applyArtwork(QStringLiteral("print.png"), std::make_shared<const QImage>(m_print));
        auto *sun = find<host::LightNode>("Sun");
        ASSERT_NE(sun, nullptr);
        sun->applyLightMode(ILightNode::DirectionalLight);
    }

    // The scene written in both forms and read back.
    std::vector<Asset> exportBoth()
    {
        buildScene();
        return {readAsset(write("scene.glb")), readAsset(write("scene.gltf"))};
    }
};

TEST_F(GltfExportTest, BothFormsPassTheValidator)
{
    buildScene();
    for (const char *name : {"scene.glb", "scene.gltf"})
        expectValid(write(name));
}

TEST_F(GltfExportTest, TheGridsMeshIsWrittenOnceAndTheTreeKeepsItsNames)
{
    for (const Asset &asset : exportBoth()) {
        SCOPED_TRACE(asset.form);
        // Six boxes of the grid share one mesh: two meshes in all, the boxes' written once.
        EXPECT_EQ(at(asset, "/meshes").toArray().size(), 2);
        const int boxMesh = meshOf(asset, QStringLiteral("Gift Box - 1"));
        EXPECT_GE(boxMesh, 0);
        for (int copy = 2; copy <= 6; ++copy)
            EXPECT_EQ(meshOf(asset, QStringLiteral("Gift Box - %1").arg(copy)), boxMesh) << copy;
        const int grid = nodeNamed(asset, QStringLiteral("Gift Box"));
        EXPECT_EQ(node(asset, grid)[QStringLiteral("children")].toArray().size(), 6);
        EXPECT_FALSE(node(asset, grid).contains(QStringLiteral("mesh"))) << "a group";
    }
}

TEST_F(GltfExportTest, TheArtworkIsTheMaterialsTextureInsideTheFile)
{
    for (const Asset &asset : exportBoth()) {
        SCOPED_TRACE(asset.form);
        // The novel's material's texture: PNG bytes in the buffer, the picture painted.
        auto materialOf = [&](const char *shape) {
            return at(asset,
                      QStringLiteral("/materials/%1/pbrMetallicRoughness")
                          .arg(at(asset,
                                  QStringLiteral("/meshes/%1/primitives/0/material")
                                      .arg(meshOf(asset, QLatin1String(shape))))
                                   .toInt(-1)))
                .toObject();
        };
        const int texture = materialOf("Novel")[QStringLiteral("baseColorTexture")]
                                .toObject()[QStringLiteral("index")]
                                .toInt(-1);
        ASSERT_GE(texture, 0) << "the novel's material has the artwork";
        const QJsonObject image
            = at(asset,
                 QStringLiteral("/images/%1")
                     .arg(at(asset, QStringLiteral("/textures/%1/source").arg(texture)).toInt()))
                  .toObject();
        EXPECT_EQ(image[QStringLiteral("mimeType")].toString(), QStringLiteral("image/png"));
        const QImage decoded = QImage::fromData(
            viewBytes(asset, image[QStringLiteral("bufferView")].toInt()), "PNG");
        EXPECT_EQ(decoded.convertToFormat(QImage::Format_ARGB32), m_print);
        if (qstrcmp(asset.form, ".glb") == 0) {
            EXPECT_TRUE(at(asset, "/buffers/0/uri").isUndefined()) << "in the binary chunk";
        }
        EXPECT_FALSE(materialOf("Gift Box - 1").contains(QStringLiteral("baseColorTexture")));
    }
}

TEST_F(GltfExportTest, VerticesLandWhereTheHostPutsThem)
{
    for (const Asset &asset : exportBoth()) {
        SCOPED_TRACE(asset.form);
        // Vertices read back from the buffer, through the written node matrices, land where the
        // host puts them.
        for (const char *shapeName : {"Novel", "Gift Box - 5"}) {
            auto *shape = find<host::MeshNode>(shapeName);
            ASSERT_NE(shape, nullptr);
            Matrix hostWorld;
            GetNodeGlobalMatrix(hostWorld, shape);
            const int index = nodeNamed(asset, QString::fromUtf8(shapeName));
            const QMatrix4x4 world = worldMatrix(asset, index);
            const auto &parts = shape->mesh()->meshParts();
            for (std::size_t part = 0; part < parts.size(); part += 2) {
                const int accessor
                    = at(asset,
                         QStringLiteral("/meshes/%1/primitives/%2/attributes/POSITION")
                             .arg(meshOf(asset, QString::fromUtf8(shapeName)))
                             .arg(part))
                          .toInt();
                const auto &vertices = parts[part]->GetVertices();
                for (std::size_t v : {std::size_t(0), vertices.size() / 2, vertices.size() - 1}) {
                    Vector3 expected(
                        vertices[v].position[0], vertices[v].position[1], vertices[v].position[2]);
                    TransformPoint(expected, hostWorld);
                    expectNear(world.map(readPosition(asset, accessor, int(v))),
                               converted(expected),
                               std::string(shapeName) + " part " + std::to_string(part) + " vertex "
                                   + std::to_string(v));
                }
            }
        }
    }
}

TEST_F(GltfExportTest, LightsAndCameraArePlacedAndPointedAsInTheScene)
{
    for (const Asset &asset : exportBoth()) {
        SCOPED_TRACE(asset.form);
        // Lights: the visible two, placed where they are; the sun pointing at the origin.
        ASSERT_EQ(at(asset, "/extensions/KHR_lights_punctual/lights").toArray().size(), 2);
        auto lightOf = [&](int index) {
            const int light
                = at(asset,
                     QStringLiteral("/nodes/%1/extensions/KHR_lights_punctual/light").arg(index))
                      .toInt(-1);
            return at(asset, QStringLiteral("/extensions/KHR_lights_punctual/lights/%1").arg(light))
                .toObject();
        };
        const int keyNode = nodeNamed(asset, QStringLiteral("Key"));
        const int sunNode = nodeNamed(asset, QStringLiteral("Sun (direction)"));
        EXPECT_EQ(lightOf(keyNode)[QStringLiteral("type")].toString(), QStringLiteral("point"));
        EXPECT_EQ(lightOf(keyNode)[QStringLiteral("name")].toString(), QStringLiteral("Key"));
        EXPECT_EQ(lightOf(sunNode)[QStringLiteral("type")].toString(),
                  QStringLiteral("directional"));
        EXPECT_EQ(lightOf(sunNode)[QStringLiteral("name")].toString(), QStringLiteral("Sun"));
        expectNear(worldMatrix(asset, keyNode).map(QVector3D()),
                   converted(Vector3(50, -50, 80)),
                   "the key light's place");
        Matrix sunWorld;
        GetNodeGlobalMatrix(sunWorld, find<host::LightNode>("Sun"));
        const Vector3 sunPlace(sunWorld[12], sunWorld[13], sunWorld[14]);
        expectNear(
            worldMatrix(asset, sunNode).map(QVector3D()), converted(sunPlace), "the sun's place");
        expectNear(worldMatrix(asset, sunNode).mapVector(QVector3D(0, 0, -1)).normalized(),
                   -converted(sunPlace).normalized(),
                   "the sun shines towards the origin");

        // The camera at the eye, looking at the target with the image's top up.
        const host::Camera &camera = *m_session.document().camera();
        const int cameraNode = nodeNamed(asset, QStringLiteral("Camera"));
        const QMatrix4x4 eye = worldMatrix(asset, cameraNode);
        expectNear(eye.map(QVector3D()), converted(camera.position()), "the camera's place");
        expectNear(eye.mapVector(QVector3D(0, 0, -1)).normalized(),
                   (converted(camera.GetTarget()) - converted(camera.position())).normalized(),
                   "the camera looks at the target");
        const Matrix &axes = camera.GetGlobalMatrix();
        expectNear(eye.mapVector(QVector3D(0, 1, 0)).normalized(),
                   converted(Vector3(axes[8], axes[9], axes[10])).normalized(),
                   "the image's top");
        const QJsonObject perspective = at(asset, "/cameras/0/perspective").toObject();
        EXPECT_NEAR(perspective[QStringLiteral("yfov")].toDouble(),
                    camera.GetFieldOfView() * M_PI / 180,
                    1e-6);
        EXPECT_NEAR(
            perspective[QStringLiteral("aspectRatio")].toDouble(), camera.GetAspectRatio(), 1e-6);
    }
}

TEST_F(GltfExportTest, WrongNamesAndPlacesAreRefusedByName)
{
    run(QStringLiteral("document.root.addShape('generator.Boxes.Box', 'Box');"));
    const QString kept = m_folder.filePath(QStringLiteral("kept.glb"));
    QFile previous(kept);
    ASSERT_TRUE(previous.open(QIODevice::WriteOnly));
    previous.write("previous");
    previous.close();
    for (const QString &path : {m_folder.filePath(QStringLiteral("scene.obj")),
                                QStringLiteral("/nonexistent/folder/scene.glb"),
                                m_folder.path() + QStringLiteral("/kept.glb/inside.gltf")}) {
        QString error;
        EXPECT_FALSE(render::writeGltf(m_session.document(), path, &error));
        EXPECT_TRUE(error.startsWith(QStringLiteral("cannot write ") + path))
            << error.toStdString();
    }
    ASSERT_TRUE(previous.open(QIODevice::ReadOnly));
    EXPECT_EQ(previous.readAll(), QByteArray("previous"));
}

// An empty scene is still a valid file: the camera and the axes' root, no buffer.
TEST_F(GltfExportTest, EmptySceneIsValid)
{
    const QString path = write("empty.gltf");
    expectValid(path);
    const Asset asset = readAsset(path);
    EXPECT_FALSE(asset.json.contains(QStringLiteral("buffers")));
    EXPECT_EQ(asset.json[QStringLiteral("nodes")].toArray().size(), 2);
}

} // namespace
