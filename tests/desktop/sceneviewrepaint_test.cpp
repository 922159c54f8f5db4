// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The live 3D view following its document on its own: repainting after scene and camera changes,
// the fast frames while the camera moves, its document going away, a driver without OpenGL 3.3,
// and the view moved into another window.

// Mouse events go through the window system's path, so that a move carries the held button.
#define QTEST_QPA_MOUSE_HANDLING

#include "host/ilightnode.h"
#include "host/itransformations.h"
#include "hostapp/render/scenedrawer.h"
#include "tests/desktop/sceneviewtest.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QSet>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <cmath>
#include <memory>

using namespace vantrel::host;
using vantrel::test::addBoxNode;
using vantrel::test::SceneViewTest;

TEST_F(SceneViewTest, RepaintsByItselfAfterSceneAndCameraChanges)
{
    const QImage before = m_view->grabFramebuffer();
    m_near->SetVisible(false);
    EXPECT_TRUE(repaintsByItself()) << "after a recorded change";
    EXPECT_NE(m_view->grabFramebuffer(), before);
    m_document->undo();
    EXPECT_TRUE(repaintsByItself()) << "after undo";
    EXPECT_EQ(m_view->grabFramebuffer(), before) << "the same scene draws the same picture";

    m_document->camera()->setYaw(30.f);
    EXPECT_TRUE(repaintsByItself()) << "after a camera move, which records nothing";
    EXPECT_NE(m_view->grabFramebuffer(), before);

    // The selection shows on a shape with real normals (the test boxes have none to shade by):
    // the middle of its face towards the camera changes colour when it is selected.
    m_document->camera()->setYaw(0.f);
    MeshNode *gift
        = m_document->root()->createChildShape("generator.Boxes.Box", QStringLiteral("Gift"));
    gift->SetPosition(Vector3(40, -30, 0), false);
    const TBBox<float> box = gift->mesh()->localBox();
    const QPoint face = pixel(
        {40 + box.max[0], -30 + (box.min[1] + box.max[1]) / 2, (box.min[2] + box.max[2]) / 2});
    ASSERT_TRUE(repaintsByItself());
    ASSERT_EQ(m_view->nodeAt(face), gift);
    const QRgb plain = m_view->grabFramebuffer().pixel(face);
    m_document->SetSelection({gift}, Document::ReplaceSelection);
    EXPECT_TRUE(repaintsByItself()) << "after a selection change";
    EXPECT_NE(m_view->grabFramebuffer().pixel(face), plain);
}

TEST_F(SceneViewTest, MovingTheCameraDrawsFastShadowsAndTheFrameAfterInFull)
{
    constexpr int Full = vantrel::render::DrawOptions::MaxShadowSamples;
    // Wide soft shadows on the floor, where fewer samples show as a different grain.
    auto *light = qobject_cast<ILightNode *>(m_light);
    ASSERT_NE(light, nullptr);
    light->SetCastShadows(true);
    light->SetShadowBlur(6.f);
    qobject_cast<ITransformations *>(m_light)->SetPosition(Vector3(-40, 30, 80), false);
    ASSERT_TRUE(repaintsByItself());
    const QImage still = m_view->grabFramebuffer();
    EXPECT_EQ(m_view->lastShadowSamples(), Full);

    // A frame drawn by the view on its own after what the mouse did, perhaps while it was sent.
    auto drawsAfter = [this](auto &&action) {
        QSignalSpy frames(m_view.get(), &SceneView::frameDrawn);
        action();
        return !frames.isEmpty() || frames.wait(5000);
    };
    const QPoint at(320, 200);
    QTest::mousePress(m_view.get(), Qt::LeftButton, Qt::NoModifier, at);
    EXPECT_TRUE(drawsAfter([&] { QTest::mouseMove(m_view.get(), at + QPoint(40, 0)); }));
    EXPECT_EQ(m_view->lastShadowSamples(), SceneView::GestureShadowSamples) << "while orbiting";
    EXPECT_EQ(m_view->lastDrawnSize(), QSize(320, 200)) << "at half the widget's 640 x 400";
    // Back where the drag began, the camera is where it was, but the drag goes on.
    QTest::mouseMove(m_view.get(), at);
    const QImage moving = m_view->grabFramebuffer();
    EXPECT_EQ(m_view->lastShadowSamples(), SceneView::GestureShadowSamples);
    EXPECT_NE(moving, still) << "coarser pixels, the shadows' grain";
    // Seen from afar it is the same picture: no black frame, nothing shifted or stretched.
    const auto small = [](const QImage &image) {
        return image.scaled(32, 20, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    };
    const QImage a = small(moving), b = small(still);
    int largest = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            for (int shift : {0, 8, 16})
                largest = std::max(largest,
                                   std::abs(int(a.pixel(x, y) >> shift & 0xff)
                                            - int(b.pixel(x, y) >> shift & 0xff)));
    EXPECT_LT(largest, 24) << "the largest channel difference, seen from afar";
    EXPECT_TRUE(drawsAfter([&] {
        QTest::mouseRelease(m_view.get(), Qt::LeftButton, Qt::NoModifier, at);
    })) << "the release brings a frame although the camera did not move";
    EXPECT_EQ(m_view->lastShadowSamples(), Full);
    EXPECT_EQ(m_view->lastDrawnSize(), m_view->size());
    EXPECT_EQ(m_view->grabFramebuffer(), still) << "in full, exactly as before the drag";

    // Panning counts the same way; a press that stays a click does not.
    QTest::mousePress(m_view.get(), Qt::MiddleButton, Qt::NoModifier, at);
    QTest::mouseMove(m_view.get(), at + QPoint(0, 30));
    EXPECT_TRUE(m_view->isMovingCamera()) << "while panning";
    EXPECT_TRUE(drawsAfter([&] {
        QTest::mouseRelease(m_view.get(), Qt::MiddleButton, Qt::NoModifier, at + QPoint(0, 30));
    }));
    EXPECT_EQ(m_view->lastShadowSamples(), Full) << "after a pan's release";
    QTest::mousePress(m_view.get(), Qt::RightButton, Qt::NoModifier, at);
    QTest::mouseMove(m_view.get(), at + QPoint(40, 0));
    EXPECT_FALSE(m_view->isMovingCamera()) << "a right drag moves nothing";
    QTest::mouseRelease(m_view.get(), Qt::RightButton, Qt::NoModifier, at + QPoint(40, 0));

    // A wheel has no release: the zoom counts as going on until it rests for a moment.
    EXPECT_TRUE(drawsAfter([&] {
        QWheelEvent event(QPointF(at),
                          m_view->mapToGlobal(at),
                          QPoint(),
                          QPoint(0, 120),
                          Qt::NoButton,
                          Qt::NoModifier,
                          Qt::NoScrollPhase,
                          false);
        QApplication::sendEvent(m_view.get(), &event);
    }));
    EXPECT_EQ(m_view->lastShadowSamples(), SceneView::GestureShadowSamples) << "while zooming";
    EXPECT_TRUE(repaintsByItself()) << "once the wheel rests";
    EXPECT_EQ(m_view->lastShadowSamples(), Full);
    EXPECT_FALSE(m_view->isMovingCamera());
}

TEST_F(SceneViewTest, KeepsTheCameraFrameAndSurvivesItsDocumentGoing)
{
    const float aspect = m_document->camera()->GetAspectRatio();
    m_view->resize(300, 500);
    EXPECT_TRUE(repaintsByItself());
    EXPECT_FLOAT_EQ(m_document->camera()->GetAspectRatio(), aspect) << "document state";

    m_document.reset();
    EXPECT_EQ(m_view->document(), nullptr);
    EXPECT_TRUE(repaintsByItself()) << "an empty view";
    EXPECT_EQ(m_view->nodeAt(QPoint(150, 250)), nullptr);
    click(QPoint(150, 250));
    drag(Qt::LeftButton, Qt::NoModifier, QPoint(100, 100), QPoint(200, 200));
    QWheelEvent wheel(QPointF(10, 10),
                      m_view->mapToGlobal(QPoint(10, 10)),
                      QPoint(),
                      QPoint(0, 120),
                      Qt::NoButton,
                      Qt::NoModifier,
                      Qt::NoScrollPhase,
                      false);
    QApplication::sendEvent(m_view.get(), &wheel);

    Document other;
    m_view->setDocument(&other);
    EXPECT_TRUE(repaintsByItself()) << "a new document after the old one went";
}

// Run by its own CTest entry with Mesa told to offer OpenGL 3.0 only (MESA_GL_VERSION_OVERRIDE);
// skipped where the driver offers what it has.
TEST(SceneViewWithoutOpenGL33, ShowsWhyAndTheWindowKeepsWorking)
{
    if (qEnvironmentVariableIsEmpty("MESA_GL_VERSION_OVERRIDE"))
        GTEST_SKIP() << "needs MESA_GL_VERSION_OVERRIDE=3.0 (see tests/CMakeLists.txt)";
    Document document;
    addBoxNode(document.root(), QStringLiteral("Box"), {0, 0, 0}, {10, 10, 10});
    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    auto *view = new SceneView(&window);
    auto *button = new QPushButton(QStringLiteral("Still here"), &window);
    layout->addWidget(view, 1);
    layout->addWidget(button);
    view->setDocument(&document);
    window.resize(400, 300);
    QSignalSpy frames(view, &SceneView::frameDrawn);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    if (frames.isEmpty()) {
        ASSERT_TRUE(frames.wait(5000));
    }
    EXPECT_TRUE(view->errorMessage().contains(QStringLiteral("OpenGL 3.3 is needed")))
        << view->errorMessage().toStdString();
    // The view puts up its message once the event loop runs.
    QLabel *message = nullptr;
    ASSERT_TRUE(QTest::qWaitFor(
        [view, &message] {
            message = view->findChild<QLabel *>();
            return message && message->isVisible();
        },
        5000));
    EXPECT_TRUE(message->text().contains(QStringLiteral("OpenGL 3.3 is needed")));
    EXPECT_EQ(message->geometry(), view->rect()) << "the message covers the view";
    // What the window shows: the view's area is not a single colour, the text is on it.
    const QImage shown = window.grab(view->geometry()).toImage();
    QSet<QRgb> colours;
    for (int y = 0; y < shown.height(); y += 2) {
        for (int x = 0; x < shown.width(); x += 2)
            colours.insert(shown.pixel(x, y));
    }
    EXPECT_GT(colours.size(), 2) << "the message's text shows";

    QTest::mouseClick(view, Qt::LeftButton, Qt::NoModifier, QPoint(100, 100));
    QTest::mouseClick(view, Qt::LeftButton, Qt::NoModifier, QPoint(120, 120));
    QSignalSpy clicked(button, &QPushButton::clicked);
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(clicked.count(), 1) << "the rest of the window answers";
}

TEST_F(SceneViewTest, MovedIntoAnotherWindowItDrawsTheSameScene)
{
    const QImage before = m_view->grabFramebuffer();
    // A new window gives the view a new OpenGL context: the old context's objects go with it and
    // the drawer starts over in the new one.
    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    layout->setContentsMargins(0, 0, 0, 0);
    m_view->setParent(&window);
    layout->addWidget(m_view.get());
    window.resize(m_view->size());
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    ASSERT_EQ(m_view->size(), before.size());
    EXPECT_TRUE(m_view->errorMessage().isEmpty());
    EXPECT_EQ(m_view->grabFramebuffer(), before);
    EXPECT_EQ(m_view->nodeAt(pixel({0, 30, 5})), m_side);
    m_view->setParent(nullptr); // the fixture deletes the view
}
