// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// The vectors of a vertex record: reading and writing them as Vector3, the one normalisation
// every normal and tangent goes through, and the tangent frames derived from the texture
// coordinates, for built shapes and imported models alike.

#include "geometry/geometry.h"
#include "host/hostexport.h"
#include "host/types.h"

#include <QtGlobal>

#include <vector>

namespace vantrel::host {

// A vertex record keeps its vectors as plain float arrays.
inline Vector3 vertexVector(const float *v)
{
    return {v[0], v[1], v[2]};
}

inline void setVertexVector(float *out, const Vector3 &v)
{
    out[0] = v.x;
    out[1] = v.y;
    out[2] = v.z;
}

// v at unit length, or fallback when v is too short to have a direction.
inline Vector3 unitVertexVector(const Vector3 &v, const Vector3 &fallback)
{
    constexpr float Shortest = 1e-20f;
    return NormaliseVectorByReciprocal(v, fallback, Shortest);
}

// Fills the tangent frame of every vertex from the normals and texture coordinates of the
// triangles around it: the tangent points where u grows, the bitangent where v grows. Vertices
// without usable texture directions get some frame perpendicular to their normal.
VANTREL_HOST_EXPORT void computeTangentFrames(std::vector<VertexRecord> &vertices,
                                              const std::vector<quint32> &indices);

// The frame of one vertex from its unit normal and the texture directions summed over its
// triangles; zero sums (a model without texture coordinates) give some frame perpendicular to
// the normal, as computeTangentFrames gives such a vertex.
VANTREL_HOST_EXPORT void
completeTangentFrame(VertexRecord &v, const Vector3 &tangentSum, const Vector3 &bitangentSum);

} // namespace vantrel::host
