// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "host/icamera.h"
#include "host/inode.h"
#include "hostapp/core/commands/session.h"
#include "hostapp/core/scene/camera.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/core/scene/scenenode.h"
#include "tests/support/testsupport.h"
#include "tests/support/toolssession.h"
#include "tests/support/windowdriver.h"
#include "tools/fittoview/fittoviewimplementation.h"
#include "tools/fittoview/vertexbounds.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QCoreApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QPushButton>

#include <cfloat>
#include <cmath>
#include <functional>
#include <random>

using namespace vantrel::host;
using vantrel::test::addBoxNode;
using vantrel::test::addPointsNode;
using vantrel::test::Near;
using vantrel::test::WayOut;
using vantrel::test::waysToCloseWithoutOk;

namespace {

std::vector<Vector3> randomPoints(std::size_t count, unsigned seed, float spread = 50.f)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> place(-spread, spread);
    std::vector<Vector3> points(count);
    for (Vector3 &p : points)
        p = Vector3{place(random), place(random), place(random)};
    return points;
}

// The plain scalar pass, one vertex after the other, that the blocked passes must equal.
ProjectedBounds sequentialBounds(const std::vector<Vector3> &vertices, const Matrix &viewProjection)
{
    ProjectedBounds b{FLT_MAX, FLT_MAX, -FLT_MAX, -FLT_MAX};
    for (const Vector3 &v : vertices) {
        Vector4 h{v.x, v.y, v.z, 1.f};
        TransformVector4(h, viewProjection);
        const float r = 1.f / h.w, px = h.x * r, py = h.y * r;
        b.minX = px < b.minX ? px : b.minX;
        b.maxX = px > b.maxX ? px : b.maxX;
        b.minY = py < b.minY ? py : b.minY;
        b.maxY = py > b.maxY ? py : b.maxY;
    }
    return b;
}

bool sequentialInside(const std::vector<Vector3> &vertices, const Matrix &viewProjection)
{
    for (const Vector3 &v : vertices) {
        Vector4 h{v.x, v.y, v.z, 1.f};
        TransformVector4(h, viewProjection);
        const float r = 1.f / h.w, px = h.x * r, py = h.y * r;
        if (px < -1.f || px > 1.f || py < -1.f || py > 1.f)
            return false;
    }
    return true;
}

struct View
{
    Matrix global, projection, viewProjection;
};

View viewOf(ICamera *camera)
{
    View v;
    v.global = camera->GetGlobalMatrix();
    CalculateProjectionMatrix(v.projection,
                              camera->GetFieldOfView(),
                              camera->GetAspectRatio(),
                              camera->GetAspectRatio(),
                              0.1f,
                              1000.f);
    Matrix view;
    CalculateViewMatrix(view, v.global);
    MultiplyMatrices(v.viewProjection, view, v.projection);
    return v;
}

bool sameBounds(const ProjectedBounds &a, const ProjectedBounds &b)
{
    return a.minX == b.minX && a.minY == b.minY && a.maxX == b.maxX && a.maxY == b.maxY;
}

struct CameraState
{
    float distance, aspect;
    Vector3 target;
    explicit CameraState(const ICamera *c)
        : distance(c->GetDistance())
        , aspect(c->GetAspectRatio())
        , target(c->GetTarget())
    {}
    bool operator==(const CameraState &o) const
    {
        return distance == o.distance && aspect == o.aspect && target.x == o.target.x
               && target.y == o.target.y && target.z == o.target.z;
    }
};

class FitToViewTest : public vantrel::test::ToolsSessionTest
{
protected:
    ICamera *camera() { return document().GetCamera(); }

    // Whether every vertex of the document fits the frame with the camera at that distance.
    bool fitsAt(float distance)
    {
        const float kept = camera()->GetDistance();
        camera()->SetDistance(distance);
        std::vector<Vector3> vertices;
        collectVertices(vertices, document().GetRootNode(), Matrix());
        const View v = viewOf(camera());
        const bool inside = sequentialInside(vertices, v.viewProjection);
        camera()->SetDistance(kept);
        return inside;
    }
};

} // namespace

TEST(VertexBoundsTest, BlocksCutTheListInFiftyThousands)
{
    const Matrix identity;
    const struct
    {
        std::size_t vertices;
        std::vector<std::size_t> sizes;
    } cases[] = {{0, {}}, {50000, {50000}}, {50001, {50000, 1}}, {120000, {50000, 50000, 20000}}};
    for (const auto &c : cases) {
        const std::vector<Vector3> vertices(c.vertices);
        const std::vector<sBlockOfVertices> blocks = makeBlocks(vertices, &identity);
        ASSERT_EQ(blocks.size(), c.sizes.size()) << c.vertices;
        const Vector3 *next = vertices.data();
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            EXPECT_EQ(blocks[i].begin, next);
            EXPECT_EQ(std::size_t(blocks[i].end - blocks[i].begin), c.sizes[i]);
            EXPECT_EQ(blocks[i].matrix, &identity);
            next = blocks[i].end;
        }
    }
}

TEST(VertexBoundsTest, PassesEqualASequentialPassAtEverySize)
{
    Document document;
    ICamera *camera = document.GetCamera();
    camera->SetTarget(Vector3{3, -2, 1});
    camera->SetDistance(130);
    const View v = viewOf(camera);
    // Sizes around the lanes, the blocks and the thread pool.
    for (std::size_t count : {0, 1, 3, 4, 7, 8, 9, 17, 50000, 50001, 120000}) {
        const std::vector<Vector3> vertices = randomPoints(count, unsigned(count) + 1);
        SCOPED_TRACE(count);
        EXPECT_TRUE(sameBounds(computeProjectedBounds(vertices, v.global, v.projection),
                               sequentialBounds(vertices, v.viewProjection)));
        EXPECT_EQ(allVerticesInside(vertices, v.global, v.projection),
                  sequentialInside(vertices, v.viewProjection));
    }
    const ProjectedBounds none = computeProjectedBounds({}, v.global, v.projection);
    EXPECT_TRUE(sameBounds(none, ProjectedBounds{FLT_MAX, FLT_MAX, -FLT_MAX, -FLT_MAX}));
    EXPECT_TRUE(allVerticesInside({}, v.global, v.projection));
}

TEST(VertexBoundsTest, TheFrameEdgeIsInsideAndAHairBeyondIsNot)
{
    // With the identity as view-projection a vertex projects to its own x and y (w = 1), so the
    // edge can be hit exactly.
    const Matrix identity;
    std::atomic<bool> flag{true};
    auto inside = [&](const std::vector<Vector3> &vertices) {
        flag = true;
        for (sBlockOfVertices &block : makeBlocks(vertices, &identity)) {
            block.allInside = &flag;
            testBlockInside(block);
        }
        return flag.load();
    };
    EXPECT_TRUE(inside({{1, -1, 0}, {-1, 1, 5}, {0, 0, 0}}));
    EXPECT_TRUE(inside({{std::nanf(""), 0, 0}})) << "NaN fails both comparisons";
    // One vertex a hair outside, at every place of blocks of several lengths: inside the lanes,
    // at their ends and in the tail.
    for (int length = 1; length <= 19; ++length) {
        for (int at = 0; at < length; ++at) {
            std::vector<Vector3> vertices(std::size_t(length), Vector3{0.5f, -0.5f, 0});
            const Vector3 outside[]
                = {{1.0001f, 0, 0}, {0, -1.0001f, 0}, {-1.0001f, 0, 0}, {0, 1.0001f, 0}};
            vertices[std::size_t(at)] = outside[at % 4];
            EXPECT_FALSE(inside(vertices)) << "length " << length << " at " << at;
        }
    }
    // The bounds pass over the same kinds of blocks, against plain minima and maxima.
    std::mt19937 random(7);
    std::uniform_real_distribution<float> place(-3, 3);
    for (int length = 0; length <= 19; ++length) {
        std::vector<Vector3> vertices{std::size_t(length), Vector3{}};
        float minX = FLT_MAX, maxX = -FLT_MAX, minY = FLT_MAX, maxY = -FLT_MAX;
        for (Vector3 &p : vertices) {
            p = Vector3{place(random), place(random), place(random)};
            minX = std::min(minX, p.x), maxX = std::max(maxX, p.x);
            minY = std::min(minY, p.y), maxY = std::max(maxY, p.y);
        }
        sBlockOfVertices block{vertices.data(),
                               vertices.data() + length,
                               &identity,
                               nullptr,
                               FLT_MAX,
                               FLT_MAX,
                               -FLT_MAX,
                               -FLT_MAX};
        accumulateBlockBounds(block);
        EXPECT_TRUE(sameBounds(ProjectedBounds{block.minX, block.minY, block.maxX, block.maxY},
                               ProjectedBounds{minX, minY, maxX, maxY}))
            << "length " << length;
    }
}

TEST(VertexBoundsTest, VisibilityIsAskedNodeByNodeInWorldSpace)
{
    Document document;
    auto *group
        = static_cast<SceneNode *>(document.root()->CreateChildGroup(QStringLiteral("Rig")));
    group->applyPosition(Vector3{10, 0, 0});
    group->applyScale(Vector3{2, 2, 2});
    MeshNode *hidden = addPointsNode(group, QStringLiteral("Hidden"), {{1, 1, 1}});
    hidden->SetVisible(false);
    addPointsNode(hidden, QStringLiteral("Shown under hidden"), {{0, 0, 1}, {0, 0, 2}});
    addPointsNode(document.root(), QStringLiteral("No vertices"), {});
    addPointsNode(document.root(), QStringLiteral("Plain"), {{-1, -2, -3}});
    group->SetVisible(false); // only mesh nodes answer for themselves

    std::vector<Vector3> vertices;
    collectVertices(vertices, document.GetRootNode(), Matrix());
    // The hidden mesh's own vertex is left out, its visible child's are in, through the group's
    // scale and move.
    ASSERT_EQ(vertices.size(), 3u);
    EXPECT_TRUE(Near(vertices[0], Vector3{10, 0, 2}));
    EXPECT_TRUE(Near(vertices[1], Vector3{10, 0, 4}));
    EXPECT_TRUE(Near(vertices[2], Vector3{-1, -2, -3}));
}

TEST_F(FitToViewTest, TheFitIsTightPaddedAndCentred)
{
    addBoxNode(document().root(), QStringLiteral("Cube"), Vector3{-5, 3, 0}, Vector3{5, 13, 10});
    for (const auto &angles :
         {std::pair{-60.f, 20.f}, std::pair{30.f, 45.f}, std::pair{170.f, -10.f}}) {
        SCOPED_TRACE(angles.first);
        auto *host = static_cast<Camera *>(camera());
        host->setYaw(angles.first);
        host->setPitch(angles.second);
        FitToViewImplementation settings(&document());
        const float base = settings.fitDistanceBase();
        ASSERT_GT(base, 0.f);
        EXPECT_FLOAT_EQ(camera()->GetDistance(), 1.1f * base);
        EXPECT_TRUE(fitsAt(base * (1 + 2.f / 1024))) << "fits, or misses by the last step";
        EXPECT_FALSE(fitsAt(base * (1 - 4.f / 1024))) << "and is tight";
        std::vector<Vector3> vertices;
        collectVertices(vertices, document().GetRootNode(), Matrix());
        const View v = viewOf(camera());
        const ProjectedBounds b = sequentialBounds(vertices, v.viewProjection);
        // Centred: the projected bounds sit nearly symmetric about the image centre (the last
        // distance change after centring shifts them a little through the perspective).
        EXPECT_NEAR(b.minX + b.maxX, 0, 0.08);
        EXPECT_NEAR(b.minY + b.maxY, 0, 0.08);
        settings.setAccepted(true);
    }
}

TEST_F(FitToViewTest, PaddingRescalesWithoutAPassAndIsLimited)
{
    addBoxNode(document().root(), QStringLiteral("Cube"), Vector3{0, 0, 0}, Vector3{10, 10, 10});
    FitToViewImplementation settings(&document());
    const float base = settings.fitDistanceBase();
    const int passes = settings.passCount();
    EXPECT_GT(passes, 40);
    const struct
    {
        float written, stored;
    } cases[] = {{0, 0}, {1, 1}, {1.5f, 1}, {-0.2f, 0}, {0.3f, 0.3f}, {std::nanf(""), 0}};
    for (const auto &c : cases) {
        settings.SetPadding(c.written);
        EXPECT_EQ(settings.GetPadding(), c.stored) << c.written;
        EXPECT_FLOAT_EQ(camera()->GetDistance(), (1 + c.stored) * base) << c.written;
    }
    settings.SetKeepAspect(false);
    EXPECT_EQ(settings.passCount(), passes) << "neither padding nor an unchanged flag runs a pass";
    settings.setAccepted(true);
}

TEST_F(FitToViewTest, TheAspectRatioFollowsTheShapeWithinLimitsOrStays)
{
    camera()->SetAspectRatio(1.5f);
    MeshNode *wide = addBoxNode(
        document().root(), QStringLiteral("Wide"), Vector3{-200, -1, 0}, Vector3{200, 1, 2});
    {
        FitToViewImplementation settings(&document());
        EXPECT_FLOAT_EQ(camera()->GetAspectRatio(), 2.39f);
        const int passes = settings.passCount();
        settings.SetKeepAspect(true);
        EXPECT_GT(settings.passCount(), passes) << "a change refits";
        EXPECT_FLOAT_EQ(camera()->GetAspectRatio(), 1.5f) << "the ratio of construction";
        EXPECT_TRUE(fitsAt(settings.fitDistanceBase() * (1 + 2.f / 1024)));
    }
    EXPECT_FLOAT_EQ(camera()->GetAspectRatio(), 1.5f);

    document().DeleteNodes({wide});
    addBoxNode(document().root(), QStringLiteral("Tall"), Vector3{-1, -1, 0}, Vector3{1, 1, 400});
    {
        FitToViewImplementation settings(&document());
        EXPECT_FLOAT_EQ(camera()->GetAspectRatio(), 0.41841003f);
    }
    // All vertices in one point: no projected height; the fit ends and the ratio stays.
    Session single;
    addPointsNode(single.document().root(), QStringLiteral("Dot"), {{4, 4, 4}, {4, 4, 4}});
    FitToViewImplementation settings(&single.document());
    EXPECT_FLOAT_EQ(single.document().GetCamera()->GetAspectRatio(), 1.0f);
    EXPECT_TRUE(Near(single.document().GetCamera()->GetTarget(), Vector3{4, 4, 4}));
    settings.setAccepted(true);
}

TEST_F(FitToViewTest, UnacceptedTheCameraGoesBackAndWithoutGeometryNothingMoves)
{
    addBoxNode(document().root(), QStringLiteral("Cube"), Vector3{0, 0, 0}, Vector3{10, 10, 10});
    const CameraState before(camera());
    {
        FitToViewImplementation settings(&document());
        settings.SetKeepAspect(true);
        settings.SetPadding(0.7f);
        settings.SetKeepAspect(false);
        EXPECT_FALSE(CameraState(camera()) == before);
    }
    EXPECT_TRUE(CameraState(camera()) == before);

    Session empty;
    MeshNode *hidden = addBoxNode(
        empty.document().root(), QStringLiteral("Hidden"), Vector3{0, 0, 0}, Vector3{1, 1, 1});
    hidden->SetVisible(false);
    const CameraState untouched(empty.document().GetCamera());
    FitToViewImplementation settings(&empty.document());
    EXPECT_EQ(settings.passCount(), 0);
    EXPECT_EQ(settings.fitDistanceBase(), 0.f);
    settings.SetPadding(0.5f);
    EXPECT_TRUE(CameraState(empty.document().GetCamera()) == untouched);
    settings.setAccepted(true);
}

TEST_F(FitToViewTest, TheWindowFitsAtOnceAndOnlyOkKeepsTheCamera)
{
    addBoxNode(document().root(), QStringLiteral("Cube"), Vector3{0, 0, 0}, Vector3{10, 10, 10});
    const CameraState before(camera());
    const int steps = document().history().undoCount();
    ITool *tool = m_session.tools().findTool(QStringLiteral("Fit To View..."));
    for (const WayOut &wayOut : waysToCloseWithoutOk()) {
        SCOPED_TRACE(wayOut.name);
        tool->Execute(m_session.context());
        QDialog *window = m_session.userInterface().openWindow();
        ASSERT_NE(window, nullptr);
        EXPECT_EQ(window->windowTitle(), QStringLiteral("Fit To View"));
        EXPECT_FALSE(CameraState(camera()) == before) << "fitted as the window opened";
        wayOut(window);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_TRUE(CameraState(camera()) == before);
    }
    tool->Execute(m_session.context());
    QDialog *window = m_session.userInterface().openWindow();
    const CameraState fitted(camera());
    window->findChild<QPushButton *>(QStringLiteral("ok"))->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(CameraState(camera()) == fitted);
    EXPECT_EQ(document().history().undoCount(), steps) << "the camera is no undo step";

    // The tool-bar button opens the same window for its own document.
    QAction *button = nullptr;
    for (QAction *action : m_session.userInterface().toolbarActions()) {
        if (action->property("buttonId").toString() == QLatin1String("FitToView"))
            button = action;
    }
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->text(), QStringLiteral("Fit To View..."));
    button->trigger();
    ASSERT_NE(m_session.userInterface().openWindow(), nullptr);
    EXPECT_EQ(m_session.userInterface().openWindow()->size(), QSize(400, 190));
    m_session.userInterface().openWindow()->reject();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TEST_F(FitToViewTest, TheScriptFunctionChecksFirstThenFitsAndKeeps)
{
    addBoxNode(document().root(), QStringLiteral("Cube"), Vector3{0, 0, 0}, Vector3{10, 10, 10});
    camera()->SetAspectRatio(1.25f);
    const CameraState before(camera());
    const struct
    {
        const char *call;
        const char *error;
    } failures[] = {
        {"tools.fitToView()", "Usage: tools.fitToView(params)"},
        {"tools.fitToView(1)", "The parameter has to be a dictionary"},
        {"tools.fitToView('padding')", "The parameter has to be a dictionary"},
        {"tools.fitToView({}, 1)", "Usage: tools.fitToView(params)"},
        {"new tools.fitToView({})", "Do not call this as a constructor"},
    };
    for (const auto &failure : failures) {
        EXPECT_EQ(run(QLatin1String(failure.call)),
                  QStringLiteral("error: test.js:1: Error: ") + QLatin1String(failure.error));
        EXPECT_TRUE(CameraState(camera()) == before) << failure.call;
    }

    float base = 0;
    {
        FitToViewImplementation probe(&document());
        base = probe.fitDistanceBase();
    }
    EXPECT_EQ(run(QStringLiteral("tools.fitToView({padding: 0})")), QString());
    EXPECT_FLOAT_EQ(camera()->GetDistance(), base);
    EXPECT_EQ(run(QStringLiteral("tools.fitToView({padding: 2, Padding: 0})")), QString());
    EXPECT_NEAR(camera()->GetDistance(), 2 * base, 4e-3 * base);
    EXPECT_EQ(run(QStringLiteral("tools.fitToView({padding: 'wide'})")), QString());
    EXPECT_NEAR(camera()->GetDistance(), base, 4e-3 * base);
    camera()->SetAspectRatio(1.25f);
    EXPECT_EQ(run(QStringLiteral("tools.fitToView({keepAspect: true})")), QString());
    EXPECT_FLOAT_EQ(camera()->GetAspectRatio(), 1.25f);
    EXPECT_EQ(run(QStringLiteral("tools.fitToView({})")), QString());
    EXPECT_NE(camera()->GetAspectRatio(), 1.25f) << "a fitted ratio";
}
