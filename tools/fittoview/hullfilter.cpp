// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/fittoview/hullfilter.h"

#include "tools/fittoview/planepolygon.h"

#include "tools/fittoview/vertexbounds.h"
#include "tools/fittoview/vertexlanes.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

using namespace fittoview;

namespace {

// The seven plane coordinates whose largest and smallest values the first pass looks for:
// depth, right, depth +- right (the (depth, right) plane at 45 degrees), up, depth +- up.
// Slot 2k holds the largest value of quantity k, slot 2k + 1 the smallest.
constexpr int Quantities = 7;
constexpr int Slots = 2 * Quantities;
constexpr int Right = 1, Up = 4;
// The slots whose vertices span each plane's polygon.
constexpr int PlaneSlots[2][8] = {{0, 1, 2, 3, 4, 5, 6, 7}, {0, 1, 8, 9, 10, 11, 12, 13}};

// The margins, as fractions of the sum of the coordinates' magnitudes. The float arithmetic of
// the passes is off by far less than RoundingShare; LeftOutShare is how far inside the polygon a
// vertex must lie to be left out, and it is what lets every probe prove that the vertices left out
// stay below the candidates' extremes.
constexpr double RoundingShare = 1.0 / (1 << 18);
constexpr double LeftOutShare = 1.0 / (1 << 12);

struct FloatAxes
{
    float m[9]; // depth, right, up
};

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

// First pass, one block: the extremes of the plane coordinates (with the vertex reaching each)
// and the world bounding box.
struct ScanBlock
{
    const Vector3 *begin, *end;
    std::size_t first; // index of begin in the list
    const FloatAxes *axes;
    float value[Slots];
    std::size_t index[Slots];
    float low[3], high[3];
};

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

// A polygon edge as the second pass tests it: a vertex lies far enough inside when
// depth * nDepth + across * nAcross <= limit for every edge.
struct Edge
{
    float nDepth, nAcross, limit;
};

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

double dot(const std::array<double, 3> &a, const Vector3 &v)
{
    return a[0] * double(v.x) + a[1] * double(v.y) + a[2] * double(v.z);
}

// One plane's polygon through the given vertices: the edges the classifying pass tests (pulled in
// by the left-out margin plus twice the rounding margin, one for the vertices' plane coordinates
// and one for the test's own arithmetic) and the region the probes may then assume for the
// vertices left out (pulled in by the left-out margin only, less a hair for the rounding of this
// very computation). No edges when the polygon spans no area or nothing is that far inside.
struct PlanePolygon
{
    std::vector<Point2> hull;
    std::vector<Edge> edges;
};

PlanePolygon
buildPlane(const std::vector<Point2> &points, double leftOut, double rounding, PlaneRegion &region)
{
    PlanePolygon polygon{convexHull(points), {}};
    region.corners = pulledIn(polygon.hull, leftOut - rounding * 1e-6);
    if (region.corners.empty())
        return polygon;
    for (const HalfPlane &h : edgesOf(polygon.hull)) {
        polygon.edges.push_back(
            Edge{float(h.nDepth), float(h.nAcross), float(h.limit - leftOut - 2.0 * rounding)});
    }
    return polygon;
}

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

// The bounding box as a sequential pass gives it. The blocked one has the same values, except that
// where the smallest or largest value is a zero, which of +0 and -0 a sequential pass keeps
// depends on their order: that axis is passed again in order.
void settleZeroBounds(const std::vector<Vector3> &vertices, FilteredVertices &result)
{
    for (int k = 0; k < 3; ++k) {
        if (result.low[k] != 0.0f && result.high[k] != 0.0f)
            continue;
        float low = FLT_MAX, high = -FLT_MAX;
        for (const Vector3 &v : vertices) {
            const float c = k == 0 ? v.x : k == 1 ? v.y : v.z;
            low = std::min(low, c);
            high = std::max(high, c);
        }
        result.low[k] = low;
        result.high[k] = high;
    }
}

// The classifying pass: the vertices not well inside both polygons, block by block in list order.
std::vector<Vector3> keptOutside(const std::vector<Vector3> &vertices,
                                 const FloatAxes &axes,
                                 const PlanePolygon polygons[2])
{
    std::vector<ClassifyBlock> blocks;
    for (std::size_t k = 0; k < vertices.size(); k += VerticesPerBlock) {
        const std::size_t end = std::min(k + std::size_t(VerticesPerBlock), vertices.size());
        blocks.push_back(ClassifyBlock{vertices.data() + k,
                                       vertices.data() + end,
                                       &axes,
                                       {&polygons[0].edges, &polygons[1].edges},
                                       {}});
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

// The second round, over the first round's candidates only: their extremes along sixteen more
// directions join each polygon's corners, which brings the polygons close to the true hulls where
// eight directions missed a corner of them.
void refine(const CameraAxes &axes,
            const FloatAxes &floatAxes,
            double leftOut,
            double rounding,
            PlanePolygon polygons[2],
            FilteredVertices &result)
{
    constexpr int Directions = 16;
    if (result.candidates.empty())
        return;
    const std::array<double, 3> *across[2] = {&axes.right, &axes.up};
    for (int p = 0; p < 2; ++p) {
        double best[Directions];
        std::size_t at[Directions] = {};
        std::fill(best, best + Directions, -HUGE_VAL);
        double direction[Directions][2];
        for (int k = 0; k < Directions; ++k) {
            const double angle = (k + 0.5) * 2.0 * M_PI / Directions;
            direction[k][0] = std::cos(angle);
            direction[k][1] = std::sin(angle);
        }
        for (std::size_t i = 0; i < result.candidates.size(); ++i) {
            const Vector3 &v = result.candidates[i];
            const double d = dot(axes.depth, v), a = dot(*across[p], v);
            for (int k = 0; k < Directions; ++k) {
                const double value = direction[k][0] * d + direction[k][1] * a;
                if (value > best[k]) {
                    best[k] = value;
                    at[k] = i;
                }
            }
        }
        std::vector<Point2> points = polygons[p].hull;
        for (int k = 0; k < Directions; ++k) {
            const Vector3 &v = result.candidates[at[k]];
            points.push_back(Point2{dot(axes.depth, v), dot(*across[p], v)});
        }
        const double low = result.planes[p].low, high = result.planes[p].high;
        polygons[p] = buildPlane(points, leftOut, rounding, result.planes[p]);
        result.planes[p].low = low;
        result.planes[p].high = high;
    }
    // The new polygons hold the old ones, so what the first round left out is still well inside.
    std::vector<Vector3> kept = keptOutside(result.candidates, floatAxes, polygons);
    result.leftOut += result.candidates.size() - kept.size();
    result.candidates = std::move(kept);
}

} // namespace

CameraAxes cameraAxesOf(const Matrix &g)
{
    // Forward is row 0 of the camera's matrix, the image's right is minus row 1, its top row 2.
    std::array<double, 3> axis[3]
        = {{g[0], g[1], g[2]}, {-g[4], -g[5], -g[6]}, {g[8], g[9], g[10]}};
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < i; ++j) {
            const double along
                = axis[i][0] * axis[j][0] + axis[i][1] * axis[j][1] + axis[i][2] * axis[j][2];
            for (int k = 0; k < 3; ++k)
                axis[i][k] -= along * axis[j][k];
        }
        const double length = std::sqrt(axis[i][0] * axis[i][0] + axis[i][1] * axis[i][1]
                                        + axis[i][2] * axis[i][2]);
        for (int k = 0; k < 3; ++k)
            axis[i][k] = length > 0 ? axis[i][k] / length : 0.0;
    }
    return CameraAxes{axis[0], axis[1], axis[2]};
}

FilteredVertices filterVertices(const std::vector<Vector3> &vertices, const CameraAxes &axes)
{
    FilteredVertices result;
    for (int k = 0; k < 3; ++k) {
        result.low[k] = FLT_MAX;
        result.high[k] = -FLT_MAX;
        result.magnitude[k] = 0;
    }
    FloatAxes floatAxes;
    for (int k = 0; k < 3; ++k) {
        floatAxes.m[k] = float(axes.depth[k]);
        floatAxes.m[3 + k] = float(axes.right[k]);
        floatAxes.m[6 + k] = float(axes.up[k]);
    }
    const std::vector<ScanBlock> blocks = scan(vertices, floatAxes);
    float value[Slots];
    std::size_t index[Slots] = {};
    for (int s = 0; s < Slots; ++s)
        value[s] = s % 2 ? FLT_MAX : -FLT_MAX;
    for (const ScanBlock &block : blocks) {
        for (int s = 0; s < Slots; ++s) {
            if (s % 2 ? block.value[s] < value[s] : block.value[s] > value[s]) {
                value[s] = block.value[s];
                index[s] = block.index[s];
            }
        }
        for (int k = 0; k < 3; ++k) {
            result.low[k] = block.low[k] < result.low[k] ? block.low[k] : result.low[k];
            result.high[k] = block.high[k] > result.high[k] ? block.high[k] : result.high[k];
        }
    }
    settleZeroBounds(vertices, result);
    double sum = 0;
    for (int k = 0; k < 3; ++k) {
        result.magnitude[k]
            = std::max(std::fabs(double(result.low[k])), std::fabs(double(result.high[k])));
        sum += result.magnitude[k];
    }
    if (vertices.empty() || !(sum > 0) || !std::isfinite(sum))
        return result;
    for (int k = 0; k < 3; ++k) {
        if (result.low[k] > result.high[k])
            return result; // nothing but NaN
    }
    const double rounding = sum * RoundingShare, leftOut = sum * LeftOutShare;
    PlanePolygon polygons[2];
    const std::array<double, 3> *across[2] = {&axes.right, &axes.up};
    const int normalQuantity[2] = {Up, Right};
    for (int p = 0; p < 2; ++p) {
        std::vector<Point2> extremes;
        for (int s : PlaneSlots[p]) {
            const Vector3 &v = vertices[index[s]];
            extremes.push_back(Point2{dot(axes.depth, v), dot(*across[p], v)});
        }
        polygons[p] = buildPlane(extremes, leftOut, rounding, result.planes[p]);
        if (polygons[p].edges.empty())
            return result;
        result.planes[p].low = double(value[2 * normalQuantity[p] + 1]) - rounding;
        result.planes[p].high = double(value[2 * normalQuantity[p]]) + rounding;
    }
    std::vector<Vector3> kept = keptOutside(vertices, floatAxes, polygons);
    // Leaving out fewer than half the vertices would not pay for the bookkeeping.
    if (kept.size() > vertices.size() / 2)
        return result;
    result.leftOut = vertices.size() - kept.size();
    result.candidates = std::move(kept);
    refine(axes, floatAxes, leftOut, rounding, polygons, result);
    return result;
}
