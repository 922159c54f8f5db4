// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/desktop/scenepick.h"

#include "geometry/geometry.h"
#include "hostapp/core/document/document.h"
#include "hostapp/desktop/viewray.h"
#include "hostapp/render/drawlist.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vantrel::host {

namespace {

// The ray parameter where it enters the box, or infinity when it misses it (slab test).
float enterBox(const TBBox<float> &box, const Vector3 &origin, const Vector3 &direction)
{
    const float o[3] = {origin.x, origin.y, origin.z};
    const float d[3] = {direction.x, direction.y, direction.z};
    float enter = 0.f, leave = std::numeric_limits<float>::infinity();
    for (int axis = 0; axis < 3; ++axis) {
        if (d[axis] == 0.f) {
            if (o[axis] < box.min[axis] || o[axis] > box.max[axis])
                return std::numeric_limits<float>::infinity();
            continue;
        }
        float near = (box.min[axis] - o[axis]) / d[axis];
        float far = (box.max[axis] - o[axis]) / d[axis];
        if (near > far)
            std::swap(near, far);
        enter = std::max(enter, near);
        leave = std::min(leave, far);
        if (enter > leave)
            return std::numeric_limits<float>::infinity();
    }
    return enter;
}

// Möller and Trumbore: the ray parameter of the hit, or infinity.
float hitTriangle(const Vector3 &origin,
                  const Vector3 &direction,
                  const Vector3 &a,
                  const Vector3 &b,
                  const Vector3 &c)
{
    const float none = std::numeric_limits<float>::infinity();
    const Vector3 ab = SubtractVectors(b, a), ac = SubtractVectors(c, a);
    const Vector3 p = CrossProduct(direction, ac);
    const float determinant = DotProduct(ab, p);
    if (std::abs(determinant) < 1e-12f)
        return none; // the ray runs along the triangle's plane
    const Vector3 toOrigin = SubtractVectors(origin, a);
    const float u = DotProduct(toOrigin, p) / determinant;
    if (u < 0.f || u > 1.f)
        return none;
    const Vector3 q = CrossProduct(toOrigin, ab);
    const float v = DotProduct(direction, q) / determinant;
    if (v < 0.f || u + v > 1.f)
        return none;
    const float t = DotProduct(ac, q) / determinant;
    return t > 0.f ? t : none;
}

} // namespace

MeshNode *pickShape(const render::DrawList &list,
                    const Vector3 &origin,
                    const Vector3 &direction,
                    float *hitDistance)
{
    float nearest = std::numeric_limits<float>::infinity();
    MeshNode *picked = nullptr;
    std::vector<Vector3> corners;
    for (const render::DrawItem &item : list.items) {
        const host::Mesh &mesh = *item.mesh;
        TBBox<float> box;
        render::extendByMesh(box, mesh, item.world);
        if (IsBoxEmpty(box) || !(enterBox(box, origin, direction) < nearest))
            continue;
        for (const std::unique_ptr<MeshPart> &part : mesh.meshParts()) {
            const std::vector<VertexRecord> &vertices = part->GetVertices();
            corners.resize(vertices.size());
            for (std::size_t i = 0; i < vertices.size(); ++i) {
                corners[i] = Vector3(
                    vertices[i].position[0], vertices[i].position[1], vertices[i].position[2]);
                TransformPoint(corners[i], item.world);
            }
            const std::vector<quint32> &triangles = part->indices();
            for (std::size_t t = 0; t + 2 < triangles.size(); t += 3) {
                if (triangles[t] >= corners.size() || triangles[t + 1] >= corners.size()
                    || triangles[t + 2] >= corners.size())
                    continue; // the drawing leaves such a triangle out too
                const float hit = hitTriangle(origin,
                                              direction,
                                              corners[triangles[t]],
                                              corners[triangles[t + 1]],
                                              corners[triangles[t + 2]]);
                if (hit < nearest) {
                    nearest = hit;
                    picked = item.node;
                }
            }
        }
    }
    if (hitDistance)
        *hitDistance = nearest;
    return picked;
}

MeshNode *
pickAt(const Document &document, const QSize &viewSize, const QPointF &position, Vector3 *hit)
{
    if (viewSize.isEmpty())
        return nullptr;
    const render::DrawList list = render::collectDrawList(document);
    const ViewRay ray = viewRay(*document.camera(), list.bounds, viewSize, position);
    float distance = 0.f;
    MeshNode *picked = pickShape(list, ray.origin, ray.direction, &distance);
    if (picked && hit)
        *hit = ray.at(distance);
    return picked;
}

} // namespace vantrel::host
