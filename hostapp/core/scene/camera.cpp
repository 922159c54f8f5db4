// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/camera.h"

#include "geometry/geometry.h"

#include <QtGlobal>

#include <cmath>

namespace vantrel::host {

Camera::Camera()
{
    reset();
}

void Camera::reset()
{
    m_target = Vector3(0.f, 0.f, 15.f);
    m_distance = 120.f;
    m_yaw = -60.f;
    m_pitch = 20.f;
    m_fieldOfView = 40.f;
    m_aspectRatio = 4.f / 3.f;
    update();
    notify();
}

void Camera::SetTarget(const Vector3 &target)
{
    // Like every setter here, a value that is not finite leaves the camera as it is.
    if (!std::isfinite(target.x) || !std::isfinite(target.y) || !std::isfinite(target.z))
        return;
    m_target = target;
    update();
    notify();
}

void Camera::SetDistance(float distance)
{
    if (std::isnan(distance))
        return;
    m_distance = qBound(MinimumDistance, distance, MaximumDistance);
    update();
    notify();
}

void Camera::SetAspectRatio(float ratio)
{
    // A frame needs a width and a height; beyond 1:20 nothing sensible is framed.
    if (std::isnan(ratio))
        return;
    m_aspectRatio = qBound(0.05f, ratio, 20.f);
    notify();
}

void Camera::setYaw(float degrees)
{
    if (!std::isfinite(degrees)) // the remainder of an infinity is NaN
        return;
    m_yaw = std::remainder(degrees, 360.f);
    update();
    notify();
}

void Camera::setPitch(float degrees)
{
    if (std::isnan(degrees))
        return;
    m_pitch = qBound(-MaximumPitch, degrees, MaximumPitch);
    update();
    notify();
}

void Camera::setFieldOfView(float degrees)
{
    if (std::isnan(degrees))
        return;
    m_fieldOfView = qBound(1.f, degrees, 170.f);
    notify();
}

Vector3 Camera::position() const
{
    return Vector3(m_global[12], m_global[13], m_global[14]);
}

void Camera::notify() const
{
    if (m_changeListener)
        m_changeListener();
}

void Camera::update()
{
    const float yaw = m_yaw * DegreesToRadians;
    const float pitch = m_pitch * DegreesToRadians;
    const float cy = cosf(yaw), sy = sinf(yaw), cp = cosf(pitch), sp = sinf(pitch);
    // The camera looks from its place towards the target: forward is minus the offset direction.
    const Vector3 forward(-cp * cy, -cp * sy, -sp);
    const Vector3 up(-sp * cy, -sp * sy, cp);
    // left = up x forward: with the image's top up, it points to the image's left.
    const Vector3 left(up.y * forward.z - up.z * forward.y,
                       up.z * forward.x - up.x * forward.z,
                       up.x * forward.y - up.y * forward.x);
    const Vector3 rows[4] = {forward,
                             left,
                             up,
                             Vector3(m_target.x - m_distance * forward.x,
                                     m_target.y - m_distance * forward.y,
                                     m_target.z - m_distance * forward.z)};
    for (int row = 0; row < 4; ++row) {
        m_global[4 * row] = rows[row].x;
        m_global[4 * row + 1] = rows[row].y;
        m_global[4 * row + 2] = rows[row].z;
        m_global[4 * row + 3] = row == 3 ? 1.f : 0.f;
    }
}

} // namespace vantrel::host
