// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/fittoview/hullfilter.h"

#include "tools/fittoview/hullpasses.h"
#include "tools/fittoview/planepolygon.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

using namespace fittoview;

namespace {

// The slots whose vertices span each plane's polygon.
constexpr int PlaneSlots[2][8] = {{0, 1, 2, 3, 4, 5, 6, 7}, {0, 1, 8, 9, 10, 11, 12, 13}};

// The margins, as fractions of the sum of the coordinates' magnitudes. The float arithmetic of
// the passes is off by far less than RoundingShare; LeftOutShare is how far inside the polygon a
// vertex must lie to be left out, and it is what lets every probe prove that the vertices left out
// stay below the candidates' extremes.
constexpr double RoundingShare = 1.0 / (1 << 18);
constexpr double LeftOutShare = 1.0 / (1 << 12);

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

// The bounding box as a sequential pass gives it. The blocked one has the same values, except that
// where the smallest or largest value is a zero, which of +0 and -0 a sequential pass keeps
// depends on their order: that axis is passed again in order.
void settleZeroBounds(const VertexSource &source, FilteredVertices &result)
{
    for (int k = 0; k < 3; ++k) {
        if (result.low[k] != 0.0f && result.high[k] != 0.0f)
            continue;
        float low = FLT_MAX, high = -FLT_MAX;
        std::vector<Vector3> list;
        for (std::size_t i = 0; i < source.pieceCount(); ++i) {
            std::size_t first = 0, count = 0;
            const Vector3 *piece = source.piece(i, list, first, count);
            for (const Vector3 *v = piece; v != piece + count; ++v) {
                const float c = k == 0 ? v->x : k == 1 ? v->y : v->z;
                low = std::min(low, c);
                high = std::max(high, c);
            }
        }
        result.low[k] = low;
        result.high[k] = high;
    }
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
    PlanePolygon refined[2];
    PlaneRegion regions[2];
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
        refined[p] = buildPlane(points, leftOut, rounding, regions[p]);
        // The new polygon holds the old one, so it cannot come out empty; were rounding to make
        // it so, the first round's result stands (no edges would leave everything out).
        if (refined[p].edges.empty())
            return;
    }
    // What the first round left out is still well inside the new polygons.
    for (int p = 0; p < 2; ++p) {
        polygons[p] = std::move(refined[p]);
        result.planes[p].corners = std::move(regions[p].corners);
    }
    std::vector<Vector3> kept = keptOutside(
        VertexSource(result.candidates), floatAxes, polygons[0].edges, polygons[1].edges);
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
    return filterVertices(VertexSource(vertices), axes);
}

FilteredVertices filterVertices(const VertexSource &source, const CameraAxes &axes)
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
    const std::vector<ScanBlock> blocks = scan(source, floatAxes);
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
    settleZeroBounds(source, result);
    double sum = 0;
    for (int k = 0; k < 3; ++k) {
        result.magnitude[k]
            = std::max(std::fabs(double(result.low[k])), std::fabs(double(result.high[k])));
        sum += result.magnitude[k];
    }
    if (source.size() == 0 || !(sum > 0) || !std::isfinite(sum))
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
            const Vector3 v = source.at(index[s]);
            extremes.push_back(Point2{dot(axes.depth, v), dot(*across[p], v)});
        }
        polygons[p] = buildPlane(extremes, leftOut, rounding, result.planes[p]);
        if (polygons[p].edges.empty())
            return result;
        result.planes[p].low = double(value[2 * normalQuantity[p] + 1]) - rounding;
        result.planes[p].high = double(value[2 * normalQuantity[p]]) + rounding;
    }
    std::vector<Vector3> kept
        = keptOutside(source, floatAxes, polygons[0].edges, polygons[1].edges);
    // Leaving out fewer than half the vertices would not pay for the bookkeeping.
    if (kept.size() > source.size() / 2)
        return result;
    result.leftOut = source.size() - kept.size();
    result.candidates = std::move(kept);
    refine(axes, floatAxes, leftOut, rounding, polygons, result);
    return result;
}
