// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// The live 3D view in a real X window on a document of three boxes and a light, with the
// helpers that work out where a world point shows on screen from the camera's documented
// matrices and that drive the mouse; shared by sceneview_test.cpp and sceneviewrepaint_test.cpp.

// Mouse events go through the window system's path, so that a move carries the held button. QTest
// reads this when it is first included, so the test files define it before any include.
#ifndef QTEST_QPA_MOUSE_HANDLING
#error "define QTEST_QPA_MOUSE_HANDLING before any include"
#endif

#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/desktop/sceneview.h"
#include "tests/support/testsupport.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <vector>

namespace vantrel::test {

using vantrel::host::BaseNode;
using vantrel::host::Camera;
using vantrel::host::Document;
using vantrel::host::MeshNode;
using vantrel::host::SceneView;

class SceneViewTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_document = std::make_unique<Document>();
        BaseNode *root = m_document->root();
        // The camera looks from +x towards the origin, so Near stands in front of Far on the
        // same line of sight and hides its middle; Side stands clear of both.
        m_near = addBoxNode(root, QStringLiteral("Near"), {10, -5, 0}, {20, 5, 20});
        m_far = addBoxNode(root, QStringLiteral("Far"), {-20, -5, 0}, {-10, 5, 10});
        m_side = addBoxNode(root, QStringLiteral("Side"), {-5, 25, 0}, {5, 35, 10});
        m_light = root->CreateChildLight(QStringLiteral("Light"));
        Camera &camera = *m_document->camera();
        camera.SetTarget(Vector3(0, 0, 5));
        camera.SetDistance(120.f);
        camera.setYaw(0.f);
        camera.setPitch(15.f);
        m_document->history().clear();

        m_view = std::make_unique<SceneView>();
        m_view->resize(640, 400);
        m_view->setDocument(m_document.get());
        QSignalSpy frames(m_view.get(), &SceneView::frameDrawn);
        m_view->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(m_view.get()));
        if (frames.isEmpty())
            frames.wait(5000);
        ASSERT_TRUE(m_view->errorMessage().isEmpty()) << m_view->errorMessage().toStdString();
    }

    // Where a world point shows in the widget, from the host's view and projection with the
    // widget's own aspect ratio (the depth range does not move a point across the screen).
    QPointF project(const Vector3 &point) const
    {
        const Camera &camera = *m_document->camera();
        Matrix view, projection, viewProjection;
        CalculateViewMatrix(view, camera.GetGlobalMatrix());
        CalculateProjectionMatrix(projection,
                                  camera.GetFieldOfView(),
                                  camera.GetAspectRatio(),
                                  float(m_view->width()) / float(m_view->height()),
                                  1.f,
                                  1000.f);
        MultiplyMatrices(viewProjection, view, projection);
        Vector4 h(point.x, point.y, point.z, 1.f);
        TransformVector4(h, viewProjection);
        return QPointF((h.x / h.w + 1.0) * 0.5 * m_view->width() - 0.5,
                       (1.0 - h.y / h.w) * 0.5 * m_view->height() - 0.5);
    }

    QPoint pixel(const Vector3 &point) const { return project(point).toPoint(); }

    void click(const QPoint &at, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::mouseClick(m_view.get(), Qt::LeftButton, modifiers, at);
    }

    void drag(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, QPoint from, QPoint to)
    {
        QTest::mousePress(m_view.get(), button, modifiers, from);
        QTest::mouseMove(m_view.get(), (from + to) / 2);
        QTest::mouseMove(m_view.get(), to);
        QTest::mouseRelease(m_view.get(), button, modifiers, to);
    }

    std::vector<INode *> selection() const { return m_document->GetSelection(); }

    // Waits for the view to draw a frame it scheduled itself.
    bool repaintsByItself()
    {
        QSignalSpy frames(m_view.get(), &SceneView::frameDrawn);
        return frames.wait(5000);
    }

    std::unique_ptr<Document> m_document;
    std::unique_ptr<SceneView> m_view;
    MeshNode *m_near = nullptr;
    MeshNode *m_far = nullptr;
    MeshNode *m_side = nullptr;
    INode *m_light = nullptr;
};

} // namespace vantrel::test
