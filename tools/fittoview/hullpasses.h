// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// The hull filter's passes over the whole vertex list, eight vertices at a time on both threads:
// the scan for the extremes, the classification against the polygons, or both in one reading.
#include "host/types.h"
#include "tools/fittoview/vertexsource.h"

#include <cstddef>
#include <vector>

namespace fittoview {

// The seven plane coordinates whose largest and smallest values the first pass looks for:
// depth, right, depth +- right (the (depth, right) plane at 45 degrees), up, depth +- up.
// Slot 2k holds the largest value of quantity k, slot 2k + 1 the smallest.
constexpr int Quantities = 7;
constexpr int Slots = 2 * Quantities;
constexpr int Right = 1, Up = 4;

// The camera axes in float, for the passes' arithmetic.
struct FloatAxes
{
    float m[9]; // depth, right, up
};

// A polygon edge as the classification tests it: a vertex lies far enough inside when
// depth * nDepth + across * nAcross <= limit for every edge.
struct Edge
{
    float nDepth, nAcross, limit;
};

// The scan, one block: the extremes of the plane coordinates (with the vertex reaching each) and
// the world bounding box; with edges, also the vertices not well inside both polygons.
struct ScanBlock
{
    std::size_t piece; // of the vertex source
    const Vector3 *begin, *end;
    std::size_t first; // index of begin in the list
    const FloatAxes *axes;
    const std::vector<Edge> *edges[2]; // none: no classification
    float value[Slots];
    std::size_t index[Slots];
    float low[3], high[3];
    bool zero[3]; // whether the block holds a zero (either sign) of each world coordinate
    std::vector<Vector3> kept;
};

std::vector<ScanBlock> scan(const VertexSource &source, const FloatAxes &axes);

// The scan and the classification against the polygons in one reading of the list; the kept
// vertices are appended to kept, block by block in list order.
std::vector<ScanBlock> scanAndKeep(const VertexSource &source,
                                   const FloatAxes &axes,
                                   const std::vector<Edge> &depthRight,
                                   const std::vector<Edge> &depthUp,
                                   std::vector<Vector3> &kept);

// The vertices not well inside both polygons, block by block in list order.
std::vector<Vector3> keptOutside(const VertexSource &source,
                                 const FloatAxes &axes,
                                 const std::vector<Edge> &depthRight,
                                 const std::vector<Edge> &depthUp);

} // namespace fittoview
