// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// Outlines in the xz-plane, the cross-sections the mesh builder extrudes along y: the ones the
// shapes are drawn with (rectangles, rounded rectangles, circles) and the 2D work the builder
// does on them before it emits triangles (cleaning, centroids, pairing a hole with its outline).

#include "host/hostexport.h"

#include <vector>

namespace vantrel::host {

// The outlines' arcs and the mesh builder's angles are worked out in double precision.
inline constexpr double Pi = 3.14159265358979323846;

// A point of an outline in the xz-plane, in centimetres.
struct OutlinePoint
{
    float x = 0.f;
    float z = 0.f;
};
using Outline = std::vector<OutlinePoint>;

// Corner radii of a rounded rectangle, in centimetres; 0 gives a sharp corner.
struct CornerRadii
{
    float bottomLeft = 0.f;
    float bottomRight = 0.f;
    float topRight = 0.f;
    float topLeft = 0.f;
};

// Outline points closer than this fraction of the outline's size are one point. Rounded
// corners whose radius reaches half a side otherwise leave zero-length edges behind.
inline constexpr float DuplicateFraction = 1e-5f;

// The axis-aligned bounds of an outline.
struct OutlineBounds
{
    float xMin, xMax, zMin, zMax;
};

// The bounds of a non-empty outline.
OutlineBounds outlineBounds(const Outline &outline);

// The outline without repeated points, counter-clockwise; empty when nothing with an area is
// left.
Outline cleanOutline(const Outline &outline);

// The length of a closed loop, centimetres.
float outlinePerimeter(const Outline &loop);

// The mean of the outline's points.
OutlinePoint outlineCentroid(const Outline &loop);

// Pairs a convex outline with a convex hole strictly inside it, point by point along rays from
// the hole's centre: every corner of either loop gets a ray, and each ray meets both loops once.
// The ring between the two results then falls apart into quads that cannot overlap. Both loops
// must be clean (cleanOutline).
void pairAlongRays(const Outline &outer,
                   const Outline &inner,
                   Outline *outerLoop,
                   Outline *innerLoop);

// Outlines for the mesh builder's prisms. All run counter-clockwise in the xz-plane. Radii larger
// than half the shorter side are reduced to it.
VANTREL_HOST_EXPORT Outline roundedRectangleOutline(float xMin,
                                                    float zMin,
                                                    float xMax,
                                                    float zMax,
                                                    const CornerRadii &radii,
                                                    int segmentsPerCorner);
VANTREL_HOST_EXPORT Outline rectangleOutline(float xMin, float zMin, float xMax, float zMax);
VANTREL_HOST_EXPORT Outline circleOutline(float centreX, float centreZ, float radius, int segments);

} // namespace vantrel::host
