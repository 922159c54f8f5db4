// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "geometry/geometry.h"
#include "tests/support/testsupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>

using vantrel::test::Near;

namespace {

// Independent reference: a 3x3 rotation in double precision, built from the three elementary
// row-vector rotations, so that it does not share a single formula with the code under test.
struct Mat3
{
    double m[3][3];
};

Mat3 product(const Mat3 &a, const Mat3 &b)
{
    Mat3 r{};
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            for (int k = 0; k < 3; ++k)
                r.m[i][j] += a.m[i][k] * b.m[k][j];
    return r;
}

// Row-vector rotations: a point p turns to p * R. About x and y by the right-hand rule for
// column vectors transposed; the z rotation of the host turns the other way round.
Mat3 referenceRotation(double ax, double ay, double az)
{
    const double a = ax * M_PI / 180, b = ay * M_PI / 180, c = az * M_PI / 180;
    const Mat3 rx{{{1, 0, 0}, {0, std::cos(a), -std::sin(a)}, {0, std::sin(a), std::cos(a)}}};
    const Mat3 ry{{{std::cos(b), 0, std::sin(b)}, {0, 1, 0}, {-std::sin(b), 0, std::cos(b)}}};
    const Mat3 rz{{{std::cos(c), std::sin(c), 0}, {-std::sin(c), std::cos(c), 0}, {0, 0, 1}}};
    return product(product(rx, ry), rz);
}

Vector3 rowTimes(const Vector3 &v, const Matrix &m)
{
    Vector3 r = v;
    TransformDirection(r, m);
    return r;
}

Matrix randomAffine(std::mt19937 &random)
{
    std::uniform_real_distribution<float> angle(-180.f, 180.f), scale(0.2f, 3.f),
        offset(-50.f, 50.f);
    Matrix m;
    SetRotationDegrees(m, angle(random), angle(random), angle(random));
    const float s[3] = {scale(random), scale(random), scale(random)};
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            m[4 * row + column] *= s[row];
    m[12] = offset(random);
    m[13] = offset(random);
    m[14] = offset(random);
    return m;
}

} // namespace

TEST(Rotation, QuarterTurnsMapTheAxesAsTheHostDefines)
{
    Matrix m;
    SetRotationDegrees(m, 0, 0, 0);
    EXPECT_TRUE(Near(m, Matrix(), 0.f)) << "zero angles leave the identity";

    SetRotationDegrees(m, 90, 0, 0);
    EXPECT_TRUE(Near(rowTimes({0, 1, 0}, m), {0, 0, -1})) << "x by 90: y turns to -z";
    EXPECT_TRUE(Near(rowTimes({0, 0, 1}, m), {0, 1, 0})) << "x by 90: z turns to y";

    MakeIdentity(m);
    SetRotationDegrees(m, 0, 90, 0);
    EXPECT_TRUE(Near(rowTimes({1, 0, 0}, m), {0, 0, 1})) << "y by 90: x turns to z";

    MakeIdentity(m);
    SetRotationDegrees(m, 0, 0, 90);
    EXPECT_TRUE(Near(rowTimes({1, 0, 0}, m), {0, 1, 0})) << "z by 90: x turns to y";
}

TEST(Rotation, GeneralAnglesEqualTheProductOfElementaryRotations)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<float> angle(-360.f, 360.f);
    for (int trial = 0; trial < 200; ++trial) {
        const float a = angle(random), b = angle(random), c = angle(random);
        Matrix m;
        for (int i : {3, 7, 11, 12, 13, 14, 15})
            m[i] = float(100 + i); // marks what must stay untouched
        SetRotationDegrees(m, a, b, c);
        const Mat3 expected = referenceRotation(a, b, c);
        for (int row = 0; row < 3; ++row)
            for (int column = 0; column < 3; ++column)
                EXPECT_NEAR(m[4 * row + column], expected.m[row][column], 2e-6)
                    << "element (" << row << ", " << column << ") for angles " << a << ", " << b
                    << ", " << c;
        for (int i : {3, 7, 11, 12, 13, 14, 15})
            EXPECT_EQ(m[i], float(100 + i)) << "element " << i << " is not part of the rotation";
    }
}

TEST(Inverse, UndoesAffineTransformsInPlaceOrNot)
{
    std::mt19937 random(11);
    for (int trial = 0; trial < 100; ++trial) {
        const Matrix m = randomAffine(random);
        Matrix inverse;
        InvertMatrix(inverse, m);
        Matrix product;
        MultiplyMatrices(product, m, inverse);
        EXPECT_TRUE(Near(product, Matrix(), 1e-4f)) << "m * inverse(m) is the identity";
        MultiplyMatrices(product, inverse, m);
        EXPECT_TRUE(Near(product, Matrix(), 1e-4f)) << "inverse(m) * m is the identity";

        Matrix inPlace = m;
        InvertMatrix(inPlace, inPlace);
        EXPECT_TRUE(Near(inPlace, inverse, 1e-5f)) << "inverting in place gives the same inverse";
    }
}

TEST(Inverse, OfAKnownMatrixMatchesHandDerivedValues)
{
    // Scale (2, 4, 0.5), then translate (3, -1, 6): the inverse scales by (0.5, 0.25, 2) and
    // moves by (-1.5, 0.25, -12).
    Matrix m;
    m[0] = 2;
    m[5] = 4;
    m[10] = 0.5f;
    m[12] = 3;
    m[13] = -1;
    m[14] = 6;
    Matrix expected;
    expected[0] = 0.5f;
    expected[5] = 0.25f;
    expected[10] = 2;
    expected[12] = -1.5f;
    expected[13] = 0.25f;
    expected[14] = -12;
    Matrix inverse;
    InvertMatrix(inverse, m);
    EXPECT_TRUE(Near(inverse, expected, 1e-6f));
}

TEST(Inverse, OfASingularMatrixLeavesTheResultBitForBit)
{
    Matrix singular; // a zero scale on y flattens space: determinant exactly 0
    singular[5] = 0;
    singular[12] = 4;
    Matrix result;
    for (int i = 0; i < 16; ++i)
        result[i] = float(i) * 1.5f - 3.f;
    const Matrix before = result;
    InvertMatrix(result, singular);
    // Bit for bit on purpose: not even a NaN or a -0 may be written.
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison)
    EXPECT_EQ(std::memcmp(result.m, before.m, sizeof result.m), 0);

    Matrix inPlace = singular;
    InvertMatrix(inPlace, inPlace);
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison)
    EXPECT_EQ(std::memcmp(inPlace.m, singular.m, sizeof inPlace.m), 0)
        << "in place, a singular matrix stays as it was";
}

TEST(Product, AppliesTheLeftFactorFirstAndAllowsAliasing)
{
    Matrix rotate; // quarter turn about z: x -> y
    SetRotationDegrees(rotate, 0, 0, 90);
    Matrix translate;
    translate[12] = 10;

    Matrix rotateThenTranslate;
    MultiplyMatrices(rotateThenTranslate, rotate, translate);
    Vector3 p(1, 0, 0);
    TransformPoint(p, rotateThenTranslate);
    EXPECT_TRUE(Near(p, {10, 1, 0})) << "turned to (0, 1, 0), then moved along x";

    std::mt19937 random(3);
    const Matrix a = randomAffine(random), b = randomAffine(random);
    Matrix expected;
    MultiplyMatrices(expected, a, b);
    Matrix aliasA = a;
    MultiplyMatrices(aliasA, aliasA, b);
    EXPECT_TRUE(Near(aliasA, expected, 0.f)) << "result is the same object as a";
    Matrix aliasB = b;
    MultiplyMatrices(aliasB, a, aliasB);
    EXPECT_TRUE(Near(aliasB, expected, 0.f)) << "result is the same object as b";
}

TEST(Vectors, RotateAroundAxisFollowsTheHostsSignRule)
{
    const float t = 0.3f;
    Vector3 v(1, 0, 0);
    RotateAroundAxis(v, {0, 0, 1}, t);
    EXPECT_TRUE(Near(v, {std::cos(t), -std::sin(t), 0})) << "about +z, +x turns towards -y";

    v = Vector3(1, 0, 0);
    RotateAroundAxis(v, {0, 1, 0}, t);
    EXPECT_TRUE(Near(v, {std::cos(t), 0, std::sin(t)})) << "about +y, +x lifts towards +z";

    v = Vector3(0.3f, -2.f, 5.f);
    RotateAroundAxis(v, {0, 0, 1}, 0.f);
    EXPECT_TRUE(Near(v, {0.3f, -2.f, 5.f}, 0.f)) << "angle 0 leaves the vector as it was";

    // A non-unit axis is not normalised: about (0, 0, 2) by 90 degrees z is scaled by
    // t*z*z + c = 1*4 + 0 = 4, which no rotation would do.
    v = Vector3(0, 0, 1);
    RotateAroundAxis(v, {0, 0, 2}, float(M_PI / 2));
    EXPECT_NEAR(v.z, 4.f, 1e-5f);
}

TEST(Vectors, TransformsUseOrIgnoreTheTranslationAsNamed)
{
    Matrix m;
    SetRotationDegrees(m, 0, 0, 90); // x -> y, y -> -x
    m[0] *= 2;                       // and the x axis doubled
    m[1] *= 2;
    m[12] = 5;
    m[13] = 6;
    m[14] = 7;

    Vector3 origin;
    TransformPoint(origin, m);
    EXPECT_TRUE(Near(origin, {5, 6, 7}, 0.f)) << "the origin lands on the translation";

    Vector3 direction(1, 1, 0);
    TransformDirection(direction, m);
    EXPECT_TRUE(Near(direction, {-1, 2, 0})) << "x doubled to (0, 2, 0), y to (-1, 0, 0)";

    Vector3 point(1, 1, 0);
    TransformPoint(point, m);
    EXPECT_TRUE(Near(point, {4, 8, 7}));

    m[3] = 0.5f; // a projective column: w picks it up
    m[15] = 2;
    Vector4 h(1, 1, 0, 1);
    TransformVector4(h, m);
    EXPECT_NEAR(h.x, 4, 1e-5f);
    EXPECT_NEAR(h.y, 8, 1e-5f);
    EXPECT_NEAR(h.z, 7, 1e-5f);
    EXPECT_NEAR(h.w, 2.5f, 1e-5f) << "w = x * m[3] + w * m[15]; no division";
}

TEST(Boxes, FoldPointsAndBoxesAndKnowWhenTheyAreEmpty)
{
    TBBox<float> box;
    EXPECT_TRUE(IsBoxEmpty(box)) << "a fresh box is empty";
    MergeBoxes(box, TBBox<float>());
    EXPECT_TRUE(IsBoxEmpty(box)) << "folding an empty box in changes nothing";
    ExtendBox(box, {1, -2, 3});
    EXPECT_FALSE(IsBoxEmpty(box)) << "a single point is a box of size 0";
    TBBox<float> other;
    ExtendBox(other, {-4, 5, 0});
    MergeBoxes(box, other);
    EXPECT_TRUE(Near(Vector3(box.min[0], box.min[1], box.min[2]), Vector3(-4, -2, 0), 0.f));
    EXPECT_TRUE(Near(Vector3(box.max[0], box.max[1], box.max[2]), Vector3(1, 5, 3), 0.f));
}
