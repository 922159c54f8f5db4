// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The drawer's caches: a drawer that keeps meshes and shadow maps from frame to frame must draw
// exactly what a new drawer draws from nothing, while it really skips the work it may skip.
#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/lightnode.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/render/drawlist.h"
#include "hostapp/render/scenedrawer.h"
#include "tests/support/testsupport.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>

#include <algorithm>
#include <memory>

using namespace vantrel::host;
using vantrel::render::DrawOptions;
using vantrel::render::SceneDrawer;
using vantrel::test::addBoxNode;

namespace {

const QSize Size(200, 150);

class SceneDrawerTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QSurfaceFormat format;
        format.setVersion(3, 3);
        format.setProfile(QSurfaceFormat::CoreProfile);
        m_context.setFormat(format);
        ASSERT_TRUE(m_context.create()) << "needs an X display (ctest runs under xvfb-run)";
        m_surface.setFormat(m_context.format());
        m_surface.create();
        ASSERT_TRUE(m_context.makeCurrent(&m_surface));
        m_target
            = std::make_unique<QOpenGLFramebufferObject>(Size, QOpenGLFramebufferObject::Depth);
        QString error;
        ASSERT_TRUE(m_drawer.initialize(&error)) << error.toStdString();

        BaseNode *root = m_document.root();
        m_box = addBoxNode(root, QStringLiteral("Box"), {-10, -10, 0}, {0, 0, 10});
        m_copy = static_cast<MeshNode *>(m_document.CloneNode(m_box, 1));
        m_copy->SetPosition(Vector3(20, 0, 0), false);
        // A generator's box: it has normals to shade by, so the selection's tint can show.
        m_other = root->createChildShape("generator.Boxes.Box", QStringLiteral("Other"));
        m_other->SetPosition(Vector3(0, 15, 0), false);
        m_light = static_cast<LightNode *>(root->CreateChildLight(QStringLiteral("Light")));
        m_light->SetPosition(Vector3(-40, 30, 80), false);
        m_light->SetCastShadows(true);
    }

    void TearDown() override
    {
        m_drawer.releaseResources();
        m_target.reset();
        m_context.doneCurrent();
    }

    QImage draw(SceneDrawer &drawer, const DrawOptions &options = {})
    {
        m_target->bind();
        QString error;
        EXPECT_TRUE(drawer.draw(vantrel::render::collectDrawList(m_document),
                                *m_document.camera(),
                                Size,
                                options,
                                &error))
            << error.toStdString();
        m_target->release();
        return m_target->toImage();
    }

    // What a drawer with nothing cached draws.
    QImage drawAfresh(const DrawOptions &options = {})
    {
        SceneDrawer fresh;
        QString error;
        EXPECT_TRUE(fresh.initialize(&error));
        const QImage picture = draw(fresh, options);
        fresh.releaseResources();
        return picture;
    }

    QOpenGLContext m_context;
    QOffscreenSurface m_surface;
    std::unique_ptr<QOpenGLFramebufferObject> m_target;
    SceneDrawer m_drawer;
    Document m_document;
    MeshNode *m_box = nullptr;
    MeshNode *m_copy = nullptr;
    MeshNode *m_other = nullptr;
    LightNode *m_light = nullptr;
};

} // namespace

TEST_F(SceneDrawerTest, KeepsMeshesAndShadowsWhileTheyHoldAndDrawsWhatANewDrawerDraws)
{
    EXPECT_EQ(draw(m_drawer), drawAfresh());
    EXPECT_EQ(m_drawer.cachedMeshCount(), 2u) << "the copy shares its box's mesh";
    EXPECT_EQ(m_drawer.shadowPasses(), 1);

    m_document.camera()->setYaw(40.f);
    m_document.camera()->SetDistance(90.f);
    EXPECT_EQ(draw(m_drawer), drawAfresh()) << "camera moved";
    EXPECT_EQ(m_drawer.shadowPasses(), 1) << "shadow maps do not depend on the camera";

    m_other->SetPosition(Vector3(0, -30, 0), false);
    EXPECT_EQ(draw(m_drawer), drawAfresh()) << "a shape moved";
    EXPECT_EQ(m_drawer.shadowPasses(), 2);

    m_document.DeleteNodes({m_other});
    EXPECT_EQ(draw(m_drawer), drawAfresh()) << "a shape deleted";
    EXPECT_EQ(m_drawer.cachedMeshCount(), 1u) << "a mesh no frame uses is dropped";
    EXPECT_EQ(m_drawer.shadowPasses(), 3);

    m_document.undo();
    m_document.camera()->setYaw(-20.f);
    EXPECT_EQ(draw(m_drawer), drawAfresh()) << "the deletion undone";
    EXPECT_EQ(m_drawer.cachedMeshCount(), 2u);
}

TEST_F(SceneDrawerTest, SelectionShowsOnlyWhenAskedFor)
{
    const QImage unselected = draw(m_drawer);
    m_document.SetSelection({m_other}, Document::ReplaceSelection);
    EXPECT_EQ(draw(m_drawer), unselected) << "pictures do not show the selection";
    DrawOptions highlighted;
    highlighted.highlightSelection = true;
    const QImage marked = draw(m_drawer, highlighted);
    EXPECT_NE(marked, unselected) << "a view does";
    EXPECT_EQ(m_drawer.shadowPasses(), 1) << "the selection casts no other shadow";
    m_document.SetSelection({}, Document::ReplaceSelection);
    EXPECT_EQ(draw(m_drawer, highlighted), unselected) << "nothing selected, nothing marked";
}

TEST_F(SceneDrawerTest, FewerShadowSamplesKeepTheSofteningsReach)
{
    // A wide blur, so that the softened rim spans many pixels.
    m_light->SetShadowBlur(4.f);
    m_light->SetCastShadows(false);
    const QImage lit = draw(m_drawer);
    m_light->SetCastShadows(true);
    DrawOptions fast;
    fast.shadowSamples = 16;
    const QImage full = draw(m_drawer), grainy = draw(m_drawer, fast);
    EXPECT_NE(grainy, full) << "fewer samples, another grain";

    // How far the shadow reaches: the pixels darkened by more than an eighth of the deepest
    // shadow. Samples crowded near the disk's centre would shrink it by the blur's width.
    const auto reach = [&lit](const QImage &shadowed) {
        int deepest = 0, count = 0;
        for (int pass = 0; pass < 2; ++pass) {
            for (int y = 0; y < Size.height(); ++y) {
                for (int x = 0; x < Size.width(); ++x) {
                    const int dark = qGreen(lit.pixel(x, y)) - qGreen(shadowed.pixel(x, y));
                    if (pass == 0)
                        deepest = std::max(deepest, dark);
                    else if (8 * dark > deepest)
                        ++count;
                }
            }
        }
        return count;
    };
    const int fullReach = reach(full);
    ASSERT_GT(fullReach, 500) << "the shadow shows";
    EXPECT_NEAR(reach(grainy), fullReach, 0.1 * fullReach);
    m_light->SetShadowBlur(2.f);
    EXPECT_LT(reach(draw(m_drawer)), 0.9 * fullReach) << "the measure sees a narrower softening";

    DrawOptions outOfRange;
    outOfRange.shadowSamples = 1000;
    EXPECT_EQ(draw(m_drawer, outOfRange), draw(m_drawer)) << "limited to the full count";
    outOfRange.shadowSamples = 0;
    DrawOptions one;
    one.shadowSamples = 1;
    EXPECT_EQ(draw(m_drawer, outOfRange), draw(m_drawer, one)) << "at least one sample";
}

TEST_F(SceneDrawerTest, AnArtworkGoesUpOnceAndLeavesWithTheLastShapeThatPrintsIt)
{
    const QImage plain = draw(m_drawer);
    QImage sheet(64, 32, QImage::Format_RGB32);
    sheet.fill(QColor(30, 140, 60));
    const auto image = std::make_shared<const QImage>(sheet);
    // The generator's box has texture coordinates; the plain boxes show the sheet's corner.
    m_other->applyArtwork(QStringLiteral("sheet.png"), image);
    m_copy->applyArtwork(QStringLiteral("sheet.png"), image);
    const QImage printed = draw(m_drawer);
    EXPECT_NE(printed, plain);
    EXPECT_EQ(m_drawer.cachedTextureCount(), 1u) << "two shapes share one texture";
    EXPECT_EQ(printed, drawAfresh()) << "a kept texture draws what a new one draws";
    EXPECT_EQ(m_drawer.shadowPasses(), 1) << "an artwork casts no other shadow";

    m_other->applyArtwork(QString(), nullptr);
    draw(m_drawer);
    EXPECT_EQ(m_drawer.cachedTextureCount(), 1u) << "the copy still prints it";
    m_copy->applyArtwork(QString(), nullptr);
    EXPECT_EQ(draw(m_drawer), plain);
    EXPECT_EQ(m_drawer.cachedTextureCount(), 0u) << "no shape prints it any more";
}
