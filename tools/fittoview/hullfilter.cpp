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

// The polygons are first drawn through every SampleStride-th vertex, where the list is at least
// SmallestSample such samples long.
constexpr std::size_t SampleStride = 32;
constexpr std::size_t SmallestSample = 256;

// The axis along each plane's normal: up for (depth, right), right for (depth, up).
constexpr int NormalQuantity[2] = {Up, Right};

double dot(const std::array<double, 3> &a, const Vector3 &v)
{
    return a[0] * double(v.x) + a[1] * double(v.y) + a[2] * double(v.z);
}

// The margins: rounding for vertices whose coordinates' magnitudes sum to at most roundingSum,
// which every vertex the classification may leave out must meet; leftOut in proportion to the
// magnitudes the fit's cameras will see, about leftOutSum.
struct Margins
{
    Margins(double roundingSum, double leftOutSum)
        : rounding(roundingSum * RoundingShare)
        , leftOut(leftOutSum * LeftOutShare)
    {}
    double rounding, leftOut;
};

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

PlanePolygon buildPlane(const std::vector<Point2> &points, const Margins &m, PlaneRegion &region)
{
    PlanePolygon polygon{convexHull(points), {}};
    region.corners = pulledIn(polygon.hull, m.leftOut - m.rounding * 1e-6);
    if (region.corners.empty())
        return polygon;
    for (const HalfPlane &h : edgesOf(polygon.hull)) {
        polygon.edges.push_back(
            Edge{float(h.nDepth), float(h.nAcross), float(h.limit - m.leftOut - 2.0 * m.rounding)});
    }
    return polygon;
}

// The bounding box as a sequential pass gives it. The blocked one has the same values, except that
// where the smallest or largest value is a zero, which of +0 and -0 a sequential pass keeps
// depends on their order: it keeps the first zero of the list, since no value on that side of
// zero comes before or after it. Only the first block holding a zero is read again, in order.
// (Shapes standing on the floor have a smallest height of exactly zero.)
void settleZeroBounds(const VertexSource &source,
                      const std::vector<ScanBlock> &blocks,
                      FilteredVertices &result)
{
    for (int k = 0; k < 3; ++k) {
        if (result.low[k] != 0.0f && result.high[k] != 0.0f)
            continue;
        const auto holding = std::find_if(
            blocks.begin(), blocks.end(), [k](const ScanBlock &block) { return block.zero[k]; });
        if (holding == blocks.end())
            continue; // no coordinate is zero (the bound is NaN's or FLT_MAX's)
        std::vector<Vector3> list;
        std::size_t first = 0, count = 0;
        const Vector3 *piece = source.piece(holding->piece, list, first, count);
        const Vector3 *v = piece;
        const auto coordinate = [k](const Vector3 &p) { return k == 0 ? p.x : k == 1 ? p.y : p.z; };
        while (v != piece + count && coordinate(*v) != 0.0f)
            ++v;
        if (v == piece + count)
            continue;
        if (result.low[k] == 0.0f)
            result.low[k] = coordinate(*v);
        if (result.high[k] == 0.0f)
            result.high[k] = coordinate(*v);
    }
}

// The second round, over the first round's candidates only: their extremes along sixteen more
// directions and the list's own extremes join each polygon's corners, which brings the polygons
// close to the true hulls where eight directions (or a sample) missed a corner of them.
void refine(const CameraAxes &axes,
            const FloatAxes &floatAxes,
            const Margins &margins,
            const std::vector<Point2> extremes[2],
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
        points.insert(points.end(), extremes[p].begin(), extremes[p].end());
        for (int k = 0; k < Directions; ++k) {
            const Vector3 &v = result.candidates[at[k]];
            points.push_back(Point2{dot(axes.depth, v), dot(*across[p], v)});
        }
        refined[p] = buildPlane(points, margins, regions[p]);
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

// The extremes of the plane coordinates over the list, and the vertex reaching each.
struct Extremes
{
    float value[Slots];
    std::size_t index[Slots] = {};
};

// The blocks' extremes and bounding boxes folded together, the box into result.
Extremes combine(const std::vector<ScanBlock> &blocks, FilteredVertices &result)
{
    Extremes found;
    for (int s = 0; s < Slots; ++s)
        found.value[s] = s % 2 ? FLT_MAX : -FLT_MAX;
    for (int k = 0; k < 3; ++k) {
        result.low[k] = FLT_MAX;
        result.high[k] = -FLT_MAX;
        result.magnitude[k] = 0;
    }
    for (const ScanBlock &block : blocks) {
        for (int s = 0; s < Slots; ++s) {
            if (s % 2 ? block.value[s] < found.value[s] : block.value[s] > found.value[s]) {
                found.value[s] = block.value[s];
                found.index[s] = block.index[s];
            }
        }
        for (int k = 0; k < 3; ++k) {
            result.low[k] = block.low[k] < result.low[k] ? block.low[k] : result.low[k];
            result.high[k] = block.high[k] > result.high[k] ? block.high[k] : result.high[k];
        }
    }
    return found;
}

// Plane p's points (depth, across) of the vertices at its slots' extremes.
template<typename VertexAt>
std::vector<Point2> planePoints(int p, const CameraAxes &axes, VertexAt vertexAt)
{
    const std::array<double, 3> &across = p == 0 ? axes.right : axes.up;
    std::vector<Point2> points;
    for (int s : PlaneSlots[p]) {
        const Vector3 v = vertexAt(s);
        points.push_back(Point2{dot(axes.depth, v), dot(across, v)});
    }
    return points;
}

// Polygons drawn through the extremes of every SampleStride-th vertex, with the margins of
// rounding margin of vertices whose magnitudes sum to at most roundingSum: twice the sample's own
// sum, since the list's extremes lie a little beyond the sample's.
struct SampledPolygons
{
    PlanePolygon polygons[2];
    PlaneRegion regions[2];
    double sum = 0;
    double roundingSum = 0;
    Margins margins() const { return Margins(roundingSum, sum); }
};

bool drawFromSample(const VertexSource &source,
                    const CameraAxes &axes,
                    const FloatAxes &floatAxes,
                    SampledPolygons &sampled)
{
    const std::vector<Vector3> points = source.sample(SampleStride);
    FilteredVertices box;
    const Extremes found = combine(scan(VertexSource(points), floatAxes), box);
    for (int k = 0; k < 3; ++k)
        sampled.sum += std::max(std::fabs(double(box.low[k])), std::fabs(double(box.high[k])));
    sampled.roundingSum = 2 * sampled.sum;
    if (!(sampled.sum > 0) || !std::isfinite(sampled.roundingSum))
        return false;
    for (int p = 0; p < 2; ++p) {
        const std::vector<Point2> extremes = planePoints(
            p, axes, [&points, &found](int slot) { return points[found.index[slot]]; });
        sampled.polygons[p] = buildPlane(extremes, sampled.margins(), sampled.regions[p]);
        if (sampled.polygons[p].edges.empty())
            return false;
    }
    return true;
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
    FloatAxes floatAxes;
    for (int k = 0; k < 3; ++k) {
        floatAxes.m[k] = float(axes.depth[k]);
        floatAxes.m[3 + k] = float(axes.right[k]);
        floatAxes.m[6 + k] = float(axes.up[k]);
    }
    // With polygons drawn through a sample, one reading of the list both finds its extremes and
    // keeps what lies outside them; a second reading is needed only when the sample misled.
    SampledPolygons sampled;
    const bool fromSample = source.size() >= SampleStride * SmallestSample
                            && drawFromSample(source, axes, floatAxes, sampled);
    std::vector<Vector3> kept;
    const std::vector<ScanBlock> blocks
        = fromSample ? scanAndKeep(
              source, floatAxes, sampled.polygons[0].edges, sampled.polygons[1].edges, kept)
                     : scan(source, floatAxes);
    const Extremes found = combine(blocks, result);
    result.readings = 1;
    settleZeroBounds(source, blocks, result);
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
    // The sample's margins hold for every vertex within the magnitudes they were made for.
    const bool sampleHolds = fromSample && sum <= sampled.roundingSum;
    const Margins margins = sampleHolds ? sampled.margins() : Margins(sum, sum);
    PlanePolygon polygons[2];
    std::vector<Point2> extremes[2];
    for (int p = 0; p < 2; ++p) {
        extremes[p] = planePoints(
            p, axes, [&source, &found](int slot) { return source.at(found.index[slot]); });
        if (sampleHolds) {
            polygons[p] = std::move(sampled.polygons[p]);
            result.planes[p].corners = std::move(sampled.regions[p].corners);
        } else {
            polygons[p] = buildPlane(extremes[p], margins, result.planes[p]);
            if (polygons[p].edges.empty())
                return result;
        }
        result.planes[p].low = double(found.value[2 * NormalQuantity[p] + 1]) - margins.rounding;
        result.planes[p].high = double(found.value[2 * NormalQuantity[p]]) + margins.rounding;
    }
    if (!sampleHolds) {
        kept = keptOutside(source, floatAxes, polygons[0].edges, polygons[1].edges);
        ++result.readings;
    }
    // Leaving out fewer than half the vertices would not pay for the bookkeeping.
    if (kept.size() > source.size() / 2)
        return result;
    result.leftOut = source.size() - kept.size();
    result.candidates = std::move(kept);
    refine(axes, floatAxes, margins, extremes, polygons, result);
    return result;
}
