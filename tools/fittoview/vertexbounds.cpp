// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/fittoview/vertexbounds.h"

#include "tools/fittoview/gathering.h"
#include "tools/fittoview/vertexlanes.h"

#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "host/imeshnode.h"
#include "host/imeshpart.h"
#include "host/inode.h"

#include <QtConcurrent>

#include <cfloat>
#include <cstdint>

#include <sys/mman.h>

using namespace fittoview;

namespace {

// The projection of a vertex: x and y after the division by w. The lanes do exactly the scalar
// operations (TransformVector4 of (x, y, z, 1), one reciprocal, two multiplies) in the same
// order, without contraction into fused operations, so each lane's result is bit for bit the
// scalar one.
struct Projector
{
    explicit Projector(const Matrix &m)
        : matrix(m)
    {}

    void project(const Vector3 *v, Float4 &px, Float4 &py) const
    {
        Float4 x, y, z;
        load4(v, x, y, z);
        const Float4 hx = x * matrix[0] + y * matrix[4] + z * matrix[8] + 1.0f * matrix[12];
        const Float4 hy = x * matrix[1] + y * matrix[5] + z * matrix[9] + 1.0f * matrix[13];
        const Float4 hw = x * matrix[3] + y * matrix[7] + z * matrix[11] + 1.0f * matrix[15];
        const Float4 r = 1.0f / hw;
        px = hx * r;
        py = hy * r;
    }

    void project(const Vector3 &v, float &px, float &py) const
    {
        Vector4 h{v.x, v.y, v.z, 1.0f};
        TransformVector4(h, matrix);
        const float r = 1.0f / h.w;
        px = h.x * r;
        py = h.y * r;
    }

    const Matrix &matrix;
};

// A list of millions of vertices is fresh memory, and in 4 KiB pages the kernel's page faults
// cost more than the transforms: large pages where the system gives them on request.
void adviseHugePages(void *begin, std::size_t bytes)
{
#if defined(MADV_HUGEPAGE)
    constexpr std::uintptr_t Huge = std::uintptr_t(2) << 20;
    const std::uintptr_t start = reinterpret_cast<std::uintptr_t>(begin);
    const std::uintptr_t first = (start + Huge - 1) & ~(Huge - 1);
    const std::uintptr_t last = (start + bytes) & ~(Huge - 1);
    if (last > first)
        madvise(reinterpret_cast<void *>(first), last - first, MADV_HUGEPAGE);
#else
    (void) begin;
    (void) bytes;
#endif
}

} // namespace

void collectVertices(std::vector<Vector3> &out, INode *node, const Matrix &parentGlobal)
{
    // The tree is walked once to lay the list out, so that it is allocated once and the
    // transforms, which read 60 bytes per vertex, run on both threads in blocks.
    std::size_t total = 0;
    std::vector<GatherJob> jobs = planGathering(node, parentGlobal, total);
    const std::size_t start = out.size();
    out.reserve(start + total);
    adviseHugePages(out.data() + start, total * sizeof(Vector3));
    out.resize(start + total);
    Vector3 *const list = out.data() + start;
    runBlocks(jobs, [list](const GatherJob &job) { gatherJob(job, list + job.offset); });
}

std::vector<sBlockOfVertices> makeBlocks(const std::vector<Vector3> &vertices,
                                         const Matrix *viewProjection)
{
    std::vector<sBlockOfVertices> blocks;
    const std::size_t n = vertices.size();
    blocks.reserve((n + VerticesPerBlock - 1) / VerticesPerBlock);
    for (std::size_t k = 0; k < n; k += VerticesPerBlock) {
        const std::size_t end = std::min(k + std::size_t(VerticesPerBlock), n);
        blocks.push_back(sBlockOfVertices{vertices.data() + k,
                                          vertices.data() + end,
                                          viewProjection,
                                          nullptr,
                                          0.0f,
                                          0.0f,
                                          0.0f,
                                          0.0f});
    }
    return blocks;
}

void accumulateBlockBounds(sBlockOfVertices &block)
{
    const Projector projector(*block.matrix);
    // Lane-wise bounds. A comparison that is false (NaN) keeps the old value, as in a plain loop;
    // min and max do not round, so combining the lanes gives what a sequential pass gives.
    Float4 minX = Float4{} + FLT_MAX, minY = minX;
    Float4 maxX = Float4{} - FLT_MAX, maxY = maxX;
    Float4 minX2 = minX, minY2 = minY, maxX2 = maxX, maxY2 = maxY;
    const Vector3 *v = block.begin;
    // Two independent sets of lanes keep more divisions in flight.
    for (; block.end - v >= 8; v += 8) {
        Float4 px, py, qx, qy;
        projector.project(v, px, py);
        projector.project(v + 4, qx, qy);
        minX = px < minX ? px : minX;
        maxX = px > maxX ? px : maxX;
        minY = py < minY ? py : minY;
        maxY = py > maxY ? py : maxY;
        minX2 = qx < minX2 ? qx : minX2;
        maxX2 = qx > maxX2 ? qx : maxX2;
        minY2 = qy < minY2 ? qy : minY2;
        maxY2 = qy > maxY2 ? qy : maxY2;
    }
    minX = minX2 < minX ? minX2 : minX;
    maxX = maxX2 > maxX ? maxX2 : maxX;
    minY = minY2 < minY ? minY2 : minY;
    maxY = maxY2 > maxY ? maxY2 : maxY;
    for (int k = 0; k < 4; ++k) {
        block.minX = minX[k] < block.minX ? minX[k] : block.minX;
        block.maxX = maxX[k] > block.maxX ? maxX[k] : block.maxX;
        block.minY = minY[k] < block.minY ? minY[k] : block.minY;
        block.maxY = maxY[k] > block.maxY ? maxY[k] : block.maxY;
    }
    for (; v != block.end; ++v) {
        float px, py;
        projector.project(*v, px, py);
        block.minX = px < block.minX ? px : block.minX;
        block.maxX = px > block.maxX ? px : block.maxX;
        block.minY = py < block.minY ? py : block.minY;
        block.maxY = py > block.maxY ? py : block.maxY;
    }
}

void testBlockInside(const sBlockOfVertices &block)
{
    const Projector projector(*block.matrix);
    const Vector3 *v = block.begin;
    // Eight vertices between looks at the mask: the block still stops soon after its first
    // vertex outside the frame, without a branch per vertex.
    for (; block.end - v >= 8; v += 8) {
        Float4 px, py, qx, qy;
        projector.project(v, px, py);
        projector.project(v + 4, qx, qy);
        const Int4 outside = (px < -1.0f) | (px > 1.0f) | (py < -1.0f) | (py > 1.0f) | (qx < -1.0f)
                             | (qx > 1.0f) | (qy < -1.0f) | (qy > 1.0f);
        if (outside[0] | outside[1] | outside[2] | outside[3]) {
            block.allInside->store(false, std::memory_order_relaxed);
            return;
        }
    }
    for (; v != block.end; ++v) {
        float px, py;
        projector.project(*v, px, py);
        if (px < -1.0f || px > 1.0f || py < -1.0f || py > 1.0f) {
            block.allInside->store(false, std::memory_order_relaxed);
            return;
        }
    }
}

ProjectedBounds computeProjectedBounds(const std::vector<Vector3> &vertices,
                                       const Matrix &cameraGlobal,
                                       const Matrix &projection)
{
    Matrix view, viewProjection;
    CalculateViewMatrix(view, cameraGlobal);
    MultiplyMatrices(viewProjection, view, projection);
    std::vector<sBlockOfVertices> blocks = makeBlocks(vertices, &viewProjection);
    for (sBlockOfVertices &block : blocks) {
        block.minX = block.minY = FLT_MAX;
        block.maxX = block.maxY = -FLT_MAX;
    }
    runBlocks(blocks, accumulateBlockBounds);
    ProjectedBounds result{FLT_MAX, FLT_MAX, -FLT_MAX, -FLT_MAX};
    for (const sBlockOfVertices &block : blocks) {
        result.minX = std::min(block.minX, result.minX);
        result.maxX = std::max(block.maxX, result.maxX);
        result.minY = std::min(block.minY, result.minY);
        result.maxY = std::max(block.maxY, result.maxY);
    }
    return result;
}

bool allVerticesInside(const std::vector<Vector3> &vertices,
                       const Matrix &cameraGlobal,
                       const Matrix &projection)
{
    Matrix view, viewProjection;
    CalculateViewMatrix(view, cameraGlobal);
    MultiplyMatrices(viewProjection, view, projection);
    std::atomic<bool> allInside{true};
    std::vector<sBlockOfVertices> blocks = makeBlocks(vertices, &viewProjection);
    for (sBlockOfVertices &block : blocks)
        block.allInside = &allInside;
    runBlocks(blocks, testBlockInside);
    return allInside.load();
}
