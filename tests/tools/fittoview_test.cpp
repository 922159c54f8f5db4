// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Fit To View: the fit, the padding, the aspect ratio, Cancel, the window and the script.
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
#include "tests/tools/fittoviewtest.h"
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

using namespace fittoviewtest;
using vantrel::test::addBoxNode;
using vantrel::test::addPointsNode;
using vantrel::test::Near;
using vantrel::test::WayOut;
using vantrel::test::waysToCloseWithoutOk;

namespace {

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
