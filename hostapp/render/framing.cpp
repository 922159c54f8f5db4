// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/render/framing.h"

#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "host/icamera.h"
#include "hostapp/render/drawlist.h"

#include <algorithm>
#include <cmath>

namespace vantrel::render {

namespace {

// A world matrix in ICamera's layout (rows: forward, left, up, position) for an eye looking
// along forward with the image's top towards +z, or towards +y when looking straight up or down.
Matrix lookAlong(const Vector3 &eye, const Vector3 &forward)
{
    const Vector3 f = NormaliseVector(forward, Vector3(0, 0, -1));
    const Vector3 worldUp = std::abs(f.z) > 0.999f ? Vector3(0, 1, 0) : Vector3(0, 0, 1);
    const Vector3 left = NormaliseVector(CrossProduct(worldUp, f), Vector3(0, 0, -1));
    const Vector3 up = CrossProduct(f, left);
    const Vector3 rows[4] = {f, left, up, eye};
    Matrix global;
    for (int row = 0; row < 4; ++row) {
        global[4 * row] = rows[row].x;
        global[4 * row + 1] = rows[row].y;
        global[4 * row + 2] = rows[row].z;
    }
    return global;
}

} // namespace

QSize pictureSize(int width, float aspectRatio)
{
    const float ratio = aspectRatio > 0.f ? aspectRatio : 1.f;
    const long height = std::lround(double(width) / double(ratio));
    return QSize(width, int(std::clamp<long>(height, 1, MaximumPictureSide)));
}

DepthRange depthRange(const TBBox<float> &box, const Matrix &view)
{
    if (IsBoxEmpty(box))
        return DepthRange{0.1f, 1000.f};
    float nearest = INFINITY, farthest = -INFINITY;
    for (int corner = 0; corner < 8; ++corner) {
        Vector3 p((corner & 1) ? box.max[0] : box.min[0],
                  (corner & 2) ? box.max[1] : box.min[1],
                  (corner & 4) ? box.max[2] : box.min[2]);
        TransformPoint(p, view);
        nearest = std::min(nearest, p.z);
        farthest = std::max(farthest, p.z);
    }
    if (!(farthest > 0.f))
        return DepthRange{0.1f, 1000.f}; // everything is behind the camera
    const float farPlane = farthest * 1.05f + 0.01f;
    return DepthRange{std::max(nearest * 0.95f, farPlane * 1e-4f), farPlane};
}

CameraView cameraView(const ICamera &camera, const TBBox<float> &box, float pictureAspect)
{
    CameraView result;
    CalculateViewMatrix(result.view, camera.GetGlobalMatrix());
    const DepthRange depth = depthRange(box, result.view);
    CalculateProjectionMatrix(result.projection,
                              camera.GetFieldOfView(),
                              camera.GetAspectRatio(),
                              pictureAspect,
                              depth.nearPlane,
                              depth.farPlane);
    return result;
}

ShadowFrame shadowFrame(const DrawLight &light, const TBBox<float> &casters)
{
    ShadowFrame frame;
    Vector3 centre(0, 0, 0);
    float radius = 1.f;
    if (!IsBoxEmpty(casters)) {
        centre = Vector3((casters.min[0] + casters.max[0]) * 0.5f,
                         (casters.min[1] + casters.max[1]) * 0.5f,
                         (casters.min[2] + casters.max[2]) * 0.5f);
        const float dx = casters.max[0] - casters.min[0], dy = casters.max[1] - casters.min[1],
                    dz = casters.max[2] - casters.min[2];
        radius = std::max(0.5f * std::sqrt(dx * dx + dy * dy + dz * dz), 0.01f);
    }
    if (light.directional) {
        // From outside the sphere on the light's side, looking along the light.
        const Vector3 &towardsLight = light.position;
        const Vector3 eye(centre.x + 2.f * radius * towardsLight.x,
                          centre.y + 2.f * radius * towardsLight.y,
                          centre.z + 2.f * radius * towardsLight.z);
        CalculateViewMatrix(
            frame.view, lookAlong(eye, Vector3(-towardsLight.x, -towardsLight.y, -towardsLight.z)));
        const float nearPlane = 0.5f * radius, farPlane = 3.5f * radius;
        for (float &e : frame.projection.m)
            e = 0.f;
        frame.projection[0] = 1.f / radius;
        frame.projection[5] = 1.f / radius;
        frame.projection[10] = 2.f / (farPlane - nearPlane);
        frame.projection[14] = -(farPlane + nearPlane) / (farPlane - nearPlane);
        frame.projection[15] = 1.f;
        frame.depthScale = farPlane;
        return frame;
    }
    const Vector3 toCentre(
        centre.x - light.position.x, centre.y - light.position.y, centre.z - light.position.z);
    const float distance
        = std::sqrt(toCentre.x * toCentre.x + toCentre.y * toCentre.y + toCentre.z * toCentre.z);
    float fieldOfView, nearPlane, farPlane;
    Vector3 forward;
    if (distance > radius * 1.02f) {
        forward = toCentre;
        // The cone that touches the sphere, and a little more so that its rim is not cut.
        fieldOfView
            = std::min(2.f * std::asin(radius / distance) * RadiansToDegrees * 1.02f, 170.f);
        nearPlane = std::max(distance - radius, distance * 1e-3f) * 0.98f;
        farPlane = (distance + radius) * 1.02f;
    } else {
        forward = Vector3(0, 0, -1);
        fieldOfView = 160.f;
        nearPlane = radius * 1e-3f;
        farPlane = std::max(light.position.z, 0.f) + distance + 2.f * radius;
    }
    CalculateViewMatrix(frame.view, lookAlong(light.position, forward));
    CalculateProjectionMatrix(frame.projection, fieldOfView, 1.f, 1.f, nearPlane, farPlane);
    frame.depthScale = farPlane;
    return frame;
}

} // namespace vantrel::render
