// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// What the shapes themselves show: one colour for copies of one shape, their artwork through
// their texture coordinates, and the shadows other shapes cast on them. Every expected value is
// worked out from the scene's geometry and the image painted here, not read from the renderer.
// These tests need an X display (ctest runs under xvfb-run in ./setup.sh test).
#include "host/hostfunctions.h"
#include "host/ilightnode.h"
#include "host/inode.h"
#include "hostapp/core/scene/meshnode.h"
#include "tests/render/picturetest.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

#include <cmath>
#include <memory>
#include <vector>

using namespace vantrel::host;
using vantrel::test::lightAt;
using vantrel::test::PictureTest;
using vantrel::test::pixelOf;
using vantrel::test::Point;

namespace {

// A pixel's colour with its brightness taken out: the lighting scales all three channels of a
// shape's colour alike, so the direction of (r, g, b) is what its base colour shows through it.
std::array<double, 3> chroma(QRgb c)
{
    const double r = qRed(c), g = qGreen(c), b = qBlue(c);
    const double length = std::sqrt(r * r + g * g + b * b);
    return {r / length, g / length, b / length};
}

double chromaDistance(QRgb a, QRgb b)
{
    const auto x = chroma(a), y = chroma(b);
    return std::sqrt((x[0] - y[0]) * (x[0] - y[0]) + (x[1] - y[1]) * (x[1] - y[1])
                     + (x[2] - y[2]) * (x[2] - y[2]));
}

Point worldPoint(const Matrix &m, const float *p)
{
    Point out;
    for (int c = 0; c < 3; ++c)
        out[c] = p[0] * m[c] + p[1] * m[4 + c] + p[2] * m[8 + c] + m[12 + c];
    return out;
}

} // namespace

TEST_F(PictureTest, CopiesOfOneShapeLookAlikeWhateverTheirNames)
{
    // Ambient light only: the picture shows each shape's own colour, unshaded.
    run(QStringLiteral(
        "var box = document.root.addShape('generator.Boxes.Box', 'Carton', {width: 20, depth: 20, "
        "height: 20});"
        "tools.stepAndRepeat(box, {repeatx: 3, repeaty: 1, repeatz: 1});"
        "var other = document.root.addShape('generator.Boxes.Box', 'Taller', {width: 20, depth: "
        "20, height: 35}); other.position = [0, 60, 0];"
        "document.ambient = 1;"
        "var c = document.camera; c.target = [20, 20, 10]; c.yaw = -90; c.pitch = 60;"
        "c.distance = 300; c.fieldOfView = 40; c.aspectRatio = 1.5;"));
    const QImage image = withoutFloor(480);
    std::vector<QRgb> tops;
    QStringList names;
    for (INode *node : CollectAllChildren(MakeListOfNodes(m_session.document().GetRootNode()))) {
        auto *shape = qobject_cast<MeshNode *>(node);
        if (!shape)
            continue;
        Matrix world;
        GetNodeGlobalMatrix(world, node);
        const float top[3] = {0.f, 0.f, float(shape->GetLocalBBox().max[2])};
        const QPointF at = pixelOf(camera(), image.size(), worldPoint(world, top));
        tops.push_back(image.pixel(at.toPoint()));
        names.append(node->GetName());
    }
    ASSERT_EQ(tops.size(), 4u) << "three copies in the row and the taller box";
    EXPECT_EQ(names.removeDuplicates(), 0) << "every copy has a name of its own";
    for (std::size_t i = 1; i < 3; ++i) {
        EXPECT_EQ(QColor(tops[i]).name(), QColor(tops[0]).name())
            << names[int(i)].toStdString() << " is a copy of " << names[0].toStdString();
    }
    EXPECT_NE(tops[3], qRgb(255, 0, 255)) << "the taller box is drawn";
}

TEST_F(PictureTest, ArtworkShowsThroughTheTextureCoordinates)
{
    // Four quadrants of colours no shape colour has, on an image that is not square and not in
    // the renderer's own pixel format.
    QImage sheet(256, 128, QImage::Format_RGB32);
    const QColor quadrant[2][2]
        = {{QColor(200, 60, 40), QColor(40, 160, 80)}, {QColor(50, 80, 200), QColor(220, 200, 60)}};
    QPainter painter(&sheet);
    for (int row = 0; row < 2; ++row) {
        for (int column = 0; column < 2; ++column)
            painter.fillRect(column * 128, row * 64, 128, 64, quadrant[row][column]);
    }
    painter.end();
    run(QStringLiteral(
        "document.root.addShape('generator.Boxes.Box', 'Printed', {width: 40, depth: 30, height: "
        "25});"
        "tools.easyLighting({hangle: 30, vangle: 50, blur: 0, contrast: 0.6});"
        "var c = document.camera; c.target = [0, 0, 12]; c.yaw = -60; c.pitch = 30;"
        "c.distance = 160; c.fieldOfView = 40; c.aspectRatio = 1.5;"));
    auto *shape = qobject_cast<MeshNode *>(findNode(QStringLiteral("Printed")));
    ASSERT_TRUE(shape);
    shape->applyArtwork(QStringLiteral("quadrants.png"), std::make_shared<const QImage>(sheet));
    const QImage image = withoutFloor(600);

    // Points inside the faces the camera sees, each with the texture coordinates the mesh gives
    // it: the same weights of a triangle's corners for both, away from the quadrants' borders.
    Matrix world;
    GetNodeGlobalMatrix(world, shape);
    const Matrix &eye = camera().GetGlobalMatrix();
    int checked = 0, quadrantsSeen = 0;
    bool seen[2][2] = {};
    for (const auto &part : shape->mesh()->meshParts()) {
        const std::vector<VertexRecord> &v = part->GetVertices();
        const std::vector<quint32> &index = part->indices();
        for (std::size_t t = 0; t + 2 < index.size(); t += 3) {
            const VertexRecord *corner[3] = {&v[index[t]], &v[index[t + 1]], &v[index[t + 2]]};
            for (const auto &w : {std::array<double, 3>{0.6, 0.2, 0.2},
                                  std::array<double, 3>{0.2, 0.6, 0.2},
                                  std::array<double, 3>{0.2, 0.2, 0.6},
                                  std::array<double, 3>{1. / 3, 1. / 3, 1. / 3}}) {
                Point p{0, 0, 0};
                double u = 0, vv = 0;
                for (int k = 0; k < 3; ++k) {
                    const Point q = worldPoint(world, corner[k]->position);
                    for (int c = 0; c < 3; ++c)
                        p[c] += w[k] * q[c];
                    u += w[k] * corner[k]->texCoord[0];
                    vv += w[k] * corner[k]->texCoord[1];
                }
                const Point n = worldPoint(world, corner[0]->normal);
                const double towardsEye = (eye[12] - p[0]) * (n[0] - world[12])
                                          + (eye[13] - p[1]) * (n[1] - world[13])
                                          + (eye[14] - p[2]) * (n[2] - world[14]);
                if (towardsEye <= 0.0 || std::abs(u - 0.5) < 0.08 || std::abs(vv - 0.5) < 0.08)
                    continue; // a face turned away (a box hides those), or a border
                const int column = u < 0.5 ? 0 : 1, row = vv < 0.5 ? 0 : 1;
                const QRgb shown = image.pixel(pixelOf(camera(), image.size(), p).toPoint());
                EXPECT_LT(chromaDistance(shown, quadrant[row][column].rgb()), 0.06)
                    << "u " << u << ", v " << vv << ": shown " << QColor(shown).name().toStdString()
                    << ", printed " << quadrant[row][column].name().toStdString();
                ++checked;
                quadrantsSeen += seen[row][column] ? 0 : 1;
                seen[row][column] = true;
            }
        }
    }
    // The box prints from its artwork sheet, so each face shows one region of the image; the
    // three faces in view still reach into every quadrant.
    EXPECT_GE(checked, 12) << "three faces show, with points in every quadrant";
    EXPECT_EQ(quadrantsSeen, 4);
}

namespace {

// A 20-unit cube standing on a wide, low box (120 along x, 60 deep, 10 high), lit by Easy
// Lighting from the +x side, seen from the front (-y) and above: the cube's shadow falls on the
// lower box's top towards -x.
class PilePictureTest : public PictureTest
{
protected:
    PilePictureTest()
    {
        run(QStringLiteral(
            "document.root.addShape('generator.Boxes.Box', 'Lower', {width: 120, depth: 60, "
            "height: 10});"
            "var upper = document.root.addShape('generator.Boxes.Box', 'Upper', {width: 20, "
            "depth: 20, height: 20}); upper.position = [0, 0, 10];"
            "tools.easyLighting({hangle: 0, vangle: 50, blur: 0, contrast: 0.8});"
            "var c = document.camera; c.target = [-25, 0, 10]; c.yaw = -90; c.pitch = 40;"
            "c.distance = 200; c.fieldOfView = 40; c.aspectRatio = 1.5;"));
        const Matrix &m = findNode(QStringLiteral("EasyLight"))->GetLocalMatrix();
        m_light = Point{m[12], m[13], m[14]};
        m_ambient = double(m_session.document().GetAmbientIntensity());
        m_intensity = double(
            qobject_cast<ILightNode *>(findNode(QStringLiteral("EasyLight")))->GetIntensity());
    }

    // The share of the light that reaches the lower top at (x, y), from a picture and the
    // surface's own factor (its light in full shadow over the ambient level): the picture shows
    // factor * (ambient + intensity * facing * share).
    double share(const QImage &image, double factor, double x, double y)
    {
        const double light = lightAt(image, pixelOf(camera(), image.size(), Point{x, y, Top}));
        const double d[3] = {m_light[0] - x, m_light[1] - y, m_light[2] - Top};
        const double facing = d[2] / std::sqrt(d[0] * d[0] + d[1] * d[1] + d[2] * d[2]);
        return (light / factor - m_ambient) / (m_intensity * facing);
    }

    static constexpr double Top = 10.0; // the lower box's top
    Point m_light;
    double m_ambient = 0.0;
    double m_intensity = 0.0;
};

} // namespace

TEST_F(PilePictureTest, TheUpperShapeShadowsTheLowerOneWiderWithMoreBlur)
{
    // The cube's top edge at x = -10, z = 30 casts the shadow's far edge on the lower top, along
    // y, through the light at y = 0.
    ASSERT_NEAR(m_light[1], 0.0, 1e-3);
    const double t = (m_light[2] - Top) / (m_light[2] - 30.0);
    const double edgeX = m_light[0] + t * (-10.0 - m_light[0]);
    ASSERT_LT(edgeX, -30.0) << "room for a penumbra inside the shadow";
    ASSERT_GT(edgeX, -48.0) << "and outside it, on the lower top";

    run(QStringLiteral("document.findNode('EasyLight').shadowBlur = 0.1;"));
    QImage image = picture();
    // Deep in the shadow the top gets the ambient light only; beside it that and the light.
    const double deepX = 0.5 * (edgeX - 10.0);
    const double factor
        = lightAt(image, pixelOf(camera(), image.size(), Point{deepX, 0, Top})) / m_ambient;
    EXPECT_NEAR(share(image, factor, edgeX - 8.0, 0.0), 1.0, 0.06) << "lit beside the shadow";
    EXPECT_NEAR(share(image, factor, 30.0, 25.0), 1.0, 0.06)
        << "lit on the light's side, away from the gloss";
    EXPECT_NEAR(share(image, factor, -55.0, 22.0), 1.0, 0.06) << "lit far off: no self-shadow";
    EXPECT_NEAR(share(image, factor, -11.0, 0.0), 0.0, 0.06) << "shadowed up to the contact";
    EXPECT_NEAR(share(image, factor, edgeX + 2.0, -6.0), 0.0, 0.06) << "shadowed near the edge";

    // Across the far edge, at y within 2 of the middle: the shadow's sides at about y = +-10 stay
    // out of the widest blur's reach. As on the floor, a disk of radius r slid across a straight
    // edge lets through a quarter to three quarters of the light over 0.808 r.
    auto edgeWidth = [&](const QImage &shot) {
        std::vector<double> shares;
        for (double s = -9.0; s <= 9.0; s += 0.25) {
            double sum = 0.0;
            for (double y = -2.0; y <= 2.0; y += 2.0)
                sum += share(shot, factor, edgeX + s, y);
            shares.push_back(sum / 3.0);
        }
        EXPECT_NEAR(shares.front(), 1.0, 0.08) << "the line starts in the light";
        EXPECT_NEAR(shares.back(), 0.0, 0.05) << "and ends in the shadow";
        auto crossing = [&](double level) {
            for (std::size_t i = 1; i < shares.size(); ++i) {
                if (shares[i] <= level)
                    return -9.0 + 0.25 * double(i);
            }
            return double(NAN);
        };
        return crossing(0.25) - crossing(0.75);
    };
    EXPECT_LT(edgeWidth(image), 1.5) << "a sharp edge";
    for (const double blur : {4.0, 8.0}) {
        SCOPED_TRACE(blur);
        run(QStringLiteral("document.findNode('EasyLight').shadowBlur = %1;").arg(blur));
        EXPECT_NEAR(edgeWidth(picture()), 0.808 * blur, 0.15 * 0.808 * blur);
    }
}
