// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/fittoview/hullpasses.h"

#include "tools/fittoview/vertexbounds.h"
#include "tools/fittoview/vertexlanes.h"

#include <cfloat>

namespace fittoview {

namespace {

void planeCoordinates(const FloatAxes &a, Float4 x, Float4 y, Float4 z, Float4 q[Quantities])
{
    const Float4 d = x * a.m[0] + y * a.m[1] + z * a.m[2];
    const Float4 r = x * a.m[3] + y * a.m[4] + z * a.m[5];
    const Float4 u = x * a.m[6] + y * a.m[7] + z * a.m[8];
    q[0] = d;
    q[1] = r;
    q[2] = d + r;
    q[3] = d - r;
    q[4] = u;
    q[5] = d + u;
    q[6] = d - u;
}

void scanBlock(ScanBlock &block)
{
    Float4 best[Slots], low[3], high[3];
    Int4 at[Slots];
    for (int s = 0; s < Slots; ++s) {
        best[s] = Float4{} + (s % 2 ? FLT_MAX : -FLT_MAX);
        at[s] = Int4{} - 1;
    }
    for (int k = 0; k < 3; ++k) {
        low[k] = Float4{} + FLT_MAX;
        high[k] = Float4{} - FLT_MAX;
    }
    Int4 lane{0, 1, 2, 3};
    const Vector3 *v = block.begin;
    const std::ptrdiff_t whole = (block.end - v) / 4 * 4;
    for (; v != block.begin + whole; v += 4, lane += 4) {
        Float4 c[3], q[Quantities];
        load4(v, c[0], c[1], c[2]);
        for (int k = 0; k < 3; ++k) {
            low[k] = c[k] < low[k] ? c[k] : low[k];
            high[k] = c[k] > high[k] ? c[k] : high[k];
        }
        planeCoordinates(*block.axes, c[0], c[1], c[2], q);
        for (int k = 0; k < Quantities; ++k) {
            const Int4 above = q[k] > best[2 * k], below = q[k] < best[2 * k + 1];
            best[2 * k] = above ? q[k] : best[2 * k];
            at[2 * k] = above ? lane : at[2 * k];
            best[2 * k + 1] = below ? q[k] : best[2 * k + 1];
            at[2 * k + 1] = below ? lane : at[2 * k + 1];
        }
    }
    for (int s = 0; s < Slots; ++s) {
        block.value[s] = s % 2 ? FLT_MAX : -FLT_MAX;
        block.index[s] = block.first;
        for (int l = 0; l < 4; ++l) {
            const bool better = s % 2 ? best[s][l] < block.value[s] : best[s][l] > block.value[s];
            if (better) {
                block.value[s] = best[s][l];
                block.index[s] = block.first + std::size_t(at[s][l]);
            }
        }
    }
    for (int k = 0; k < 3; ++k) {
        block.low[k] = FLT_MAX;
        block.high[k] = -FLT_MAX;
        for (int l = 0; l < 4; ++l) {
            block.low[k] = low[k][l] < block.low[k] ? low[k][l] : block.low[k];
            block.high[k] = high[k][l] > block.high[k] ? high[k][l] : block.high[k];
        }
    }
    // The last vertices, fewer than four, one by one.
    for (; v != block.end; ++v) {
        const std::size_t index = block.first + std::size_t(v - block.begin);
        const Float4 x = Float4{} + v->x, y = Float4{} + v->y, z = Float4{} + v->z;
        const float c[3] = {v->x, v->y, v->z};
        for (int k = 0; k < 3; ++k) {
            block.low[k] = c[k] < block.low[k] ? c[k] : block.low[k];
            block.high[k] = c[k] > block.high[k] ? c[k] : block.high[k];
        }
        Float4 q[Quantities];
        planeCoordinates(*block.axes, x, y, z, q);
        for (int s = 0; s < Slots; ++s) {
            const float value = q[s / 2][0];
            if (s % 2 ? value < block.value[s] : value > block.value[s]) {
                block.value[s] = value;
                block.index[s] = index;
            }
        }
    }
}

struct ClassifyBlock
{
    const Vector3 *begin, *end;
    const FloatAxes *axes;
    const std::vector<Edge> *edges[2];
    std::vector<Vector3> kept;
};

Int4 insideAll(const std::vector<Edge> &edges, Float4 depth, Float4 across)
{
    Int4 inside = Int4{} - 1;
    for (const Edge &e : edges)
        inside &= depth * e.nDepth + across * e.nAcross <= e.limit;
    return inside;
}

void classifyBlock(ClassifyBlock &block)
{
    const Vector3 *v = block.begin;
    const std::ptrdiff_t whole = (block.end - v) / 4 * 4;
    const FloatAxes &a = *block.axes;
    for (; v != block.begin + whole; v += 4) {
        Float4 x, y, z;
        load4(v, x, y, z);
        const Float4 d = x * a.m[0] + y * a.m[1] + z * a.m[2];
        const Float4 r = x * a.m[3] + y * a.m[4] + z * a.m[5];
        const Float4 u = x * a.m[6] + y * a.m[7] + z * a.m[8];
        const Int4 out = ~(insideAll(*block.edges[0], d, r) & insideAll(*block.edges[1], d, u));
        if (out[0] | out[1] | out[2] | out[3]) {
            for (int l = 0; l < 4; ++l) {
                if (out[l])
                    block.kept.push_back(v[l]);
            }
        }
    }
    for (; v != block.end; ++v) {
        const Float4 x = Float4{} + v->x, y = Float4{} + v->y, z = Float4{} + v->z;
        const Float4 d = x * a.m[0] + y * a.m[1] + z * a.m[2];
        const Float4 r = x * a.m[3] + y * a.m[4] + z * a.m[5];
        const Float4 u = x * a.m[6] + y * a.m[7] + z * a.m[8];
        const Int4 out = ~(insideAll(*block.edges[0], d, r) & insideAll(*block.edges[1], d, u));
        if (out[0])
            block.kept.push_back(*v);
    }
}

} // namespace

std::vector<ScanBlock> scan(const std::vector<Vector3> &vertices, const FloatAxes &axes)
{
    std::vector<ScanBlock> blocks;
    for (std::size_t k = 0; k < vertices.size(); k += VerticesPerBlock) {
        const std::size_t end = std::min(k + std::size_t(VerticesPerBlock), vertices.size());
        blocks.push_back(
            ScanBlock{vertices.data() + k, vertices.data() + end, k, &axes, {}, {}, {}, {}});
    }
    runBlocks(blocks, scanBlock);
    return blocks;
}

std::vector<Vector3> keptOutside(const std::vector<Vector3> &vertices,
                                 const FloatAxes &axes,
                                 const std::vector<Edge> &depthRight,
                                 const std::vector<Edge> &depthUp)
{
    std::vector<ClassifyBlock> blocks;
    for (std::size_t k = 0; k < vertices.size(); k += VerticesPerBlock) {
        const std::size_t end = std::min(k + std::size_t(VerticesPerBlock), vertices.size());
        blocks.push_back(ClassifyBlock{
            vertices.data() + k, vertices.data() + end, &axes, {&depthRight, &depthUp}, {}});
    }
    runBlocks(blocks, classifyBlock);
    std::size_t kept = 0;
    for (const ClassifyBlock &block : blocks)
        kept += block.kept.size();
    std::vector<Vector3> result;
    result.reserve(kept);
    for (const ClassifyBlock &block : blocks)
        result.insert(result.end(), block.kept.begin(), block.kept.end());
    return result;
}

} // namespace fittoview
