// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

// Convex polygons in one of the camera's planes, in double precision: what the hull filter draws
// through the vertices at the extremes, and what it pulls in to find the vertices well inside.

struct Point2
{
    double depth, across;
};

// A polygon edge: inside is nDepth * depth + nAcross * across <= limit, (nDepth, nAcross) the
// outward unit normal.
struct HalfPlane
{
    double nDepth, nAcross, limit;
};

// The convex hull, counter-clockwise, without collinear points; empty when the points span no
// area.
std::vector<Point2> convexHull(std::vector<Point2> points);

std::vector<HalfPlane> edgesOf(const std::vector<Point2> &convex);

// The part of a convex polygon at least distance away from each of its edges; empty when there is
// none.
std::vector<Point2> pulledIn(const std::vector<Point2> &convex, double distance);
