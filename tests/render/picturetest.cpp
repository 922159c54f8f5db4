// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tests/render/picturetest.h"

#include "host/inode.h"

#include <cmath>

namespace vantrel::test {

using render::RenderOptions;

QPointF pixelOf(const host::Camera &camera, const QSize &size, const Point &p)
{
    const Matrix &g = camera.GetGlobalMatrix();
    const double d[3] = {p[0] - g[12], p[1] - g[13], p[2] - g[14]};
    auto along = [&](int row) {
        return d[0] * g[4 * row] + d[1] * g[4 * row + 1] + d[2] * g[4 * row + 2];
    };
    const double depth = along(0), right = -along(1), up = along(2);
    const double frame = camera.GetAspectRatio();
    const double picture = double(size.width()) / double(size.height());
    // Half the frame's height at depth 1; the frame fills the picture's height when the picture is
    // wider than the frame, and its width otherwise.
    double halfHeight = std::tan(double(camera.GetFieldOfView()) * M_PI / 360.0);
    double halfWidth = halfHeight * frame;
    if (picture >= frame)
        halfWidth = halfHeight * picture;
    else
        halfHeight = halfWidth / picture;
    const double x = right / depth / halfWidth, y = up / depth / halfHeight;
    return QPointF((x + 1.0) * 0.5 * size.width(), (1.0 - y) * 0.5 * size.height());
}

double lightAt(const QImage &picture, const QPointF &where)
{
    double sum = 0.0;
    int count = 0;
    for (int dy = -2; dy <= 2; ++dy) {
        for (int dx = -2; dx <= 2; ++dx) {
            const QPoint p(int(std::lround(where.x())) + dx, int(std::lround(where.y())) + dy);
            if (!picture.rect().contains(p))
                continue;
            const QRgb c = picture.pixel(p);
            sum += std::pow((qRed(c) + qGreen(c) + qBlue(c)) / (3.0 * 255.0), 2.2);
            ++count;
        }
    }
    return count ? sum / count : NAN;
}

PictureTest::PictureTest()
{
    QString error;
    EXPECT_TRUE(m_session.loadToolsPlugin(QStringLiteral(VANTREL_TOOLS_PLUGIN), &error))
        << error.toStdString();
    EXPECT_TRUE(m_renderer.initialize(&error)) << error.toStdString();
}

void PictureTest::run(const QString &program)
{
    QString error;
    EXPECT_TRUE(m_session.runner().evaluate(program, QStringLiteral("test.js"), &error))
        << error.toStdString() << "\nin: " << program.toStdString();
}

QImage PictureTest::picture(const RenderOptions &options)
{
    QString error;
    QImage image = m_renderer.render(m_session.document(), options, &error);
    EXPECT_FALSE(image.isNull()) << error.toStdString();
    return image;
}

QImage PictureTest::withoutFloor(int width)
{
    RenderOptions options;
    options.width = width;
    options.floor = false;
    options.background = Magenta;
    return picture(options);
}

INode *PictureTest::findNode(const QString &name, INode *from)
{
    if (!from)
        from = m_session.document().GetRootNode();
    if (from->GetName() == name)
        return from;
    for (INode *child : from->GetChildren()) {
        if (INode *found = findNode(name, child))
            return found;
    }
    return nullptr;
}

} // namespace vantrel::test
