// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/fittoview/planepolygon.h"

#include <algorithm>
#include <cmath>

namespace {

double cross(const Point2 &o, const Point2 &a, const Point2 &b)
{
    return (a.depth - o.depth) * (b.across - o.across)
           - (a.across - o.across) * (b.depth - o.depth);
}

// The part of a convex polygon inside the half-plane.
std::vector<Point2> clip(const std::vector<Point2> &polygon, const HalfPlane &h)
{
    std::vector<Point2> out;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const Point2 &p = polygon[i], &q = polygon[(i + 1) % polygon.size()];
        const double sp = h.nDepth * p.depth + h.nAcross * p.across - h.limit;
        const double sq = h.nDepth * q.depth + h.nAcross * q.across - h.limit;
        if (sp <= 0)
            out.push_back(p);
        if ((sp < 0 && sq > 0) || (sp > 0 && sq < 0)) {
            const double t = sp / (sp - sq);
            out.push_back(
                Point2{p.depth + t * (q.depth - p.depth), p.across + t * (q.across - p.across)});
        }
    }
    return out.size() >= 3 ? out : std::vector<Point2>();
}

} // namespace

std::vector<Point2> convexHull(std::vector<Point2> points)
{
    std::sort(points.begin(), points.end(), [](const Point2 &a, const Point2 &b) {
        return a.depth < b.depth || (a.depth == b.depth && a.across < b.across);
    });
    if (points.size() < 3)
        return {};
    // Andrew's monotone chain: the lower hull left to right, then the upper hull back.
    std::vector<Point2> hull(2 * points.size());
    std::size_t k = 0;
    for (const Point2 &p : points) {
        while (k >= 2 && cross(hull[k - 2], hull[k - 1], p) <= 0)
            --k;
        hull[k++] = p;
    }
    for (std::size_t i = points.size() - 1, lower = k + 1; i-- > 0;) {
        while (k >= lower && cross(hull[k - 2], hull[k - 1], points[i]) <= 0)
            --k;
        hull[k++] = points[i];
    }
    hull.resize(k - 1);
    return hull.size() >= 3 ? hull : std::vector<Point2>();
}

std::vector<HalfPlane> edgesOf(const std::vector<Point2> &convex)
{
    std::vector<HalfPlane> edges;
    for (std::size_t i = 0; i < convex.size(); ++i) {
        const Point2 &p = convex[i], &q = convex[(i + 1) % convex.size()];
        const double length = std::hypot(q.depth - p.depth, q.across - p.across);
        const double nDepth = (q.across - p.across) / length;
        const double nAcross = -(q.depth - p.depth) / length;
        edges.push_back(HalfPlane{nDepth, nAcross, nDepth * p.depth + nAcross * p.across});
    }
    return edges;
}

std::vector<Point2> pulledIn(const std::vector<Point2> &convex, double distance)
{
    // A convex polygon pulled in is the intersection of its edges' half-planes moved in.
    std::vector<Point2> inner = convex;
    for (HalfPlane h : edgesOf(convex)) {
        if (inner.empty())
            break;
        h.limit -= distance;
        inner = clip(inner, h);
    }
    return inner;
}
