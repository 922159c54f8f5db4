// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// What the shape generator tests share: the generators by identifier, and the checks every mesh
// a generator builds must pass, computed here in double precision from the vertices alone.

#include "hostapp/core/scene/generatorregistry.h"
#include "hostapp/core/scene/mesh.h"

#include <cmath>
#include <iterator>
#include <memory>
#include <string>

namespace vantrel::test {

struct Vec
{
    double x, y, z;
};
inline Vec operator-(const Vec &a, const Vec &b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vec operator*(const Vec &a, double s)
{
    return {a.x * s, a.y * s, a.z * s};
}
inline double dot(const Vec &a, const Vec &b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vec cross(const Vec &a, const Vec &b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double norm(const Vec &a)
{
    return std::sqrt(dot(a, a));
}
inline Vec vec(const float *f)
{
    return {f[0], f[1], f[2]};
}

inline const host::MeshPart &meshPart(const IMeshPart *part)
{
    return *static_cast<const host::MeshPart *>(part);
}

// The enclosed volume of a closed, outward-facing surface, in cm³ (negative when inside out).
double signedVolume(const host::Mesh &mesh);

// Checks every promise a generated mesh makes; counts faults per kind so that one broken shape
// gives a handful of messages rather than thousands. Closedness is checked over all parts
// together, because a carton's panels are parts of their own.
void expectWellFormed(const host::Mesh &mesh, const std::string &label);

// A new generator of that kind; a test failure when there is none.
std::unique_ptr<host::ShapeGenerator> make(const char *typeId);

inline float number(const host::ShapeGenerator &generator, const char *name)
{
    return generator.property(name).toFloat();
}

inline bool hasParameter(const host::ShapeGenerator &generator, const char *name)
{
    return generator.parameterNames().contains(QString::fromLatin1(name));
}

// Every generator, in menu order.
inline const char *const s_identifiers[] = {
    "generator.DiscBox.DigipakDVD",
    "generator.DiscBox.DigipakCD",
    "generator.DiscBox.DVD",
    "generator.DiscBox.SlimCD",
    "generator.DiscBox.BluRay",
    "generator.Devices.iPad",
    "generator.Devices.iPhone4",
    "generator.Devices.iPhone5",
    "generator.canvas.simple",
    "generator.Boxes.Box",
    "generator.Boxes.SlidingBox",
    "generator.Boxes.TaggedBox",
    "generator.DiscBox.Disc",
    "generator.Book.HardCover",
    "generator.Book.PaperbackRoundCorners",
    "generator.Book.Magazine",
    "generator.Book.Stepback",
    "generator.Book.Paperback",
    "generator.Images.Image",
    "generator.external.model",
};

inline const char *const s_discCases[] = {
    "generator.DiscBox.DigipakDVD",
    "generator.DiscBox.DigipakCD",
    "generator.DiscBox.DVD",
    "generator.DiscBox.SlimCD",
    "generator.DiscBox.BluRay",
};
inline const char *const s_paperbacks[] = {"generator.Book.Paperback", "generator.Book.Stepback"};

} // namespace vantrel::test
