// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/fittoview/hullpasses.h"

#include "tools/fittoview/vertexbounds.h"
#include "tools/fittoview/vertexlanes.h"

#include <algorithm>
#include <cfloat>
#include <cstring>

namespace fittoview {

namespace {

// The extremes are looked for by value only, chunk by chunk; the vertex reaching a block's extreme
// is then found again in its chunk alone. Keeping an index beside every value in every lane would
// cost more than the rest of the pass.
constexpr std::ptrdiff_t ChunkLength = 256;

} // namespace

// The inner loops, for any x86-64 processor and, where the compiler can target it, for AVX2.
namespace portable {
#include "tools/fittoview/hullkernels.inc"
} // namespace portable

#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
#define VANTREL_WIDE_KERNELS 1
#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2"))), apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx2")
#endif
namespace wide {
#include "tools/fittoview/hullkernels.inc"
} // namespace wide
#if defined(__clang__)
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif
#endif

namespace {

struct Kernels
{
    decltype(&portable::scanChunk) scanChunk;
    decltype(&portable::findInChunk) findInChunk;
    decltype(&portable::classifyGroups) classifyGroups;
};

const Kernels &kernels()
{
    static const Kernels chosen = [] {
#if defined(VANTREL_WIDE_KERNELS)
        __builtin_cpu_init();
        if (__builtin_cpu_supports("avx2"))
            return Kernels{wide::scanChunk, wide::findInChunk, wide::classifyGroups};
#endif
        return Kernels{portable::scanChunk, portable::findInChunk, portable::classifyGroups};
    }();
    return chosen;
}

// Whether the vertex in lane 0 of q is well inside both polygons.
bool insideBoth(const std::vector<Edge> &depthRight,
                const std::vector<Edge> &depthUp,
                const Float4 q[Quantities])
{
    Int4 inside = Int4{} - 1;
    portable::insideAll(depthRight, q[0], q[Right], inside);
    portable::insideAll(depthUp, q[0], q[Up], inside);
    return inside[0] != 0;
}

void scanBlock(ScanBlock &block)
{
    const FloatAxes &a = *block.axes;
    const Kernels &kernel = kernels();
    for (int k = 0; k < 3; ++k) {
        block.low[k] = FLT_MAX;
        block.high[k] = -FLT_MAX;
        block.zero[k] = false;
    }
    const Vector3 *winner[Slots] = {};
    for (int s = 0; s < Slots; ++s) {
        block.value[s] = s % 2 ? FLT_MAX : -FLT_MAX;
        block.index[s] = block.first;
    }
    const Vector3 *v = block.begin;
    const Vector3 *const whole = v + (block.end - v) / 8 * 8;
    for (; v != whole; v += std::min(ChunkLength, whole - v)) {
        const Vector3 *end = v + std::min(ChunkLength, whole - v);
        float value[Slots];
        kernel.scanChunk(v, end, a, block.low, block.high, block.zero, value);
        if (block.edges[0])
            kernel.classifyGroups(v, end, a, *block.edges[0], *block.edges[1], block.kept);
        for (int s = 0; s < Slots; ++s) {
            if (s % 2 ? value[s] < block.value[s] : value[s] > block.value[s]) {
                block.value[s] = value[s];
                winner[s] = v;
            }
        }
    }
    for (int s = 0; s < Slots; ++s) {
        if (!winner[s])
            continue;
        const Vector3 *end = winner[s] + std::min(ChunkLength, whole - winner[s]);
        if (const Vector3 *found = kernel.findInChunk(winner[s], end, a, s / 2, block.value[s]))
            block.index[s] = block.first + std::size_t(found - block.begin);
    }
    // The last vertices, fewer than eight, one by one.
    for (; v != block.end; ++v) {
        const std::size_t index = block.first + std::size_t(v - block.begin);
        const Float4 x = Float4{} + v->x, y = Float4{} + v->y, z = Float4{} + v->z;
        const float c[3] = {v->x, v->y, v->z};
        for (int k = 0; k < 3; ++k) {
            block.low[k] = c[k] < block.low[k] ? c[k] : block.low[k];
            block.high[k] = c[k] > block.high[k] ? c[k] : block.high[k];
            block.zero[k] = block.zero[k] || c[k] == 0.0f;
        }
        Float4 q[Quantities];
        portable::planeCoordinates(a, x, y, z, q);
        for (int s = 0; s < Slots; ++s) {
            const float value = q[s / 2][0];
            if (s % 2 ? value < block.value[s] : value > block.value[s]) {
                block.value[s] = value;
                block.index[s] = index;
            }
        }
        if (block.edges[0] && !insideBoth(*block.edges[0], *block.edges[1], q))
            block.kept.push_back(*v);
    }
}

struct ClassifyBlock
{
    std::size_t piece;
    const Vector3 *begin, *end;
    const FloatAxes *axes;
    const std::vector<Edge> *edges[2];
    std::vector<Vector3> kept;
};

void classifyBlock(ClassifyBlock &block)
{
    const Vector3 *v = block.begin;
    const Vector3 *const whole = v + (block.end - v) / 8 * 8;
    const FloatAxes &a = *block.axes;
    kernels().classifyGroups(v, whole, a, *block.edges[0], *block.edges[1], block.kept);
    // The last vertices, fewer than eight, one by one.
    for (v = whole; v != block.end; ++v) {
        const Float4 x = Float4{} + v->x, y = Float4{} + v->y, z = Float4{} + v->z;
        Float4 q[Quantities];
        portable::planeCoordinates(a, x, y, z, q);
        if (!insideBoth(*block.edges[0], *block.edges[1], q))
            block.kept.push_back(*v);
    }
}

} // namespace

// The scratch list a pool thread gathers a piece into, kept for the thread's next piece.
std::vector<Vector3> &scratch()
{
    static thread_local std::vector<Vector3> list;
    return list;
}

namespace {

std::vector<ScanBlock> scanBlocks(const VertexSource &source,
                                  const FloatAxes &axes,
                                  const std::vector<Edge> *depthRight,
                                  const std::vector<Edge> *depthUp)
{
    std::vector<ScanBlock> blocks(source.pieceCount());
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        blocks[i].piece = i;
        blocks[i].axes = &axes;
        blocks[i].edges[0] = depthRight;
        blocks[i].edges[1] = depthUp;
    }
    runBlocks(blocks, [&source](ScanBlock &block) {
        std::size_t count = 0;
        block.begin = source.piece(block.piece, scratch(), block.first, count);
        block.end = block.begin + count;
        scanBlock(block);
        block.begin = block.end = nullptr; // the scratch list is the next piece's
    });
    return blocks;
}

template<typename Blocks>
void appendKept(Blocks &blocks, std::vector<Vector3> &kept)
{
    std::size_t count = kept.size();
    for (const auto &block : blocks)
        count += block.kept.size();
    kept.reserve(count);
    for (auto &block : blocks) {
        kept.insert(kept.end(), block.kept.begin(), block.kept.end());
        block.kept = std::vector<Vector3>();
    }
}

} // namespace

std::vector<ScanBlock> scan(const VertexSource &source, const FloatAxes &axes)
{
    return scanBlocks(source, axes, nullptr, nullptr);
}

std::vector<ScanBlock> scanAndKeep(const VertexSource &source,
                                   const FloatAxes &axes,
                                   const std::vector<Edge> &depthRight,
                                   const std::vector<Edge> &depthUp,
                                   std::vector<Vector3> &kept)
{
    std::vector<ScanBlock> blocks = scanBlocks(source, axes, &depthRight, &depthUp);
    appendKept(blocks, kept);
    return blocks;
}

std::vector<Vector3> keptOutside(const VertexSource &source,
                                 const FloatAxes &axes,
                                 const std::vector<Edge> &depthRight,
                                 const std::vector<Edge> &depthUp)
{
    std::vector<ClassifyBlock> blocks(source.pieceCount());
    for (std::size_t i = 0; i < blocks.size(); ++i)
        blocks[i] = ClassifyBlock{i, nullptr, nullptr, &axes, {&depthRight, &depthUp}, {}};
    runBlocks(blocks, [&source](ClassifyBlock &block) {
        std::size_t first = 0, count = 0;
        block.begin = source.piece(block.piece, scratch(), first, count);
        block.end = block.begin + count;
        classifyBlock(block);
    });
    std::vector<Vector3> result;
    appendKept(blocks, result);
    return result;
}

} // namespace fittoview
