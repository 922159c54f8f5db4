// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/vertexframes.h"

#include <cmath>

namespace vantrel::host {

void computeTangentFrames(std::vector<VertexRecord> &vertices, const std::vector<quint32> &indices)
{
    // Per triangle, the tangent is the direction in which u grows and the bitangent the one in
    // which v grows; each vertex sums them over its triangles, then keeps the tangent's part
    // that is perpendicular to its normal.
    std::vector<Vector3> tangents(vertices.size()), bitangents(vertices.size());
    const auto position = [&vertices](quint32 i) { return vertexVector(vertices[i].position); };
    for (std::size_t t = 0; t + 2 < indices.size(); t += 3) {
        const quint32 i0 = indices[t], i1 = indices[t + 1], i2 = indices[t + 2];
        const Vector3 e1 = SubtractVectors(position(i1), position(i0));
        const Vector3 e2 = SubtractVectors(position(i2), position(i0));
        const float *uv0 = vertices[i0].texCoord, *uv1 = vertices[i1].texCoord,
                    *uv2 = vertices[i2].texCoord;
        const float du1 = uv1[0] - uv0[0], dv1 = uv1[1] - uv0[1];
        const float du2 = uv2[0] - uv0[0], dv2 = uv2[1] - uv0[1];
        const float determinant = du1 * dv2 - du2 * dv1;
        if (std::abs(determinant) < 1e-12f)
            continue;
        const Vector3 zero;
        const Vector3 tangent
            = unitVertexVector(SubtractVectors(ScaleVector(e1, dv2), ScaleVector(e2, dv1)), zero);
        const Vector3 bitangent
            = unitVertexVector(SubtractVectors(ScaleVector(e2, du1), ScaleVector(e1, du2)), zero);
        const float sign = determinant > 0.f ? 1.f : -1.f;
        for (const quint32 i : {i0, i1, i2}) {
            tangents[i] = AddVectors(tangents[i], ScaleVector(tangent, sign));
            bitangents[i] = AddVectors(bitangents[i], ScaleVector(bitangent, sign));
        }
    }
    for (std::size_t i = 0; i < vertices.size(); ++i)
        completeTangentFrame(vertices[i], tangents[i], bitangents[i]);
}

void completeTangentFrame(VertexRecord &v, const Vector3 &tangentSum, const Vector3 &bitangentSum)
{
    const Vector3 normal = vertexVector(v.normal);
    Vector3 tangent
        = SubtractVectors(tangentSum, ScaleVector(normal, DotProduct(normal, tangentSum)));
    // A vertex without usable texture directions still needs a valid frame.
    const Vector3 axis = std::abs(normal.x) < 0.9f ? Vector3(1, 0, 0) : Vector3(0, 1, 0);
    tangent
        = unitVertexVector(tangent, unitVertexVector(CrossProduct(axis, normal), Vector3(1, 0, 0)));
    const Vector3 side = CrossProduct(normal, tangent);
    // Faces are printed as seen from outside, a left-handed frame; so is a vertex without one.
    const float handedness = DotProduct(side, bitangentSum) > 0.f ? 1.f : -1.f;
    setVertexVector(v.tangent, tangent);
    v.tangent[3] = handedness;
    setVertexVector(v.bitangent, ScaleVector(side, handedness));
}

} // namespace vantrel::host
