// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// What the Fit To View and vertex bounds tests share: the plain scalar passes over the vertices
// that the tool's blocked passes must equal, and the camera's matrices worked out here.
#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "host/icamera.h"
#include "tools/fittoview/vertexbounds.h"

#include <cfloat>
#include <vector>

namespace fittoviewtest {

using namespace vantrel::host;

// The plain scalar pass, one vertex after the other, that the blocked passes must equal.
inline ProjectedBounds sequentialBounds(const std::vector<Vector3> &vertices,
                                        const Matrix &viewProjection)
{
    ProjectedBounds b{FLT_MAX, FLT_MAX, -FLT_MAX, -FLT_MAX};
    for (const Vector3 &v : vertices) {
        Vector4 h{v.x, v.y, v.z, 1.f};
        TransformVector4(h, viewProjection);
        const float r = 1.f / h.w, px = h.x * r, py = h.y * r;
        b.minX = px < b.minX ? px : b.minX;
        b.maxX = px > b.maxX ? px : b.maxX;
        b.minY = py < b.minY ? py : b.minY;
        b.maxY = py > b.maxY ? py : b.maxY;
    }
    return b;
}

inline bool sequentialInside(const std::vector<Vector3> &vertices, const Matrix &viewProjection)
{
    for (const Vector3 &v : vertices) {
        Vector4 h{v.x, v.y, v.z, 1.f};
        TransformVector4(h, viewProjection);
        const float r = 1.f / h.w, px = h.x * r, py = h.y * r;
        if (px < -1.f || px > 1.f || py < -1.f || py > 1.f)
            return false;
    }
    return true;
}

struct View
{
    Matrix global, projection, viewProjection;
};

inline View viewOf(ICamera *camera)
{
    View v;
    v.global = camera->GetGlobalMatrix();
    CalculateProjectionMatrix(v.projection,
                              camera->GetFieldOfView(),
                              camera->GetAspectRatio(),
                              camera->GetAspectRatio(),
                              0.1f,
                              1000.f);
    Matrix view;
    CalculateViewMatrix(view, v.global);
    MultiplyMatrices(v.viewProjection, view, v.projection);
    return v;
}

inline bool sameBounds(const ProjectedBounds &a, const ProjectedBounds &b)
{
    return a.minX == b.minX && a.minY == b.minY && a.maxX == b.maxX && a.maxY == b.maxY;
}

} // namespace fittoviewtest
