// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Pictures of real scenes, judged by properties that hold on every OpenGL driver: where the
// shapes' silhouette lies and whether two pictures are the same. These tests need an X display
// (ctest runs under xvfb-run in ./setup.sh test).
#include "host/imeshnode.h"
#include "host/imeshpart.h"
#include "host/inode.h"
#include "host/itool.h"
#include "hostapp/ui/panelaccess.h"
#include "tests/render/picturetest.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDialog>
#include <QImage>
#include <QPushButton>

#include <algorithm>
#include <cmath>
#include <vector>

using namespace vantrel::host;
using vantrel::render::RenderOptions;
using vantrel::test::Magenta;
using vantrel::test::PictureTest;
using vantrel::test::pixelOf;
using vantrel::test::Point;

namespace {

// Every vertex of every visible shape in world space, through each node's chain of local
// matrices in double precision (row vectors: the node's own matrix first, then its parents').
std::vector<Point> visibleWorldVertices(const INode *root)
{
    std::vector<Point> points;
    std::vector<const INode *> pending{root};
    while (!pending.empty()) {
        const INode *node = pending.back();
        pending.pop_back();
        for (const INode *child : node->GetChildren())
            pending.push_back(child);
        const auto *mesh = qobject_cast<IMeshNode *>(const_cast<INode *>(node));
        if (!mesh || !node->IsVisible())
            continue;
        for (const IMeshPart *part : mesh->GetMeshParts()) {
            for (const VertexRecord &v : part->GetVertices()) {
                Point p{v.position[0], v.position[1], v.position[2]};
                for (const INode *n = node; n; n = n->GetParent()) {
                    const Matrix &m = n->GetLocalMatrix();
                    const Point in = p;
                    for (int c = 0; c < 3; ++c)
                        p[c] = in[0] * m[c] + in[1] * m[4 + c] + in[2] * m[8 + c] + m[12 + c];
                }
                points.push_back(p);
            }
        }
    }
    return points;
}

// The smallest rectangle of pixels that differ from the background.
QRect silhouette(const QImage &picture, const QColor &background)
{
    int left = picture.width(), right = -1, top = picture.height(), bottom = -1;
    for (int y = 0; y < picture.height(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            if ((row[x] & 0xffffff) == (background.rgb() & 0xffffff))
                continue;
            left = std::min(left, x);
            right = std::max(right, x);
            top = std::min(top, y);
            bottom = std::max(bottom, y);
        }
    }
    return QRect(QPoint(left, top), QPoint(right, bottom));
}

} // namespace

TEST_F(PictureTest, FitToViewFramesTheSilhouetteExactly)
{
    run(QStringLiteral(
        "document.root.addShape('generator.Book.HardCover', 'Atlas', {}).rotation = [0, 0, 35];"
        "var dvd = document.root.addShape('generator.DiscBox.DVD', 'Case', {coverAngle: 60});"
        "dvd.position = [30, 10, 0]; dvd.rotation = [0, 0, -20];"
        "var key = document.root.addLight('Key'); key.position = [-50, -60, 90];"));
    const std::vector<Point> vertices = visibleWorldVertices(m_session.document().GetRootNode());
    ASSERT_FALSE(vertices.empty());

    struct Fit
    {
        const char *call;
        double padding;
    };
    for (const Fit &fit : {Fit{"tools.fitToView({padding: 0})", 0.0},
                           Fit{"tools.fitToView({padding: 0, keepAspect: true})", 0.0},
                           Fit{"tools.fitToView({padding: 0.5})", 0.5}}) {
        SCOPED_TRACE(fit.call);
        run(QString::fromLatin1(fit.call));
        const QImage image = withoutFloor();
        const QRect drawn = silhouette(image, Magenta);
        ASSERT_TRUE(drawn.isValid()) << "nothing was drawn";
        double left = HUGE_VAL, right = -HUGE_VAL, top = HUGE_VAL, bottom = -HUGE_VAL;
        for (const Point &p : vertices) {
            const QPointF at = pixelOf(camera(), image.size(), p);
            left = std::min(left, at.x());
            right = std::max(right, at.x());
            top = std::min(top, at.y());
            bottom = std::max(bottom, at.y());
        }
        // A pixel is drawn when the shape covers part of it: pixel columns floor(left) to
        // ceil(right) - 1, give or take the edge smoothing.
        EXPECT_NEAR(drawn.left(), std::floor(left), 2.0) << "left edge";
        EXPECT_NEAR(drawn.right(), std::ceil(right) - 1.0, 2.0) << "right edge";
        EXPECT_NEAR(drawn.top(), std::floor(top), 2.0) << "top edge";
        EXPECT_NEAR(drawn.bottom(), std::ceil(bottom) - 1.0, 2.0) << "bottom edge";

        const int w = image.width(), h = image.height();
        const int margins[4]
            = {drawn.left(), w - 1 - drawn.right(), drawn.top(), h - 1 - drawn.bottom()};
        if (fit.padding == 0.0) {
            const bool acrossTheWidth = margins[0] <= 2 && margins[1] <= 2;
            const bool acrossTheHeight = margins[2] <= 2 && margins[3] <= 2;
            EXPECT_TRUE(acrossTheWidth || acrossTheHeight)
                << "margins " << margins[0] << ", " << margins[1] << ", " << margins[2] << ", "
                << margins[3];
        } else {
            // Half again the distance shrinks the shapes to about two thirds: a sixth of the
            // picture on each side of the tight direction, less for parts nearer the camera.
            EXPECT_GT(margins[0], w / 20) << "left margin";
            EXPECT_GT(margins[1], w / 20) << "right margin";
            EXPECT_GT(margins[2], h / 20) << "top margin";
            EXPECT_GT(margins[3], h / 20) << "bottom margin";
        }
    }
}

TEST_F(PictureTest, HiddenShapesAndLightsLeaveNoTrace)
{
    run(QStringLiteral(
        "document.root.addShape('generator.Boxes.Box', 'Gift', {});"
        "var atlas = document.root.addShape('generator.Book.HardCover', 'Atlas', {});"
        "atlas.position = [35, 0, 0];"
        "var group = document.root.addGroup('Shelf'); group.visible = false;"
        "group.addShape('generator.Book.Paperback', 'Novel', {}).position = [-35, 0, 0];"
        "var key = document.root.addLight('Key'); key.position = [-120, -40, 60];"
        "key.intensity = 0.9; key.castShadows = true;"
        "tools.easyLighting({hangle: 60, vangle: 50});"
        "tools.fitToView({padding: 0.3, keepAspect: true});"));
    ASSERT_FALSE(findNode(QStringLiteral("Key"))->IsVisible())
        << "Easy Lighting hides the other lights";
    RenderOptions small;
    small.width = 400;

    const QImage keyHidden = picture(small);
    run(QStringLiteral("document.findNode('Key').visible = true;"));
    EXPECT_FALSE(picture(small) == keyHidden) << "the key light, shown, lights the scene";
    run(QStringLiteral("document.findNode('Key').remove();"));
    EXPECT_TRUE(picture(small) == keyHidden) << "a hidden light is as good as none";

    run(QStringLiteral("document.findNode('Atlas').visible = false;"));
    const QImage atlasHidden = picture(small);
    EXPECT_FALSE(atlasHidden == keyHidden) << "the book and its shadow go";
    run(QStringLiteral("document.findNode('Atlas').remove();"));
    EXPECT_TRUE(picture(small) == atlasHidden) << "a hidden shape is as good as none";

    // Each node's own flag counts: the book in the hidden group is drawn.
    run(QStringLiteral("document.findNode('Novel').remove();"));
    EXPECT_FALSE(picture(small) == atlasHidden) << "the visible book below the hidden group showed";
}

TEST_F(PictureTest, ACancelledToolWindowLeavesThePictureAsItWas)
{
    run(QStringLiteral("document.root.addShape('generator.Book.Paperback', 'Novel', {});"
                       "var key = document.root.addLight('Key'); key.position = [-50, -60, 90];"
                       "key.castShadows = true;"));
    RenderOptions small;
    small.width = 400;
    const QImage before = picture(small);

    // The window as a user works it: picked from the tool list, two sliders moved, Cancel.
    ITool *tool = m_session.tools().findTool(QStringLiteral("Easy Lighting..."));
    ASSERT_NE(tool, nullptr);
    tool->Execute(m_session.context());
    QDialog *window = m_session.userInterface().openWindow();
    ASSERT_NE(window, nullptr);
    PanelAccess *panel = FindPanel(window);
    ASSERT_NE(panel, nullptr);
    EXPECT_TRUE(panel->setPanelValue(QStringLiteral("angleH"), 120.0));
    EXPECT_TRUE(panel->setPanelValue(QStringLiteral("blur"), 0.9));
    EXPECT_FALSE(picture(small) == before) << "the open window's preview shows in the picture";
    window->findChild<QPushButton *>(QStringLiteral("cancel"))->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QImage after = picture(small);
    ASSERT_EQ(after.size(), before.size());
    EXPECT_TRUE(after == before) << "the picture after Cancel differs from the one before";

    // The same through the script API, in one evaluation (an open window closes at its end).
    run(QStringLiteral("document.runTool('Easy Lighting...');"
                       "document.window.set('angleV', 20); document.window.set('contrast', 1);"
                       "document.window.cancel();"));
    after = picture(small);
    EXPECT_TRUE(after == before) << "the picture after the script's Cancel differs";
}
