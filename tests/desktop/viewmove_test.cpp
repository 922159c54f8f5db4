// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Moving the selection in the live 3D view with the mouse and the arrow keys, in a real X window
// (Xvfb under ctest). Where a shape should land is worked out here from the camera's documented
// matrices (SceneViewTest::project); undo and cancel are checked against whole scene dumps.

// Mouse events go through the window system's path, so that a move carries the held button.
#define QTEST_QPA_MOUSE_HANDLING

#include "tests/desktop/sceneviewtest.h"

#include "hostapp/core/scene/scenenode.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <QTest>

#include <cmath>

using namespace vantrel::host;
using vantrel::test::SceneViewTest;

namespace {

class ViewMoveTest : public SceneViewTest
{
protected:
    QByteArray sceneDump() const { return vantrel::test::dump(*m_document); }

    void select(const std::vector<INode *> &nodes)
    {
        m_document->SetSelection(nodes, Document::ReplaceSelection);
        m_document->history().clear();
    }

    static Vector3 worldOrigin(const INode *node)
    {
        Matrix world;
        GetNodeGlobalMatrix(world, node);
        return Vector3(world[12], world[13], world[14]);
    }

    // A press, two moves carrying the modifiers (as a held Alt does) and, unless told not to, the
    // release.
    void dragWith(Qt::KeyboardModifiers modifiers, QPoint from, QPoint to, bool release = true)
    {
        QTest::mousePress(m_view.get(), Qt::LeftButton, modifiers, from);
        QTest::mouseEvent(QTest::MouseMove, m_view.get(), Qt::NoButton, modifiers, (from + to) / 2);
        QTest::mouseEvent(QTest::MouseMove, m_view.get(), Qt::NoButton, modifiers, to);
        if (release)
            QTest::mouseRelease(m_view.get(), Qt::LeftButton, modifiers, to);
    }

    void expectUnderPointer(const Vector3 &point, const QPoint &pointer)
    {
        const QPointF shown = project(point);
        EXPECT_NEAR(shown.x(), pointer.x(), 1.5) << "the grabbed point left the pointer";
        EXPECT_NEAR(shown.y(), pointer.y(), 1.5) << "the grabbed point left the pointer";
    }

    // Pixels of the landing marks' colour.
    static int landingPixels(const QImage &image)
    {
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor c = image.pixelColor(x, y);
                count += std::abs(c.red() - 255) < 20 && std::abs(c.green() - 150) < 25
                         && c.blue() < 80;
            }
        }
        return count;
    }
};

// The front face of Side, whose middle the tests grab: the camera looks at it from +x.
const Vector3 SideFront(5.f, 30.f, 5.f);

} // namespace

TEST_F(ViewMoveTest, DragSlidesTheSelectionOnTheFloorUnderThePointerAsOneStep)
{
    select({m_side, m_near});
    const QByteArray before = sceneDump();
    const QPoint from = pixel(SideFront), to = from + QPoint(-70, 25);
    dragWith(Qt::NoModifier, from, to);

    const Vector3 side = m_side->GetPosition(), near = m_near->GetPosition();
    EXPECT_EQ(side.z, 0.f) << "sliding never lifts";
    EXPECT_GT(std::hypot(side.x, side.y), 5.f);
    EXPECT_EQ(near.x, side.x) << "the whole selection moves together";
    EXPECT_EQ(near.y, side.y);
    expectUnderPointer(AddVectors(SideFront, side), to);
    EXPECT_EQ(m_document->history().undoCount(), 1);
    EXPECT_EQ(m_document->history().undoText(), QStringLiteral("Move"));
    EXPECT_EQ(m_document->GetSelection().size(), 2u) << "a drag is no click";

    ASSERT_TRUE(m_document->undo());
    EXPECT_EQ(sceneDump(), before);

    // A click on a selected shape still selects it alone, and moves nothing.
    click(pixel(SideFront));
    EXPECT_EQ(selection(), std::vector<INode *>{m_side});
    EXPECT_EQ(m_side->GetPosition(), Vector3());
}

TEST_F(ViewMoveTest, TheRaiseModifierLiftsAlongTheVerticalOnly)
{
    select({m_side});
    const QPoint from = pixel(SideFront), to = from + QPoint(0, -40);
    dragWith(SceneView::RaiseModifier, from, to);
    const Vector3 side = m_side->GetPosition();
    EXPECT_EQ(side.x, 0.f);
    EXPECT_EQ(side.y, 0.f);
    EXPECT_GT(side.z, 5.f);
    // The vertical line through the grabbed point leans on the screen with the perspective: the
    // point of it nearest the pointer is at the pointer's height, a little to its side.
    EXPECT_NEAR(project(AddVectors(SideFront, side)).y(), to.y(), 1.5);
    EXPECT_EQ(m_document->history().undoText(), QStringLiteral("Move"));

    // Held from part-way through a drag it takes over from where the shape is, with no jump: the
    // move that first carries it lowers the shape by what the pointer went down since the last.
    select({m_side});
    const Vector3 start = m_side->GetPosition();
    const QPoint grab = pixel(AddVectors(SideFront, start));
    QTest::mousePress(m_view.get(), Qt::LeftButton, Qt::NoModifier, grab);
    QTest::mouseMove(m_view.get(), grab + QPoint(30, 0));
    const Vector3 slid = m_side->GetPosition();
    EXPECT_EQ(slid.z, start.z);
    QTest::mouseEvent(QTest::MouseMove,
                      m_view.get(),
                      Qt::NoButton,
                      SceneView::RaiseModifier,
                      grab + QPoint(30, 30));
    QTest::mouseRelease(
        m_view.get(), Qt::LeftButton, SceneView::RaiseModifier, grab + QPoint(30, 30));
    EXPECT_EQ(m_side->GetPosition().x, slid.x);
    EXPECT_EQ(m_side->GetPosition().y, slid.y);
    EXPECT_LT(m_side->GetPosition().z, slid.z);
    EXPECT_NEAR(project(AddVectors(SideFront, m_side->GetPosition())).y(), grab.y() + 30, 1.5);
    EXPECT_EQ(m_document->history().undoCount(), 1) << "one drag, one step";
}

TEST_F(ViewMoveTest, ADragOffTheSelectionOrbitsAndLeavesTheSceneAlone)
{
    select({m_side});
    Camera &camera = *m_document->camera();
    const float yaw = camera.yaw(), pitch = camera.pitch();
    const QByteArray before = sceneDump();
    dragWith(Qt::NoModifier,
             pixel(Vector3(20.f, 0.f, 10.f)),
             pixel(Vector3(20.f, 0.f, 10.f)) + QPoint(40, 0));
    EXPECT_NE(camera.yaw(), yaw) << "a drag on an unselected shape orbits";
    dragWith(Qt::NoModifier, QPoint(320, 30), QPoint(320, 80));
    EXPECT_NE(camera.pitch(), pitch) << "so does one on empty space";
    camera.setYaw(yaw);
    camera.setPitch(pitch);
    EXPECT_EQ(sceneDump(), before);
    EXPECT_EQ(m_document->history().undoCount(), 0);
}

TEST_F(ViewMoveTest, EscapeARightClickOrLosingTheFocusMidDragPutsEverythingBack)
{
    select({m_side});
    const QByteArray before = sceneDump();
    const QPoint from = pixel(SideFront), to = from + QPoint(-60, 30);
    dragWith(Qt::NoModifier, from, to, false);
    QTest::mouseEvent(QTest::MouseMove,
                      m_view.get(),
                      Qt::NoButton,
                      SceneView::RaiseModifier,
                      to + QPoint(0, -60));
    ASSERT_GT(m_side->GetPosition().z, 5.f);

    // The view shows where the shape will land while the drag goes on; the picture is kept for a
    // person to look at.
    const QImage during = m_view->grabFramebuffer();
    QDir().mkpath(QStringLiteral(VANTREL_SCREENSHOT_DIR));
    EXPECT_TRUE(during.save(QStringLiteral(VANTREL_SCREENSHOT_DIR "/viewmove-landing.png")));
    EXPECT_GT(landingPixels(during), 100);

    QTest::keyClick(m_view.get(), Qt::Key_Escape);
    EXPECT_EQ(sceneDump(), before);
    QTest::mouseMove(m_view.get(), to + QPoint(20, 20));
    QTest::mouseRelease(m_view.get(), Qt::LeftButton, Qt::NoModifier, to + QPoint(20, 20));
    EXPECT_EQ(sceneDump(), before) << "the rest of a cancelled drag does nothing";
    EXPECT_EQ(m_document->history().undoCount(), 0);
    EXPECT_EQ(landingPixels(m_view->grabFramebuffer()), 0);

    dragWith(Qt::NoModifier, from, to, false);
    ASSERT_NE(m_side->GetPosition(), Vector3());
    QTest::mousePress(m_view.get(), Qt::RightButton, Qt::NoModifier, to);
    QTest::mouseRelease(m_view.get(), Qt::RightButton, Qt::NoModifier, to);
    QTest::mouseRelease(m_view.get(), Qt::LeftButton, Qt::NoModifier, to);
    EXPECT_EQ(sceneDump(), before);
    EXPECT_EQ(m_document->history().undoCount(), 0);

    // So does losing the focus, as to a window that opens mid-drag and takes the mouse with it.
    m_view->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(m_view.get()));
    dragWith(Qt::NoModifier, from, to, false);
    ASSERT_TRUE(m_view->hasFocus()) << "a press in the view gives it the focus";
    ASSERT_NE(m_side->GetPosition(), Vector3());
    m_view->clearFocus();
    EXPECT_EQ(sceneDump(), before);
    EXPECT_EQ(m_document->history().openGroupCount(), 0);
    QTest::mouseRelease(m_view.get(), Qt::LeftButton, Qt::NoModifier, to);
    EXPECT_EQ(m_document->history().undoCount(), 0);
}

TEST_F(ViewMoveTest, ArrowKeysNudgeAlongTheFloorAxesTheCameraFaces)
{
    select({m_side});
    m_view->setFocus();
    // The camera looks from +x at the origin: the image's right is +y, away from the viewer -x.
    QTest::keyClick(m_view.get(), Qt::Key_Right);
    EXPECT_EQ(m_side->GetPosition(), Vector3(0.f, 1.f, 0.f));
    QTest::keyClick(m_view.get(), Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(m_side->GetPosition(), Vector3(-10.f, 1.f, 0.f));
    QTest::keyClick(m_view.get(), Qt::Key_PageUp);
    QTest::keyClick(m_view.get(), Qt::Key_PageDown, Qt::ShiftModifier);
    EXPECT_EQ(m_side->GetPosition(), Vector3(-10.f, 1.f, -9.f));
    EXPECT_EQ(m_document->history().undoCount(), 4) << "a step each";
    EXPECT_EQ(m_document->history().undoText(), QStringLiteral("Nudge"));

    // From yaw 100 the camera stands nearest to +y: right is now -x, away -y.
    m_document->camera()->setYaw(100.f);
    QTest::keyClick(m_view.get(), Qt::Key_Right);
    QTest::keyClick(m_view.get(), Qt::Key_Down);
    EXPECT_EQ(m_side->GetPosition(), Vector3(-11.f, 2.f, -9.f));

    // Other modifiers and an empty selection leave the keys alone.
    const QByteArray before = sceneDump();
    QTest::keyClick(m_view.get(), Qt::Key_Left, Qt::ControlModifier);
    select({});
    const QByteArray unselected = sceneDump();
    QTest::keyClick(m_view.get(), Qt::Key_Left);
    EXPECT_EQ(sceneDump(), unselected);
    EXPECT_EQ(m_document->history().undoCount(), 0);
    EXPECT_NE(before, unselected); // only by the selection
}

TEST_F(ViewMoveTest, AChildOfATurnedScaledGroupMovesInTheSceneAsThePointerSays)
{
    auto *group
        = dynamic_cast<SceneNode *>(m_document->root()->CreateChildGroup(QStringLiteral("Turned")));
    ASSERT_NE(group, nullptr);
    group->SetPosition(Vector3(0.f, -30.f, 0.f), true);
    group->SetRotation(Vector3(0.f, 0.f, 60.f), true);
    group->SetScale(Vector3(2.f, 2.f, 2.f), 0);
    MeshNode *child = vantrel::test::addBoxNode(
        group, QStringLiteral("Child"), {-2.5f, -2.5f, 0.f}, {2.5f, 2.5f, 5.f});
    select({child});
    const Vector3 startWorld = worldOrigin(child);
    // The top of the child's box, 10 cm high in the scene, seen from above.
    const Vector3 grabbed(startWorld.x, startWorld.y, 10.f);
    const QPoint from = pixel(grabbed), to = from + QPoint(50, 20);
    dragWith(Qt::NoModifier, from, to);
    const Vector3 moved = SubtractVectors(worldOrigin(child), startWorld);
    EXPECT_NEAR(moved.z, 0.f, 1e-4f);
    EXPECT_GT(std::hypot(moved.x, moved.y), 5.f);
    expectUnderPointer(AddVectors(grabbed, moved), to);

    // With the group selected too only the group moves, or the child would go twice as far.
    select({group, child});
    const Vector3 childLocal = child->GetPosition(), groupAt = group->GetPosition();
    const Vector3 childWorld = worldOrigin(child);
    const QPoint again = pixel(AddVectors(grabbed, moved));
    dragWith(Qt::NoModifier, again, again + QPoint(-40, 0));
    EXPECT_EQ(child->GetPosition(), childLocal);
    const Vector3 groupMoved = SubtractVectors(group->GetPosition(), groupAt);
    const Vector3 childMoved = SubtractVectors(worldOrigin(child), childWorld);
    EXPECT_NEAR(childMoved.x, groupMoved.x, 1e-3f);
    EXPECT_NEAR(childMoved.y, groupMoved.y, 1e-3f);
    EXPECT_NEAR(groupMoved.z, 0.f, 1e-4f);
}
