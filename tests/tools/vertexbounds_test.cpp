// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The vertex passes Fit To View measures with, against a plain scalar pass.
#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "host/icamera.h"
#include "host/inode.h"
#include "hostapp/core/commands/session.h"
#include "hostapp/core/scene/camera.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/core/scene/scenenode.h"
#include "tests/support/testsupport.h"
#include "tests/support/toolssession.h"
#include "tests/tools/fittoviewtest.h"
#include "tools/fittoview/fittoviewimplementation.h"
#include "tools/fittoview/vertexbounds.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QCoreApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QPushButton>

#include <cfloat>
#include <cmath>
#include <functional>
#include <random>

using namespace fittoviewtest;
using vantrel::test::addBoxNode;
using vantrel::test::addPointsNode;
using vantrel::test::Near;

namespace {

std::vector<Vector3> randomPoints(std::size_t count, unsigned seed, float spread = 50.f)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> place(-spread, spread);
    std::vector<Vector3> points(count);
    for (Vector3 &p : points)
        p = Vector3{place(random), place(random), place(random)};
    return points;
}

} // namespace

TEST(VertexBoundsTest, BlocksCutTheListInFiftyThousands)
{
    const Matrix identity;
    const struct
    {
        std::size_t vertices;
        std::vector<std::size_t> sizes;
    } cases[] = {{0, {}}, {50000, {50000}}, {50001, {50000, 1}}, {120000, {50000, 50000, 20000}}};
    for (const auto &c : cases) {
        const std::vector<Vector3> vertices(c.vertices);
        const std::vector<sBlockOfVertices> blocks = makeBlocks(vertices, &identity);
        ASSERT_EQ(blocks.size(), c.sizes.size()) << c.vertices;
        const Vector3 *next = vertices.data();
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            EXPECT_EQ(blocks[i].begin, next);
            EXPECT_EQ(std::size_t(blocks[i].end - blocks[i].begin), c.sizes[i]);
            EXPECT_EQ(blocks[i].matrix, &identity);
            next = blocks[i].end;
        }
    }
}

TEST(VertexBoundsTest, PassesEqualASequentialPassAtEverySize)
{
    Document document;
    ICamera *camera = document.GetCamera();
    camera->SetTarget(Vector3{3, -2, 1});
    camera->SetDistance(130);
    const View v = viewOf(camera);
    // Sizes around the lanes, the blocks and the thread pool.
    for (std::size_t count : {0, 1, 3, 4, 7, 8, 9, 17, 50000, 50001, 120000}) {
        const std::vector<Vector3> vertices = randomPoints(count, unsigned(count) + 1);
        SCOPED_TRACE(count);
        EXPECT_TRUE(sameBounds(computeProjectedBounds(vertices, v.global, v.projection),
                               sequentialBounds(vertices, v.viewProjection)));
        EXPECT_EQ(allVerticesInside(vertices, v.global, v.projection),
                  sequentialInside(vertices, v.viewProjection));
    }
    const ProjectedBounds none = computeProjectedBounds({}, v.global, v.projection);
    EXPECT_TRUE(sameBounds(none, ProjectedBounds{FLT_MAX, FLT_MAX, -FLT_MAX, -FLT_MAX}));
    EXPECT_TRUE(allVerticesInside({}, v.global, v.projection));
}

TEST(VertexBoundsTest, TheFrameEdgeIsInsideAndAHairBeyondIsNot)
{
    // With the identity as view-projection a vertex projects to its own x and y (w = 1), so the
    // edge can be hit exactly.
    const Matrix identity;
    std::atomic<bool> flag{true};
    auto inside = [&](const std::vector<Vector3> &vertices) {
        flag = true;
        for (sBlockOfVertices &block : makeBlocks(vertices, &identity)) {
            block.allInside = &flag;
            testBlockInside(block);
        }
        return flag.load();
    };
    EXPECT_TRUE(inside({{1, -1, 0}, {-1, 1, 5}, {0, 0, 0}}));
    EXPECT_TRUE(inside({{std::nanf(""), 0, 0}})) << "NaN fails both comparisons";
    // One vertex a hair outside, at every place of blocks of several lengths: inside the lanes,
    // at their ends and in the tail.
    for (int length = 1; length <= 19; ++length) {
        for (int at = 0; at < length; ++at) {
            std::vector<Vector3> vertices(std::size_t(length), Vector3{0.5f, -0.5f, 0});
            const Vector3 outside[]
                = {{1.0001f, 0, 0}, {0, -1.0001f, 0}, {-1.0001f, 0, 0}, {0, 1.0001f, 0}};
            vertices[std::size_t(at)] = outside[at % 4];
            EXPECT_FALSE(inside(vertices)) << "length " << length << " at " << at;
        }
    }
    // The bounds pass over the same kinds of blocks, against plain minima and maxima.
    std::mt19937 random(7);
    std::uniform_real_distribution<float> place(-3, 3);
    for (int length = 0; length <= 19; ++length) {
        std::vector<Vector3> vertices{std::size_t(length), Vector3{}};
        float minX = FLT_MAX, maxX = -FLT_MAX, minY = FLT_MAX, maxY = -FLT_MAX;
        for (Vector3 &p : vertices) {
            p = Vector3{place(random), place(random), place(random)};
            minX = std::min(minX, p.x), maxX = std::max(maxX, p.x);
            minY = std::min(minY, p.y), maxY = std::max(maxY, p.y);
        }
        sBlockOfVertices block{vertices.data(),
                               vertices.data() + length,
                               &identity,
                               nullptr,
                               FLT_MAX,
                               FLT_MAX,
                               -FLT_MAX,
                               -FLT_MAX};
        accumulateBlockBounds(block);
        EXPECT_TRUE(sameBounds(ProjectedBounds{block.minX, block.minY, block.maxX, block.maxY},
                               ProjectedBounds{minX, minY, maxX, maxY}))
            << "length " << length;
    }
}

TEST(VertexBoundsTest, VisibilityIsAskedNodeByNodeInWorldSpace)
{
    Document document;
    auto *group
        = static_cast<SceneNode *>(document.root()->CreateChildGroup(QStringLiteral("Rig")));
    group->applyPosition(Vector3{10, 0, 0});
    group->applyScale(Vector3{2, 2, 2});
    MeshNode *hidden = addPointsNode(group, QStringLiteral("Hidden"), {{1, 1, 1}});
    hidden->SetVisible(false);
    addPointsNode(hidden, QStringLiteral("Shown under hidden"), {{0, 0, 1}, {0, 0, 2}});
    addPointsNode(document.root(), QStringLiteral("No vertices"), {});
    addPointsNode(document.root(), QStringLiteral("Plain"), {{-1, -2, -3}});
    group->SetVisible(false); // only mesh nodes answer for themselves

    std::vector<Vector3> vertices;
    collectVertices(vertices, document.GetRootNode(), Matrix());
    // The hidden mesh's own vertex is left out, its visible child's are in, through the group's
    // scale and move.
    ASSERT_EQ(vertices.size(), 3u);
    EXPECT_TRUE(Near(vertices[0], Vector3{10, 0, 2}));
    EXPECT_TRUE(Near(vertices[1], Vector3{10, 0, 4}));
    EXPECT_TRUE(Near(vertices[2], Vector3{-1, -2, -3}));
}
