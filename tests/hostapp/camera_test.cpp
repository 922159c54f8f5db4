// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "hostapp/core/scene/camera.h"
#include "tests/support/testsupport.h"

#include <gtest/gtest.h>

#include <cmath>

using vantrel::host::Camera;
using vantrel::test::Near;

namespace {

struct Projected
{
    float x, y;
};

Projected project(const Camera &camera, const Vector3 &point, float viewportAspect)
{
    Matrix view, projection, viewProjection;
    CalculateViewMatrix(view, camera.GetGlobalMatrix());
    CalculateProjectionMatrix(
        projection, camera.GetFieldOfView(), camera.GetAspectRatio(), viewportAspect, 0.1f, 1000.f);
    MultiplyMatrices(viewProjection, view, projection);
    Vector4 h(point.x, point.y, point.z, 1.f);
    TransformVector4(h, viewProjection);
    return {h.x / h.w, h.y / h.w};
}

Vector3 row(const Matrix &m, int r)
{
    return {m[4 * r], m[4 * r + 1], m[4 * r + 2]};
}

float dot(const Vector3 &a, const Vector3 &b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

// A point at the given depth in front of the camera, offset by (right, up) in world units.
Vector3 inFront(const Camera &camera, float depth, float right, float up)
{
    const Matrix &m = camera.GetGlobalMatrix();
    const Vector3 eye = row(m, 3), forward = row(m, 0), left = row(m, 1), top = row(m, 2);
    return {eye.x + depth * forward.x - right * left.x + up * top.x,
            eye.y + depth * forward.y - right * left.y + up * top.y,
            eye.z + depth * forward.z - right * left.z + up * top.z};
}

} // namespace

TEST(CameraMatrix, RowsAreAnOrthonormalFrameAroundTheTarget)
{
    Camera camera;
    camera.SetTarget({3, -4, 10});
    camera.SetDistance(50);
    camera.setYaw(-60);
    camera.setPitch(25);
    const Matrix &m = camera.GetGlobalMatrix();
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(dot(row(m, i), row(m, i)), 1.f, 1e-5f) << "row " << i << " is a unit vector";
        for (int j = i + 1; j < 3; ++j)
            EXPECT_NEAR(dot(row(m, i), row(m, j)), 0.f, 1e-5f) << "rows " << i << ", " << j;
    }
    const Vector3 forward = row(m, 0);
    EXPECT_TRUE(Near(row(m, 3), {3 - 50 * forward.x, -4 - 50 * forward.y, 10 - 50 * forward.z}))
        << "the camera stands at target - distance * viewing direction";
    // Yaw -60, pitch 25: seen from the front right, above.
    const float p = 25 * DegreesToRadians, y = -60 * DegreesToRadians;
    EXPECT_TRUE(Near(forward, {-cosf(p) * cosf(y), -cosf(p) * sinf(y), -sinf(p)}));
    EXPECT_GT(row(m, 2).z, 0.f) << "the image's top points upwards";
}

TEST(CameraMatrix, ImageLeftAndTopMapToNegativeXAndPositiveY)
{
    Camera camera;
    const Vector3 target = camera.GetTarget();
    const Matrix &m = camera.GetGlobalMatrix();
    const Vector3 left = row(m, 1), top = row(m, 2);
    const Projected l
        = project(camera, {target.x + left.x, target.y + left.y, target.z + left.z}, 4.f / 3);
    const Projected t
        = project(camera, {target.x + top.x, target.y + top.y, target.z + top.z}, 4.f / 3);
    const Projected c = project(camera, target, 4.f / 3);
    EXPECT_NEAR(c.x, 0.f, 1e-5f);
    EXPECT_NEAR(c.y, 0.f, 1e-5f);
    EXPECT_LT(l.x, 0.f) << "row 1 points to the image's left";
    EXPECT_NEAR(l.y, 0.f, 1e-5f);
    EXPECT_GT(t.y, 0.f) << "row 2 points to the image's top";
}

TEST(Projection, ScalesFollowFieldOfViewAndFrame)
{
    Matrix p;
    CalculateProjectionMatrix(p, 60.f, 2.f, 2.f, 0.1f, 1000.f); // frame twice as wide as high
    EXPECT_NEAR(p[5], 1.7320508f, 1e-5f) << "vertical scale = 1 / tan(30 degrees)";
    EXPECT_NEAR(p[0], 0.8660254f, 1e-5f) << "horizontal scale = vertical scale / 2";

    CalculateProjectionMatrix(p, 60.f, 2.f, 3.f, 0.1f, 1000.f); // a wider viewport
    EXPECT_NEAR(p[5], 1.7320508f, 1e-5f) << "the frame's height still fills the viewport";
    EXPECT_NEAR(p[0], 1.7320508f / 3, 1e-5f);

    CalculateProjectionMatrix(p, 60.f, 2.f, 1.f, 0.1f, 1000.f); // a narrower viewport
    EXPECT_NEAR(p[0], 0.8660254f, 1e-5f) << "the frame's width fills the viewport";
    EXPECT_NEAR(p[5], 0.8660254f, 1e-5f);
}

// Points just inside the frame's edges project inside -1..1 after the division by w, points just
// outside do not. The frame's half extents at a depth follow from the field of view and the
// aspect ratio alone.
TEST(Projection, PointsInsideTheFrameProjectInsideAndOthersOutside)
{
    for (float aspect : {0.5f, 4.f / 3, 2.39f}) {
        Camera camera;
        camera.SetTarget({10, 20, 5});
        camera.SetDistance(80);
        camera.setYaw(35);
        camera.setPitch(-15);
        camera.SetAspectRatio(aspect);
        for (float depth : {1.f, 80.f, 500.f}) {
            const float halfHeight
                = depth * std::tan(camera.GetFieldOfView() * 0.5f * DegreesToRadians);
            const float halfWidth = halfHeight * aspect;
            for (float sx : {-1.f, 1.f}) {
                for (float sy : {-1.f, 1.f}) {
                    const Projected in = project(
                        camera,
                        inFront(camera, depth, 0.99f * sx * halfWidth, 0.99f * sy * halfHeight),
                        aspect);
                    EXPECT_LE(std::abs(in.x), 1.f) << "aspect " << aspect << " depth " << depth;
                    EXPECT_LE(std::abs(in.y), 1.f) << "aspect " << aspect << " depth " << depth;
                    EXPECT_NEAR(in.x, 0.99f * sx, 1e-3f);
                    EXPECT_NEAR(in.y, 0.99f * sy, 1e-3f);
                    const Projected wide = project(
                        camera, inFront(camera, depth, 1.01f * sx * halfWidth, 0), aspect);
                    EXPECT_GT(std::abs(wide.x), 1.f) << "beyond the side edge";
                    const Projected tall = project(
                        camera, inFront(camera, depth, 0, 1.01f * sy * halfHeight), aspect);
                    EXPECT_GT(std::abs(tall.y), 1.f) << "beyond the top or bottom edge";
                }
            }
        }
    }
}

TEST(CameraDistance, IsKeptWithinLimitsSoThatDoublingAndHalvingEnd)
{
    Camera camera;
    camera.SetDistance(0.f);
    EXPECT_EQ(camera.GetDistance(), Camera::MinimumDistance);
    camera.SetDistance(-5.f);
    EXPECT_EQ(camera.GetDistance(), Camera::MinimumDistance);
    camera.SetDistance(1e30f);
    EXPECT_EQ(camera.GetDistance(), Camera::MaximumDistance);
    camera.SetDistance(NAN);
    EXPECT_EQ(camera.GetDistance(), Camera::MaximumDistance) << "NaN is not taken";

    // A search that doubles until the camera refuses the value ends within a bounded number of
    // steps, from the smallest distance upwards.
    camera.SetDistance(0.f);
    int steps = 0;
    for (;;) {
        const float wanted = camera.GetDistance() * 2;
        camera.SetDistance(wanted);
        ++steps;
        if (camera.GetDistance() < wanted)
            break;
        ASSERT_LT(steps, 64);
    }
    EXPECT_EQ(camera.GetDistance(), Camera::MaximumDistance);
    EXPECT_TRUE(Near(row(camera.GetGlobalMatrix(), 3), inFront(camera, 0, 0, 0)))
        << "the matrix follows every setter";
}
