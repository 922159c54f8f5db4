// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/outline.h"

#include <QtGlobal>

#include <algorithm>
#include <cmath>

namespace vantrel::host {

namespace {

// Two hole and outline samples whose directions from the hole centre differ by less than this
// (radians) are one sample.
constexpr float SameDirection = 1e-5f;

float cross2(float ax, float az, float bx, float bz)
{
    return ax * bz - az * bx;
}

// Twice the signed area; positive when the outline runs counter-clockwise in the xz-plane.
float doubleArea(const Outline &loop)
{
    float area = 0.f;
    for (std::size_t i = 0; i < loop.size(); ++i) {
        const OutlinePoint &a = loop[i];
        const OutlinePoint &b = loop[(i + 1) % loop.size()];
        area += cross2(a.x, a.z, b.x, b.z);
    }
    return area;
}

// Where the ray from centre in direction (dx, dz) leaves the convex loop around it.
OutlinePoint rayExit(const Outline &loop, const OutlinePoint &centre, float dx, float dz)
{
    for (std::size_t i = 0; i < loop.size(); ++i) {
        const OutlinePoint &a = loop[i];
        const OutlinePoint &b = loop[(i + 1) % loop.size()];
        const float ex = b.x - a.x, ez = b.z - a.z;
        const float denominator = cross2(dx, dz, ex, ez);
        if (std::abs(denominator) < 1e-12f)
            continue;
        const float wx = a.x - centre.x, wz = a.z - centre.z;
        const float t = cross2(wx, wz, ex, ez) / denominator;
        const float s = cross2(wx, wz, dx, dz) / denominator;
        if (t > 0.f && s >= -1e-4f && s <= 1.f + 1e-4f) {
            const float clamped = qBound(0.f, s, 1.f);
            return {a.x + clamped * ex, a.z + clamped * ez};
        }
    }
    // Only reachable through rounding on a degenerate loop: the nearest corner will do.
    return loop.front();
}

// A direction from the hole's centre, with the corners of either loop that lie on it (-1: none).
struct Sample
{
    float angle;
    int outerCorner;
    int innerCorner;
};

// Samples closer than SameDirection become one, keeping the corners of both.
std::vector<Sample> mergeSamples(const std::vector<Sample> &samples)
{
    std::vector<Sample> merged;
    for (const Sample &s : samples) {
        if (!merged.empty() && s.angle - merged.back().angle < SameDirection) {
            if (s.outerCorner >= 0)
                merged.back().outerCorner = s.outerCorner;
            if (s.innerCorner >= 0)
                merged.back().innerCorner = s.innerCorner;
        } else {
            merged.push_back(s);
        }
    }
    // The same direction can show up as almost +pi at the end and almost -pi at the start.
    if (merged.size() > 1
        && merged.front().angle + 2 * float(Pi) - merged.back().angle < SameDirection) {
        if (merged.back().outerCorner >= 0)
            merged.front().outerCorner = merged.back().outerCorner;
        if (merged.back().innerCorner >= 0)
            merged.front().innerCorner = merged.back().innerCorner;
        merged.pop_back();
    }
    return merged;
}

} // namespace

OutlineBounds outlineBounds(const Outline &outline)
{
    OutlineBounds b = {outline[0].x, outline[0].x, outline[0].z, outline[0].z};
    for (const OutlinePoint &p : outline) {
        b.xMin = std::min(b.xMin, p.x);
        b.xMax = std::max(b.xMax, p.x);
        b.zMin = std::min(b.zMin, p.z);
        b.zMax = std::max(b.zMax, p.z);
    }
    return b;
}

float outlinePerimeter(const Outline &loop)
{
    float length = 0.f;
    for (std::size_t i = 0; i < loop.size(); ++i) {
        const OutlinePoint &a = loop[i];
        const OutlinePoint &b = loop[(i + 1) % loop.size()];
        length += std::sqrt((b.x - a.x) * (b.x - a.x) + (b.z - a.z) * (b.z - a.z));
    }
    return length;
}

Outline cleanOutline(const Outline &outline)
{
    if (outline.size() < 3)
        return {};
    const OutlineBounds box = outlineBounds(outline);
    const float tolerance = DuplicateFraction * std::max(box.xMax - box.xMin, box.zMax - box.zMin);
    const auto same = [tolerance](const OutlinePoint &a, const OutlinePoint &b) {
        return std::abs(a.x - b.x) <= tolerance && std::abs(a.z - b.z) <= tolerance;
    };
    Outline loop;
    for (const OutlinePoint &p : outline) {
        if (loop.empty() || !same(loop.back(), p))
            loop.push_back(p);
    }
    while (loop.size() > 1 && same(loop.back(), loop.front()))
        loop.pop_back();
    const float area = doubleArea(loop);
    if (loop.size() < 3 || std::abs(area) <= tolerance * tolerance)
        return {};
    if (area < 0.f)
        std::reverse(loop.begin(), loop.end());
    return loop;
}

OutlinePoint outlineCentroid(const Outline &loop)
{
    double x = 0., z = 0.;
    for (const OutlinePoint &p : loop) {
        x += p.x;
        z += p.z;
    }
    return {float(x / double(loop.size())), float(z / double(loop.size()))};
}

void pairAlongRays(const Outline &outer,
                   const Outline &inner,
                   Outline *outerLoop,
                   Outline *innerLoop)
{
    const OutlinePoint centre = outlineCentroid(inner);
    std::vector<Sample> samples;
    for (std::size_t i = 0; i < outer.size(); ++i)
        samples.push_back({std::atan2(outer[i].z - centre.z, outer[i].x - centre.x), int(i), -1});
    for (std::size_t i = 0; i < inner.size(); ++i)
        samples.push_back({std::atan2(inner[i].z - centre.z, inner[i].x - centre.x), -1, int(i)});
    std::sort(samples.begin(), samples.end(), [](const Sample &a, const Sample &b) {
        return a.angle < b.angle;
    });
    for (const Sample &s : mergeSamples(samples)) {
        const float dx = std::cos(s.angle), dz = std::sin(s.angle);
        outerLoop->push_back(s.outerCorner >= 0 ? outer[std::size_t(s.outerCorner)]
                                                : rayExit(outer, centre, dx, dz));
        innerLoop->push_back(s.innerCorner >= 0 ? inner[std::size_t(s.innerCorner)]
                                                : rayExit(inner, centre, dx, dz));
    }
}

Outline roundedRectangleOutline(
    float xMin, float zMin, float xMax, float zMax, const CornerRadii &radii, int segmentsPerCorner)
{
    const float limit = 0.5f * std::min(xMax - xMin, zMax - zMin);
    segmentsPerCorner = std::max(segmentsPerCorner, 1);
    struct Corner
    {
        float x, z; // the sharp corner
        float radius;
        float dx, dz; // from the corner towards the arc's centre, per unit of radius
        double start; // degrees
    };
    const Corner corners[4] = {
        {xMin, zMin, radii.bottomLeft, 1.f, 1.f, 180.},
        {xMax, zMin, radii.bottomRight, -1.f, 1.f, 270.},
        {xMax, zMax, radii.topRight, -1.f, -1.f, 0.},
        {xMin, zMax, radii.topLeft, 1.f, -1.f, 90.},
    };
    Outline outline;
    for (const Corner &c : corners) {
        const float r = qBound(0.f, c.radius, limit);
        if (r <= 0.f) {
            outline.push_back({c.x, c.z});
            continue;
        }
        const double cx = c.x + c.dx * r, cz = c.z + c.dz * r;
        for (int k = 0; k <= segmentsPerCorner; ++k) {
            // Double precision makes the arc's ends land exactly on the rectangle's sides.
            const double a = (c.start + 90. * k / segmentsPerCorner) * Pi / 180.;
            outline.push_back({float(cx + r * std::cos(a)), float(cz + r * std::sin(a))});
        }
    }
    return outline;
}

Outline rectangleOutline(float xMin, float zMin, float xMax, float zMax)
{
    return roundedRectangleOutline(xMin, zMin, xMax, zMax, CornerRadii{}, 1);
}

Outline circleOutline(float centreX, float centreZ, float radius, int segments)
{
    segments = std::max(segments, 3);
    Outline outline;
    outline.reserve(std::size_t(segments));
    for (int k = 0; k < segments; ++k) {
        const double a = 2. * Pi * k / segments;
        outline.push_back(
            {float(centreX + radius * std::cos(a)), float(centreZ + radius * std::sin(a))});
    }
    return outline;
}

} // namespace vantrel::host
