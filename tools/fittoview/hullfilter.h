// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/types.h"
#include "tools/fittoview/planepolygon.h"
#include "tools/fittoview/vertexsource.h"

#include <array>
#include <cstddef>
#include <vector>

// The camera never turns during a fit: only its target, distance and frame shape change. In the
// camera's own axes a vertex's projected x then depends only on its (depth, right) coordinates and
// its projected y only on (depth, up), and the extremes of either over all vertices are reached on
// the convex hull of those plane points. The filter below draws a polygon in each plane whose
// corners are real vertices, from a sample of every 32nd vertex, and keeps only the vertices that
// do not lie well inside both polygons; the same reading of the list finds its extremes, which
// then sharpen the polygons over the kept vertices alone. Where the sample misled (the list's
// coordinates reach well beyond the sample's), the list is read a second time against polygons
// through its own extremes. The fit's probes then run on
// the few candidates; FitProbes proves for every probe that the vertices left out cannot change
// its answer.

// The camera's forward, image-right and image-up directions in world space, made exactly
// orthonormal in double precision.
struct CameraAxes
{
    std::array<double, 3> depth, right, up;
};

CameraAxes cameraAxesOf(const Matrix &cameraGlobal);

// What is known of the vertices left out, in one plane: their (depth, across) points lie inside the
// convex polygon, and their coordinate along the plane's normal axis within low..high.
struct PlaneRegion
{
    std::vector<Point2> corners; // counter-clockwise; empty: this plane leaves nothing out
    double low = 0, high = 0;
};

struct FilteredVertices
{
    // The vertices not left out, in list order within each block of the list.
    std::vector<Vector3> candidates;
    // [0]: (depth, right), normal axis up; [1]: (depth, up), normal axis right.
    std::array<PlaneRegion, 2> planes;
    // The world bounding box, value for value what a sequential min/max pass over the list gives.
    float low[3], high[3];
    // The largest magnitude of each world coordinate over the list.
    double magnitude[3];
    std::size_t leftOut = 0;
    // How many times the whole list was read: once where the polygons drawn through a sample
    // held (or none were drawn), twice where they did not.
    int readings = 0;
};

// Without vertices, or when nothing can be left out, candidates is empty and leftOut is 0.
FilteredVertices filterVertices(const std::vector<Vector3> &vertices, const CameraAxes &axes);
FilteredVertices filterVertices(const VertexSource &source, const CameraAxes &axes);
