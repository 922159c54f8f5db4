// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Shadows in pictures, judged by properties that hold on every OpenGL driver: which side of a
// shape its shadow falls on and how wide the shadow's edge is. These tests need an X display
// (ctest runs under xvfb-run in ./setup.sh test).
#include "host/ilightnode.h"
#include "host/inode.h"
#include "tests/render/picturetest.h"

#include <gtest/gtest.h>

#include <QImage>

#include <cmath>
#include <vector>

using namespace vantrel::host;
using vantrel::test::lightAt;
using vantrel::test::PictureTest;
using vantrel::test::pixelOf;
using vantrel::test::Point;

namespace {

// A shadow-casting block standing on the floor, 20 wide (x), 60 deep (y) and 40 high, seen from
// the front (-y) and above, so that the floor on both sides of it shows.
class BlockPictureTest : public PictureTest
{
protected:
    BlockPictureTest()
    {
        run(QStringLiteral(
            "document.root.addShape('generator.Boxes.Box', 'Block', {width: 20, depth: 60, "
            "height: 40});"
            "var c = document.camera; c.target = [0, 0, 10]; c.yaw = -90; c.pitch = 35;"
            "c.distance = 260; c.fieldOfView = 40; c.aspectRatio = 1.5;"));
    }

    // The light on the floor at (x, y), from the given picture.
    double floorLight(const QImage &image, double x, double y)
    {
        return lightAt(image, pixelOf(camera(), image.size(), Point{x, y, 0.0}));
    }

    Point lightPosition()
    {
        const Matrix &m = findNode(QStringLiteral("EasyLight"))->GetLocalMatrix();
        return Point{m[12], m[13], m[14]};
    }

    // How squarely a point light shines on the floor at (x, y): the cosine between the floor's
    // normal and the direction to the light.
    static double facing(const Point &light, double x, double y)
    {
        return light[2]
               / std::sqrt((light[0] - x) * (light[0] - x) + (light[1] - y) * (light[1] - y)
                           + light[2] * light[2]);
    }

    double ambient() { return double(m_session.document().GetAmbientIntensity()); }
    double intensity()
    {
        return double(
            qobject_cast<ILightNode *>(findNode(QStringLiteral("EasyLight")))->GetIntensity());
    }
};

} // namespace

TEST_F(BlockPictureTest, TheShadowFallsAwayFromEasyLight)
{
    for (const int hangle : {0, 180}) {
        SCOPED_TRACE(hangle);
        run(QStringLiteral("tools.easyLighting({hangle: %1, vangle: 35, blur: 0, contrast: 0.8});")
                .arg(hangle));
        const QImage image = picture();
        // Easy Lighting's angle 0 puts the light on the +x side, 180 on the -x side.
        const double side = hangle == 0 ? 30.0 : -30.0;
        const double lit = floorLight(image, side, 0.0), shadowed = floorLight(image, -side, 0.0);
        // The floor in the shadow gets the ambient light only, the floor beside the block that
        // and the light times the cosine of its angle of incidence.
        const double expected
            = (ambient() + intensity() * facing(lightPosition(), side, 0.0)) / ambient();
        EXPECT_NEAR(lit / shadowed, expected, 0.05 * expected)
            << "lit " << lit << ", shadowed " << shadowed;
    }
}

TEST_F(BlockPictureTest, TheShadowEdgeWidensWithTheBlur)
{
    run(QStringLiteral("tools.easyLighting({hangle: 0, vangle: 60, contrast: 0.8});"));
    const Point light = lightPosition();
    // The block's top edge at y = 30 runs along x, and so does its shadow on the floor: the light
    // stands at y = 0 and casts the edge outwards by the factor t. The line across it is taken
    // half-way along the shadow of the top face, away from its other edges.
    ASSERT_NEAR(light[1], 0.0, 1e-3);
    const double t = light[2] / (light[2] - 40.0);
    const double edgeY = 30.0 * t;
    const double x0 = light[0] + t * (0.0 - light[0]);

    // The share of the light that gets through at each point: the picture shows
    // albedo * (ambient + intensity * facing * share), and deep in the shadow albedo * ambient.
    auto edgeWidth = [&](const QImage &image) {
        std::vector<double> shares;
        const double albedo = floorLight(image, x0, edgeY - 22.0) / ambient();
        for (double s = -22.0; s <= 22.0; s += 0.25) {
            double sum = 0.0;
            for (double a = -4.0; a <= 4.0; a += 2.0)
                sum += floorLight(image, x0 + a, edgeY + s);
            shares.push_back((sum / 5.0 / albedo - ambient())
                             / (intensity() * facing(light, x0, edgeY + s)));
        }
        EXPECT_NEAR(shares.front(), 0.0, 0.05) << "the line starts in the shadow";
        EXPECT_NEAR(shares.back(), 1.0, 0.1) << "and ends in the light";
        auto crossing = [&](double share) {
            for (std::size_t i = 1; i < shares.size(); ++i) {
                if (shares[i] >= share)
                    return -22.0 + 0.25 * double(i);
            }
            return double(NAN);
        };
        return crossing(0.75) - crossing(0.25);
    };
    // A disk of radius r slid across a straight edge: the share of it beyond the edge at distance
    // d from its centre is (acos(d / r) - (d / r) sqrt(1 - (d / r)^2)) / pi, a quarter at
    // d = 0.4040 r, so the light rises from a quarter to three quarters over 0.808 r.
    for (const double blur : {0.1, 8.0, 16.0}) {
        SCOPED_TRACE(blur);
        run(QStringLiteral("document.findNode('EasyLight').shadowBlur = %1;").arg(blur));
        const double width = edgeWidth(picture());
        if (blur < 1.0)
            EXPECT_LT(width, 1.5) << "a sharp edge";
        else
            EXPECT_NEAR(width, 0.808 * blur, 0.12 * 0.808 * blur);
    }
}
