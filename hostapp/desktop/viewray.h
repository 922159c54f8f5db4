// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/types.h"

#include <QPointF>
#include <QSize>

class ICamera;

namespace vantrel::host {

// The line of sight through one pixel of a view: from the camera's eye along direction (world
// space, not of unit length). Picking a shape, grabbing one and sliding it all follow this same
// line, so that what the user points at is what they get.
struct ViewRay
{
    Vector3 origin;
    Vector3 direction;

    Vector3 at(float t) const
    {
        return Vector3(
            origin.x + t * direction.x, origin.y + t * direction.y, origin.z + t * direction.z);
    }
};

// A widget position as normalised device coordinates, at the pixel's centre (y up).
QPointF toDevice(const QPointF &position, const QSize &size);

// The world point that shows at device coordinates (x, y) and device depth z: the inverse of
// world * view * projection followed by the division by w.
Vector3 unproject(const Matrix &inverseViewProjection, const QPointF &device, float z);

// The inverse of view * projection.
Matrix inverseViewProjection(const Matrix &view, const Matrix &projection);

// The ray through a widget position of a view of that size showing the camera's frame fitted
// inside it, as the view draws it. The box only sets the depth range, which changes how depth is
// stored but not where a point shows: pass the scene's box, or one round the camera's target.
ViewRay viewRay(const ICamera &camera,
                const TBBox<float> &box,
                const QSize &widgetSize,
                const QPointF &position);

// Where a world point shows in a widget of that size (pixel units, y down), or false when it lies
// behind the eye's plane and shows nowhere.
bool projectToWidget(const ICamera &camera,
                     const QSize &widgetSize,
                     const Vector3 &point,
                     QPointF *position);

} // namespace vantrel::host
