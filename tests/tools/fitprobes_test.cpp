// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Fit To View's filtered probes against passes over every vertex: random scenes and cameras,
// answers compared bit for bit, probe by probe and as whole fits.
#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/camera.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/core/scene/scenenode.h"
#include "tests/support/testsupport.h"
#include "tests/tools/fittoviewtest.h"
#include "tools/fittoview/fitprobes.h"
#include "tools/fittoview/fittoviewimplementation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>

using namespace fittoviewtest;
using vantrel::test::addPointsNode;

namespace {

// Clouds of the shapes a fit meets: a solid block, the surface of a ball, a flat panel, a grid of
// small boxes (many vertices exactly on the hull), a block far from the origin, and a block with
// a few points three times as far out, none of them among every 32nd vertex that the filter's first
// sample reads.
std::vector<Vector3> cloud(int shape, std::size_t count, std::mt19937 &random)
{
    std::uniform_real_distribution<float> unit(-1.f, 1.f);
    std::vector<Vector3> points(count);
    for (std::size_t i = 0; i < count; ++i) {
        Vector3 p{unit(random), unit(random), unit(random)};
        switch (shape) {
        case 0:
            p = Vector3{p.x * 40.f, p.y * 15.f + 5.f, p.z * 25.f};
            break;
        case 1: {
            const float length = std::sqrt(p.x * p.x + p.y * p.y + p.z * p.z) + 1e-6f;
            p = Vector3{30.f * p.x / length, 30.f * p.y / length, 30.f * p.z / length};
            break;
        }
        case 2:
            p = Vector3{p.x * 50.f, 0.f, p.z * 20.f};
            break;
        case 3: {
            // Box corners on a 10 x 10 x 10 grid of unit boxes two apart.
            const int cell = int(i / 8) % 1000, corner = int(i % 8);
            p = Vector3{float(cell % 10 * 2 + (corner & 1)),
                        float(cell / 10 % 10 * 2 + (corner >> 1 & 1)),
                        float(cell / 100 * 2 + (corner >> 2 & 1))};
            break;
        }
        case 4:
            p = Vector3{p.x * 3.f + 4000.f, p.y * 3.f - 2500.f, p.z * 3.f};
            break;
        default: {
            const float out = i % 1000 == 17 ? 3.f : 1.f;
            p = Vector3{p.x * 20.f * out, p.y * 20.f * out, p.z * 20.f * out};
        }
        }
        points[i] = p;
    }
    return points;
}

Vector3 centreOf(const std::vector<Vector3> &points)
{
    double sum[3] = {};
    for (const Vector3 &p : points) {
        sum[0] += p.x;
        sum[1] += p.y;
        sum[2] += p.z;
    }
    const double n = double(points.size());
    return Vector3{float(sum[0] / n), float(sum[1] / n), float(sum[2] / n)};
}

bool sameBits(const ProjectedBounds &a, const ProjectedBounds &b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

} // namespace

TEST(FitProbesTest, EveryProbeAnswersAsAPassOverEveryVertex)
{
    std::mt19937 random(2026);
    std::uniform_real_distribution<float> angle(-180.f, 180.f), pitch(-85.f, 85.f);
    std::uniform_real_distribution<float> unit(0.f, 1.f);
    int filteredAnswers = 0, probes = 0;
    for (int scene = 0; scene < 30; ++scene) {
        const int shape = scene % 6;
        const std::vector<Vector3> points = cloud(shape, 60000 + std::size_t(scene) * 997, random);
        const Vector3 centre = centreOf(points);
        Document document;
        Camera *camera = document.camera();
        camera->setYaw(angle(random));
        camera->setPitch(pitch(random));
        FitProbes probe(points, camera->GetGlobalMatrix(), FitProbes::Filtered);
        SCOPED_TRACE(testing::Message() << "scene " << scene << ", shape " << shape);
        // Solid shapes leave most vertices well inside; a ball's surface is all near its rim.
        if (shape == 0 || shape == 3) {
            EXPECT_LT(probe.candidateCount(), points.size() / 5) << "the filter left out little";
        }
        // The sample's polygons serve where it is like the whole; the far points send the filter
        // back to the list's own extremes.
        if (shape == 0 || shape == 3 || shape == 4) {
            EXPECT_EQ(probe.filterReadingCount(), 1);
        }
        if (shape == 5) {
            EXPECT_EQ(probe.filterReadingCount(), 2);
        }
        for (int k = 0; k < 60; ++k) {
            // Cameras from far outside to inside the cloud, aimed near its centre, in frames
            // from tall to wide: the probes of a fit and worse.
            const float reach = 200.f * std::pow(unit(random), 2.f) + 0.5f;
            camera->SetTarget(Vector3{centre.x + 10.f * (unit(random) - 0.5f),
                                      centre.y + 10.f * (unit(random) - 0.5f),
                                      centre.z + 10.f * (unit(random) - 0.5f)});
            camera->SetDistance(reach);
            camera->SetAspectRatio(0.4f + 2.f * unit(random));
            const View v = viewOf(camera);
            const ProjectedBounds expected = computeProjectedBounds(points, v.global, v.projection);
            ASSERT_TRUE(sameBits(probe.bounds(v.global, v.projection), expected))
                << "probe " << k << " at distance " << reach;
            ASSERT_EQ(probe.inside(v.global, v.projection),
                      allVerticesInside(points, v.global, v.projection))
                << "probe " << k << " at distance " << reach;
        }
        if (probe.candidateCount() < points.size()) {
            filteredAnswers += probe.probeCount() - probe.fullPassCount();
            probes += probe.probeCount();
        }
    }
    // The comparisons above mean something only if most answers came from the filtered path
    // where the filter left vertices out; the rest are cameras inside or close to the cloud.
    EXPECT_GT(probes, 0);
    EXPECT_GT(filteredAnswers, probes * 3 / 4);
}

TEST(FitProbesTest, TheBoundingBoxIsTheSequentialOneEvenForSignedZeros)
{
    // A sequential min/max keeps the first of +0 and -0 it meets; blocks and lanes meet them in
    // another order.
    // The first zero lies in the first block of 50 000 vertices or in a later one; the other one
    // comes soon after it in the same block, in a lane of eight that the lanes' minimum meets
    // first.
    for (float first : {0.f, -0.f}) {
        for (std::size_t at : {std::size_t(5), std::size_t(60001), std::size_t(99977)}) {
            std::vector<Vector3> points(120001, Vector3{1.f, 2.f, 3.f});
            points[at] = Vector3{first, -first, first};
            points[at + 15] = Vector3{-first, first, -first};
            points[120000] = Vector3{-7.f, 9.f, 0.f};
            const Matrix camera;
            const FitProbes filtered(points, camera, FitProbes::Filtered);
            const FitProbes plain(points, camera, FitProbes::FullPasses);
            EXPECT_EQ(std::memcmp(filtered.low(), plain.low(), 3 * sizeof(float)), 0) << at;
            EXPECT_EQ(std::memcmp(filtered.high(), plain.high(), 3 * sizeof(float)), 0) << at;
            EXPECT_EQ(std::signbit(plain.low()[2]), std::signbit(first));
        }
    }
}

TEST(FitProbesTest, WholeFitsEqualFitsPassingOverEveryVertex)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<float> angle(-180.f, 180.f), pitch(-80.f, 80.f);
    std::uniform_real_distribution<float> unit(0.f, 1.f);
    int filteredFits = 0;
    for (int scene = 0; scene < 10; ++scene) {
        Document document;
        // A few meshes under moved, turned and scaled groups.
        for (int node = 0; node < 3; ++node) {
            auto *group = static_cast<SceneNode *>(
                document.root()->CreateChildGroup(QStringLiteral("Group")));
            group->applyPosition(
                Vector3{100.f * unit(random), 100.f * unit(random), 20.f * unit(random)});
            group->applyRotation(Vector3{angle(random), angle(random), angle(random)});
            group->applyScale(Vector3{0.5f + unit(random), 0.5f + unit(random), 1.f});
            addPointsNode(group, QStringLiteral("Mesh"), cloud((scene + node) % 5, 20000, random));
        }
        Camera *camera = document.camera();
        camera->setYaw(angle(random));
        camera->setPitch(pitch(random));
        camera->SetAspectRatio(0.5f + unit(random));
        SCOPED_TRACE(testing::Message() << "scene " << scene);
        for (bool keepAspect : {false, true}) {
            float result[2][5];
            int fullPasses = 0;
            for (FitProbes::Measuring measuring : {FitProbes::Filtered, FitProbes::FullPasses}) {
                FitToViewImplementation fit(&document, measuring);
                fit.SetKeepAspect(keepAspect);
                const Vector3 target = camera->GetTarget();
                float *r = result[measuring];
                r[0] = target.x, r[1] = target.y, r[2] = target.z;
                r[3] = camera->GetDistance(), r[4] = camera->GetAspectRatio();
                if (measuring == FitProbes::Filtered)
                    fullPasses = fit.fullPassCount();
                filteredFits += fit.passCount() > fit.fullPassCount() ? 1 : 0;
            }
            EXPECT_EQ(std::memcmp(result[0], result[1], sizeof result[0]), 0)
                << "keepAspect " << keepAspect << ", full passes " << fullPasses;
        }
    }
    EXPECT_GT(filteredFits, 10);
}
