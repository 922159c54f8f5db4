// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The live 3D view in a real X window (Xvfb under ctest): picking against boxes whose place on
// screen the test works out itself from the camera's documented matrices, and the mouse's camera
// moves against the documented rates. The view following the document on its own is in
// sceneviewrepaint_test.cpp.

// Mouse events go through the window system's path, so that a move carries the held button.
#define QTEST_QPA_MOUSE_HANDLING

#include "tests/desktop/sceneviewtest.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <cmath>

using namespace vantrel::host;
using vantrel::test::SceneViewTest;

TEST_F(SceneViewTest, ClickPicksTheFrontmostShapeUnderTheCursor)
{
    const QPoint sideCentre = pixel({0, 30, 5});
    const QPoint farCentre = pixel({-15, 0, 5});
    ASSERT_TRUE(m_view->rect().contains(sideCentre) && m_view->rect().contains(farCentre));
    EXPECT_EQ(m_view->nodeAt(sideCentre), m_side) << "a box clear of the others";
    EXPECT_EQ(m_view->nodeAt(farCentre), m_near) << "Near covers the middle of Far";
    m_near->SetVisible(false);
    EXPECT_EQ(m_view->nodeAt(farCentre), m_far) << "hidden, Near no longer covers Far";
    m_near->SetVisible(true);
    EXPECT_EQ(m_view->nodeAt(pixel({0, -40, 0})), nullptr) << "bare floor";
    EXPECT_EQ(m_view->nodeAt(pixel({0, 38, 5})), nullptr) << "just beside Side";

    click(farCentre);
    EXPECT_EQ(selection(), std::vector<INode *>{m_near});
    EXPECT_EQ(m_document->history().undoText(), QStringLiteral("Select"));
}

TEST_F(SceneViewTest, CtrlClickAddsAndRemovesAndAClickOnTheFloorClears)
{
    const QPoint side = pixel({0, 30, 5}), nearBox = pixel({15, 0, 5});
    click(side);
    click(nearBox, Qt::ControlModifier);
    EXPECT_EQ(selection(), (std::vector<INode *>{m_side, m_near})) << "Ctrl + click adds";
    click(side, Qt::ControlModifier);
    EXPECT_EQ(selection(), std::vector<INode *>{m_near}) << "Ctrl + click on a selected removes";
    click(side);
    EXPECT_EQ(selection(), std::vector<INode *>{m_side}) << "a plain click replaces";
    EXPECT_EQ(m_document->history().undoCount(), 4) << "each click that changed it is a step";
    click(pixel({0, -40, 0}));
    EXPECT_TRUE(selection().empty()) << "a click on the floor clears";
    EXPECT_EQ(m_document->history().undoText(), QStringLiteral("Select"));
    const int steps = m_document->history().undoCount();
    click(pixel({0, -40, 0}));
    EXPECT_EQ(m_document->history().undoCount(), steps) << "clearing nothing records nothing";
}

TEST_F(SceneViewTest, LeftDragOrbitsByTheDocumentedRateAndIsNoClick)
{
    Camera &camera = *m_document->camera();
    const QPoint side = pixel({0, 30, 5});
    drag(Qt::LeftButton, Qt::NoModifier, side, side + QPoint(50, 20));
    EXPECT_TRUE(selection().empty()) << "a drag that starts on a shape does not select it";
    EXPECT_EQ(m_document->history().undoCount(), 0) << "camera moves are not undo steps";
    EXPECT_NEAR(camera.yaw(), -50 * 0.4f, 1e-3f) << "right turns the camera clockwise";
    EXPECT_NEAR(camera.pitch(), 15.f + 20 * 0.4f, 1e-3f) << "down raises the camera";

    drag(Qt::LeftButton, Qt::NoModifier, QPoint(300, 50), QPoint(300, 350));
    EXPECT_FLOAT_EQ(camera.pitch(), Camera::MaximumPitch) << "the camera limits the pitch";
}

TEST_F(SceneViewTest, WheelStepsScaleTheDistance)
{
    Camera &camera = *m_document->camera();
    auto wheel = [&](int eighths) {
        const QPointF at(320, 200);
        QWheelEvent event(at,
                          m_view->mapToGlobal(at.toPoint()),
                          QPoint(),
                          QPoint(0, eighths),
                          Qt::NoButton,
                          Qt::NoModifier,
                          Qt::NoScrollPhase,
                          false);
        QApplication::sendEvent(m_view.get(), &event);
    };
    wheel(240);
    EXPECT_NEAR(camera.GetDistance(), 120.f / (1.15f * 1.15f), 1e-3f) << "two steps forward";
    wheel(-120);
    EXPECT_NEAR(camera.GetDistance(), 120.f / 1.15f, 1e-3f) << "one step back";
    for (int i = 0; i < 200; ++i)
        wheel(120);
    EXPECT_FLOAT_EQ(camera.GetDistance(), ICamera::MinimumDistance);
    EXPECT_EQ(m_document->history().undoCount(), 0);
}

TEST_F(SceneViewTest, PanningKeepsTheTargetPointUnderTheCursor)
{
    Camera &camera = *m_document->camera();
    const Vector3 oldTarget = camera.GetTarget();
    const QPointF start = project(oldTarget);
    drag(Qt::LeftButton, Qt::ShiftModifier, QPoint(320, 200), QPoint(380, 170));
    QPointF moved = project(oldTarget) - start;
    EXPECT_NEAR(moved.x(), 60.0, 0.5) << "Shift + left drag";
    EXPECT_NEAR(moved.y(), -30.0, 0.5);
    EXPECT_NEAR(camera.yaw(), 0.f, 1e-4f) << "panning does not turn the camera";
    EXPECT_NEAR(camera.GetDistance(), 120.f, 1e-3f);

    const Vector3 second = camera.GetTarget();
    const QPointF before = project(second);
    drag(Qt::MiddleButton, Qt::NoModifier, QPoint(200, 100), QPoint(150, 180));
    moved = project(second) - before;
    EXPECT_NEAR(moved.x(), -50.0, 0.5) << "middle drag";
    EXPECT_NEAR(moved.y(), 80.0, 0.5);
    EXPECT_EQ(m_document->history().undoCount(), 0);
}
