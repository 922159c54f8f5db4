// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// Matrix, vector and box operations in the host's conventions (host/types.h): row-major
// matrices, row vectors multiplied on the left, a product A * B applies A first. Every operation
// writes into caller-owned storage or returns a value, allocates nothing and checks nothing; all
// arithmetic is in single precision with sinf and cosf.

#include "host/types.h"

#include <cmath>

// Degrees to radians and back, as the tools convert angles.
constexpr float DegreesToRadians = 0.017453292f;
constexpr float RadiansToDegrees = 57.29578f;

inline void MakeIdentity(Matrix &m)
{
    for (float &e : m.m)
        e = 0.f;
    m[0] = m[5] = m[10] = m[15] = 1.f;
}

// Writes only the 3x3 linear part: the rotation about x, then y, then z (angles in degrees).
// As a product of row-major matrices it is RX * RY * RZ, where RZ is the transpose of the usual
// z rotation, so the z angle turns the opposite way round to x and y. The translation row and
// column 3 are left as they were: callers start from the identity.
inline Matrix &SetRotationDegrees(Matrix &m, float ax, float ay, float az)
{
    const float a = ax * DegreesToRadians;
    const float b = ay * DegreesToRadians;
    const float c = az * DegreesToRadians;
    const float sa = sinf(a), ca = cosf(a);
    const float sb = sinf(b), cb = cosf(b);
    const float sc = sinf(c), cc = cosf(c);
    m[0] = cb * cc;
    m[1] = cb * sc;
    m[2] = sb;
    m[4] = sa * sb * cc - ca * sc;
    m[5] = ca * cc + sa * sb * sc;
    m[6] = -sa * cb;
    m[8] = -ca * sb * cc - sa * sc;
    m[9] = sa * cc - ca * sb * sc;
    m[10] = ca * cb;
    return m;
}

// result = inverse of m by cofactors. When the determinant is exactly 0 result is not written,
// so a caller that can meet a singular matrix gives result a value first. result may be m.
void InvertMatrix(Matrix &result, const Matrix &m);

// result = a * b (a applied first). result may be a or b.
inline void MultiplyMatrices(Matrix &result, const Matrix &a, const Matrix &b)
{
    Matrix product;
    Matrix &out = (&result == &a || &result == &b) ? product : result;
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            out[4 * i + j] = a[4 * i] * b[j] + a[4 * i + 1] * b[4 + j] + a[4 * i + 2] * b[8 + j]
                             + a[4 * i + 3] * b[12 + j];
        }
    }
    if (&out != &result)
        result = product;
}

// ---- Vectors ------------------------------------------------------------------------------

inline Vector3 AddVectors(const Vector3 &a, const Vector3 &b)
{
    return Vector3(a.x + b.x, a.y + b.y, a.z + b.z);
}

inline Vector3 ScaleVector(const Vector3 &v, float s)
{
    return Vector3(v.x * s, v.y * s, v.z * s);
}

inline Vector3 SubtractVectors(const Vector3 &a, const Vector3 &b)
{
    return Vector3(a.x - b.x, a.y - b.y, a.z - b.z);
}

inline float DotProduct(const Vector3 &a, const Vector3 &b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

// Right-handed: CrossProduct(x, y) is z.
inline Vector3 CrossProduct(const Vector3 &a, const Vector3 &b)
{
    return Vector3(a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x);
}

// v at unit length, each component divided by the length; fallback when v is no longer than
// shortest and so has no direction worth the name.
inline Vector3 NormaliseVector(const Vector3 &v, const Vector3 &fallback, float shortest = 0.f)
{
    const float length = std::sqrt(DotProduct(v, v));
    return length > shortest ? Vector3(v.x / length, v.y / length, v.z / length) : fallback;
}

// The same, multiplying by the reciprocal of the length: one division for the three components,
// for the mesh builder, which normalises several vectors per vertex. The result can differ from
// NormaliseVector's in the last bit, so each caller keeps the one its figures were made with.
inline Vector3
NormaliseVectorByReciprocal(const Vector3 &v, const Vector3 &fallback, float shortest = 0.f)
{
    const float length = std::sqrt(DotProduct(v, v));
    if (!(length > shortest))
        return fallback;
    const float reciprocal = 1.f / length;
    return Vector3(v.x * reciprocal, v.y * reciprocal, v.z * reciprocal);
}

// Turns v about a unit axis (not normalised here) by angle radians. With this sign rule (1, 0, 0)
// turned about +z by +t becomes (cos t, -sin t, 0), and about +y by +t becomes (cos t, 0, sin t).
inline void RotateAroundAxis(Vector3 &v, const Vector3 &axis, float angle)
{
    const float s = sinf(angle), c = cosf(angle), t = 1.f - c;
    const float x = axis.x, y = axis.y, z = axis.z;
    const Vector3 in = v;
    v.x = (t * x * x + c) * in.x + (t * x * y + s * z) * in.y + (t * x * z - s * y) * in.z;
    v.y = (t * x * y - s * z) * in.x + (t * y * y + c) * in.y + (t * y * z + s * x) * in.z;
    v.z = (t * x * z + s * y) * in.x + (t * y * z - s * x) * in.y + (t * z * z + c) * in.z;
}

// v * (linear part of m): the translation is ignored.
inline void TransformDirection(Vector3 &v, const Matrix &m)
{
    const Vector3 in = v;
    v.x = in.x * m[0] + in.y * m[4] + in.z * m[8];
    v.y = in.x * m[1] + in.y * m[5] + in.z * m[9];
    v.z = in.x * m[2] + in.y * m[6] + in.z * m[10];
}

// v * m for a point: the linear part, then the translation.
inline void TransformPoint(Vector3 &v, const Matrix &m)
{
    TransformDirection(v, m);
    v.x += m[12];
    v.y += m[13];
    v.z += m[14];
}

// v * m with all four components; no division by w.
inline void TransformVector4(Vector4 &v, const Matrix &m)
{
    const Vector4 in = v;
    v.x = in.x * m[0] + in.y * m[4] + in.z * m[8] + in.w * m[12];
    v.y = in.x * m[1] + in.y * m[5] + in.z * m[9] + in.w * m[13];
    v.z = in.x * m[2] + in.y * m[6] + in.z * m[10] + in.w * m[14];
    v.w = in.x * m[3] + in.y * m[7] + in.z * m[11] + in.w * m[15];
}

// ---- Boxes -------------------------------------------------------------------------------

// True when min exceeds max on any axis.
inline bool IsBoxEmpty(const TBBox<float> &box)
{
    return box.min[0] > box.max[0] || box.min[1] > box.max[1] || box.min[2] > box.max[2];
}

inline void ExtendBox(TBBox<float> &box, const Vector3 &p)
{
    const float c[3] = {p.x, p.y, p.z};
    for (int i = 0; i < 3; ++i) {
        if (c[i] < box.min[i])
            box.min[i] = c[i];
        if (c[i] > box.max[i])
            box.max[i] = c[i];
    }
}

// Folds other into box with per-axis minimum and maximum; an empty other changes nothing.
inline void MergeBoxes(TBBox<float> &box, const TBBox<float> &other)
{
    for (int i = 0; i < 3; ++i) {
        if (other.min[i] < box.min[i])
            box.min[i] = other.min[i];
        if (other.max[i] > box.max[i])
            box.max[i] = other.max[i];
    }
}
