// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/fittoview/fitprobes.h"

#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "tools/fittoview/gathering.h"
#include "tools/fittoview/vertexsource.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <limits>

namespace {

// Unit roundoff of float, and the bound on the error of a sum of four float products.
constexpr double Unit = 1.0 / (1 << 24);
constexpr double Gamma4 = 4 * Unit / (1 - 4 * Unit);

Matrix viewProjectionOf(const Matrix &cameraGlobal, const Matrix &projection)
{
    Matrix view, viewProjection;
    CalculateViewMatrix(view, cameraGlobal);
    MultiplyMatrices(viewProjection, view, projection);
    return viewProjection;
}

bool usableBound(float value)
{
    // A zero is +0 or -0 depending on which vertex came first: only the full pass knows.
    return std::isfinite(value) && value != 0.0f;
}

} // namespace

// The values one projected coordinate can take over the vertices left out, widened by what the
// float arithmetic of a pass can add to it.
struct FitProbes::Range
{
    bool valid;
    double low, high;
};

FitProbes::FitProbes(const std::vector<Vector3> &vertices,
                     const Matrix &cameraGlobal,
                     Measuring measuring)
    : m_vertices(&vertices)
    , m_count(vertices.size())
    , m_axes(cameraAxesOf(cameraGlobal))
{
    if (measuring == Filtered) {
        m_filter = filterVertices(vertices, m_axes);
        m_filtered = m_filter.leftOut > 0;
    } else {
        measureBox();
    }
}

FitProbes::FitProbes(INode *root, const Matrix &cameraGlobal, Measuring measuring)
    : m_root(root)
    , m_axes(cameraAxesOf(cameraGlobal))
{
    if (measuring == Filtered) {
        std::vector<GatherJob> jobs = planGathering(root, Matrix(), m_count);
        m_filter = filterVertices(VertexSource(std::move(jobs), m_count), m_axes);
        m_filtered = m_filter.leftOut > 0;
    } else {
        collectVertices(m_gathered, root, Matrix());
        m_vertices = &m_gathered;
        m_count = m_gathered.size();
        measureBox();
    }
}

// The bounding box as the plain sequential pass gives it, for the reference measuring.
void FitProbes::measureBox()
{
    for (int k = 0; k < 3; ++k) {
        m_filter.low[k] = FLT_MAX;
        m_filter.high[k] = -FLT_MAX;
    }
    for (const Vector3 &v : *m_vertices) {
        const float c[3] = {v.x, v.y, v.z};
        for (int k = 0; k < 3; ++k) {
            m_filter.low[k] = std::min(m_filter.low[k], c[k]);
            m_filter.high[k] = std::max(m_filter.high[k], c[k]);
        }
    }
}

const std::vector<Vector3> &FitProbes::all()
{
    if (!m_vertices) {
        collectVertices(m_gathered, m_root, Matrix());
        m_vertices = &m_gathered;
    }
    return *m_vertices;
}

std::size_t FitProbes::candidateCount() const
{
    return m_filtered ? m_filter.candidates.size() : m_count;
}

FitProbes::Range FitProbes::rangeOver(int plane, const Matrix &vp) const
{
    // Plane 0 holds the projected x (column 0 of the matrix), plane 1 the projected y (column 1);
    // column 3 is w.
    const PlaneRegion &region = m_filter.planes[plane];
    const std::array<double, 3> &across = plane == 0 ? m_axes.right : m_axes.up;
    const std::array<double, 3> &normal = plane == 0 ? m_axes.up : m_axes.right;
    const double a[4] = {vp[plane], vp[4 + plane], vp[8 + plane], vp[12 + plane]};
    const double c[4] = {vp[3], vp[7], vp[11], vp[15]};
    // The region is a prism: the polygon in the plane times the range along the normal axis. A
    // quotient of two affine functions with a positive denominator takes its extremes over it at
    // its corners.
    Range range{
        true, std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
    double wLow = std::numeric_limits<double>::infinity();
    for (const Point2 &corner : region.corners) {
        for (double t : {region.low, region.high}) {
            double p[3];
            for (int k = 0; k < 3; ++k)
                p[k] = corner.depth * m_axes.depth[k] + corner.across * across[k] + t * normal[k];
            const double n = a[0] * p[0] + a[1] * p[1] + a[2] * p[2] + a[3];
            const double w = c[0] * p[0] + c[1] * p[1] + c[2] * p[2] + c[3];
            wLow = std::min(wLow, w);
            range.low = std::min(range.low, n / w);
            range.high = std::max(range.high, n / w);
        }
    }
    // What the float arithmetic of a pass can be off by, for any vertex within the list's
    // magnitudes: the two sums of products, then the reciprocal and the multiply.
    double sumN = std::fabs(a[3]), sumW = std::fabs(c[3]);
    for (int k = 0; k < 3; ++k) {
        sumN += m_filter.magnitude[k] * std::fabs(a[k]);
        sumW += m_filter.magnitude[k] * std::fabs(c[k]);
    }
    const double wError = Gamma4 * sumW;
    const double largest = std::max(std::fabs(range.low), std::fabs(range.high));
    if (!(wLow > 2 * wError) || !std::isfinite(largest) || !std::isfinite(sumN + sumW))
        return Range{false, 0, 0};
    const double error = (Gamma4 * sumN + largest * wError) / (wLow - wError) * (1 + 4 * Unit)
                         + largest * 4 * Unit;
    // Twice the bound, for the rounding of this double-precision check itself.
    range.low -= 2 * error;
    range.high += 2 * error;
    return range;
}

// Whether no vertex left out can project outside bound (minX, minY, maxX, maxY) in a pass.
bool FitProbes::leftOutWithin(const Matrix &viewProjection, const float bound[4]) const
{
    for (int plane = 0; plane < 2; ++plane) {
        const Range range = rangeOver(plane, viewProjection);
        if (!range.valid || range.low < double(bound[plane])
            || range.high > double(bound[2 + plane]))
            return false;
    }
    return true;
}

bool FitProbes::inside(const Matrix &cameraGlobal, const Matrix &projection)
{
    ++m_probes;
    if (m_filtered) {
        // A candidate outside the frame settles it; all inside needs the proof for the rest.
        if (!allVerticesInside(m_filter.candidates, cameraGlobal, projection))
            return false;
        const float frame[4] = {-1.0f, -1.0f, 1.0f, 1.0f};
        if (leftOutWithin(viewProjectionOf(cameraGlobal, projection), frame))
            return true;
    }
    ++m_fullPasses;
    return allVerticesInside(all(), cameraGlobal, projection);
}

ProjectedBounds FitProbes::bounds(const Matrix &cameraGlobal, const Matrix &projection)
{
    ++m_probes;
    if (m_filtered) {
        const ProjectedBounds b
            = computeProjectedBounds(m_filter.candidates, cameraGlobal, projection);
        const float found[4] = {b.minX, b.minY, b.maxX, b.maxY};
        if (std::all_of(found, found + 4, usableBound)
            && leftOutWithin(viewProjectionOf(cameraGlobal, projection), found))
            return b;
    }
    ++m_fullPasses;
    return computeProjectedBounds(all(), cameraGlobal, projection);
}
