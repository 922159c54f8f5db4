// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// The host's value types. They are plain storage: the operations on them live in geometry/.
//
// Conventions shared by the host and the tools:
// - the scene is Z-up and the floor is the plane z = 0; lengths are scene units (centimetres);
// - a Matrix holds 16 floats in row-major order, element (row r, column c) at index 4r + c;
//   points are row vectors multiplied on the left (p' = p * M), so rows 0-2 are the images of
//   the x, y and z axes and row 3 (elements 12-14) is the translation;
// - a node's global matrix is its local matrix times its parent's global matrix.

#include <cfloat>

struct Vector3
{
    float x = 0.f;
    float y = 0.f;
    float z = 0.f;

    constexpr Vector3() = default;
    constexpr Vector3(float ax, float ay, float az)
        : x(ax)
        , y(ay)
        , z(az)
    {}
    friend constexpr bool operator==(const Vector3 &a, const Vector3 &b)
    {
        return a.x == b.x && a.y == b.y && a.z == b.z;
    }
    friend constexpr bool operator!=(const Vector3 &a, const Vector3 &b) { return !(a == b); }
};

struct Vector4
{
    float x = 0.f;
    float y = 0.f;
    float z = 0.f;
    float w = 0.f;

    constexpr Vector4() = default;
    constexpr Vector4(float ax, float ay, float az, float aw)
        : x(ax)
        , y(ay)
        , z(az)
        , w(aw)
    {}
};

struct Matrix
{
    // Identity by default, so that a freshly declared matrix is a valid transform.
    float m[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

    float &operator[](int i) { return m[i]; }
    float operator[](int i) const { return m[i]; }
    friend bool operator==(const Matrix &a, const Matrix &b)
    {
        for (int i = 0; i < 16; ++i) {
            if (a.m[i] != b.m[i])
                return false;
        }
        return true;
    }
    friend bool operator!=(const Matrix &a, const Matrix &b) { return !(a == b); }
};

// An axis-aligned box: min x, y, z then max x, y, z. A default box is the empty accumulating
// box (min = +FLT_MAX, max = -FLT_MAX), which any point or box folded into it replaces; a box
// whose min exceeds its max on any axis is empty.
template<typename T>
struct TBBox
{
    T min[3] = {FLT_MAX, FLT_MAX, FLT_MAX};
    T max[3] = {-FLT_MAX, -FLT_MAX, -FLT_MAX};
};

// One vertex of a mesh part as the host stores it: 15 floats, 60 bytes. Positions are in the
// owning node's local space.
struct VertexRecord
{
    float position[3];
    float normal[3];
    float texCoord[2];
    float tangent[4]; // xyz and the handedness of the bitangent in w (+1 or -1)
    float bitangent[3];
};
static_assert(sizeof(VertexRecord) == 60, "vertex records are 15 floats");
