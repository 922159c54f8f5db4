// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// What the picture tests share: a session with the tools plug-in and a renderer, and where the
// camera shows a world point, worked out independently of the renderer.

#include "hostapp/core/commands/session.h"
#include "hostapp/render/renderer.h"

#include <gtest/gtest.h>

#include <QColor>
#include <QImage>
#include <QPointF>
#include <QSize>

#include <array>

namespace vantrel::test {

using Point = std::array<double, 3>;

// A background no shading of the palette's colours can produce.
inline const QColor Magenta(255, 0, 255);

// Where the camera shows a world point, in pixels (x to the right, y down), worked out from the
// camera's documented axes (global matrix rows: forward, left, up, position), its vertical field
// of view and its frame fitted into the picture.
QPointF pixelOf(const host::Camera &camera, const QSize &size, const Point &p);

// The light reaching a surface around a pixel, up to its colour's factor, in linear units: the
// picture stores light with a 2.2 power, so it is undone before averaging a 5 x 5 patch.
double lightAt(const QImage &picture, const QPointF &where);

class PictureTest : public ::testing::Test
{
protected:
    PictureTest();

    // Runs the script; a failure fails the test with the script's message.
    void run(const QString &program);

    QImage picture(const render::RenderOptions &options = render::RenderOptions());
    QImage withoutFloor(int width = 480);

    const host::Camera &camera() { return *m_session.document().camera(); }

    // The first node of that name in pre-order, or null.
    INode *findNode(const QString &name, INode *from = nullptr);

    host::Session m_session;
    render::Renderer m_renderer;
};

} // namespace vantrel::test
