// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// The hull filter's two passes over the whole vertex list, four vertices at a time on both
// threads: the scan for the extremes and the classification against the polygons.
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

// First pass, one block: the extremes of the plane coordinates (with the vertex reaching each)
// and the world bounding box.
struct ScanBlock
{
    std::size_t piece; // of the vertex source
    const Vector3 *begin, *end;
    std::size_t first; // index of begin in the list
    const FloatAxes *axes;
    float value[Slots];
    std::size_t index[Slots];
    float low[3], high[3];
};

std::vector<ScanBlock> scan(const VertexSource &source, const FloatAxes &axes);

// A polygon edge as the second pass tests it: a vertex lies far enough inside when
// depth * nDepth + across * nAcross <= limit for every edge.
struct Edge
{
    float nDepth, nAcross, limit;
};

// The vertices not well inside both polygons, block by block in list order.
std::vector<Vector3> keptOutside(const VertexSource &source,
                                 const FloatAxes &axes,
                                 const std::vector<Edge> &depthRight,
                                 const std::vector<Edge> &depthUp);

} // namespace fittoview
