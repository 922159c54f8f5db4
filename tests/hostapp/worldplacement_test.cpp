// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/document/worldplacement.h"
#include "hostapp/core/scene/meshnode.h"
#include "tests/support/testsupport.h"

#include <gtest/gtest.h>

using namespace vantrel::host;
using vantrel::test::addBoxNode;
using vantrel::test::dump;
using vantrel::test::Near;

namespace {

SceneNode *addGroup(BaseNode *parent,
                    const QString &name,
                    const Vector3 &position,
                    const Vector3 &rotation,
                    const Vector3 &scale)
{
    auto *group = static_cast<SceneNode *>(parent->CreateChildGroup(name));
    group->SetScale(scale, 0);
    group->SetRotation(rotation, false);
    group->SetPosition(position, false);
    return group;
}

std::vector<Matrix> worldMatrices(const std::vector<INode *> &nodes)
{
    std::vector<Matrix> result;
    for (const INode *node : nodes)
        result.push_back(WorldPlacement::worldMatrix(node));
    return result;
}

} // namespace

// A node given the parts decompose() finds has the local matrix they came from; the node builds
// its matrix itself, so this checks the split against the node's own composition, including a
// mirror, a turn straight up about y, and a matrix that only shifts.
TEST(WorldPlacement, DecomposedPartsRebuildTheSameLocalMatrix)
{
    Document document;
    const struct
    {
        Vector3 rotation, scale, position;
    } cases[] = {
        {{10.f, -35.f, 120.f}, {2.f, 0.5f, 1.5f}, {3.f, -4.f, 5.f}},
        {{-170.f, 60.f, -20.f}, {1.f, 1.f, -2.f}, {0.f, 0.f, 0.f}},
        {{30.f, 90.f, 0.f}, {1.f, 3.f, 1.f}, {-7.f, 1.f, 2.f}},
        {{0.f, 0.f, 0.f}, {1.f, 1.f, 1.f}, {12.f, 0.f, -1.f}},
    };
    for (const auto &c : cases) {
        SceneNode *made
            = addGroup(document.root(), QStringLiteral("Made"), c.position, c.rotation, c.scale);
        const WorldPlacement::Parts parts = WorldPlacement::decompose(made->GetLocalMatrix());
        SceneNode *rebuilt = addGroup(document.root(),
                                      QStringLiteral("Rebuilt"),
                                      parts.position,
                                      parts.rotation,
                                      parts.scale);
        EXPECT_TRUE(Near(rebuilt->GetLocalMatrix(), made->GetLocalMatrix(), 1e-5f))
            << "rotation " << c.rotation.x << " " << c.rotation.y << " " << c.rotation.z;
    }
}

// Moving shapes between turned, scaled and shifted groups, grouping them and ungrouping again
// leaves every shape's world matrix as it was; undo gives the scene back exactly.
TEST(WorldPlacement, MoveGroupAndUngroupKeepWorldMatricesAndUndoExactly)
{
    Document document;
    SceneNode *left = addGroup(document.root(),
                               QStringLiteral("Left"),
                               {10.f, 5.f, 0.f},
                               {0.f, 0.f, 35.f},
                               {2.f, 2.f, 2.f});
    SceneNode *right = addGroup(document.root(),
                                QStringLiteral("Right"),
                                {-20.f, 0.f, 3.f},
                                {15.f, -10.f, 70.f},
                                {0.5f, 0.5f, 0.5f});
    MeshNode *a = addBoxNode(left, QStringLiteral("A"), {0, 0, 0}, {2, 3, 4});
    a->SetRotation({5.f, 10.f, 20.f}, false);
    a->SetPosition({1.f, 2.f, 3.f}, false);
    MeshNode *b = addBoxNode(right, QStringLiteral("B"), {-1, -1, 0}, {1, 1, 6});
    b->SetScale({1.f, 2.f, 1.f}, 0);
    b->SetPosition({4.f, 0.f, 1.f}, false);
    MeshNode *c = addBoxNode(document.root(), QStringLiteral("C"), {0, 0, 0}, {5, 5, 5});
    c->SetPosition({30.f, 30.f, 0.f}, false);
    const std::vector<INode *> shapes = {a, b, c};
    const std::vector<Matrix> before = worldMatrices(shapes);
    document.history().clear();
    const QByteArray start = dump(document);

    document.BeginUndoGroup();
    WorldPlacement::moveNodes(document, right, 0, {a, c});
    document.EndUndoGroup();
    EXPECT_EQ(a->GetParent(), right);
    EXPECT_EQ(right->GetChildren(), (std::vector<INode *>{a, c, b}));
    for (std::size_t i = 0; i < shapes.size(); ++i)
        EXPECT_TRUE(Near(WorldPlacement::worldMatrix(shapes[i]), before[i], 1e-4f)) << i;
    vantrel::test::expectUndoRedoExact(document, start, "move");

    document.BeginUndoGroup();
    INode *group = WorldPlacement::group(document, {b, a, c, b}, QStringLiteral("All"));
    document.EndUndoGroup();
    ASSERT_NE(group, nullptr);
    // In A's place, holding the three in scene order, standing below the centre of their box.
    EXPECT_EQ(group->GetParent(), left);
    EXPECT_EQ(group->GetChildren(), (std::vector<INode *>{a, b, c}));
    for (std::size_t i = 0; i < shapes.size(); ++i)
        EXPECT_TRUE(Near(WorldPlacement::worldMatrix(shapes[i]), before[i], 1e-4f)) << i;
    TBBox<float> box = ComputeNodeBBox(group);
    const Matrix groupWorld = WorldPlacement::worldMatrix(group);
    EXPECT_NEAR(groupWorld[12], 0.5f * (box.min[0] + box.max[0]), 1e-4f);
    EXPECT_NEAR(groupWorld[13], 0.5f * (box.min[1] + box.max[1]), 1e-4f);
    EXPECT_NEAR(groupWorld[14], box.min[2], 1e-4f);

    document.BeginUndoGroup();
    EXPECT_EQ(WorldPlacement::ungroup(document, group), (std::vector<INode *>{a, b, c}));
    document.EndUndoGroup();
    EXPECT_EQ(left->GetChildren(), (std::vector<INode *>{a, b, c}));
    EXPECT_EQ(group->GetParent(), nullptr);
    for (std::size_t i = 0; i < shapes.size(); ++i)
        EXPECT_TRUE(Near(WorldPlacement::worldMatrix(shapes[i]), before[i], 1e-4f)) << i;
    // Two steps back to the start, exactly.
    ASSERT_TRUE(document.undo());
    ASSERT_TRUE(document.undo());
    EXPECT_EQ(dump(document), start);
}

// A group cannot go into itself or below itself; the refused node stays where and as it was.
TEST(WorldPlacement, RefusedMovesChangeNothing)
{
    Document document;
    SceneNode *outer = addGroup(document.root(),
                                QStringLiteral("Outer"),
                                {1.f, 2.f, 3.f},
                                {0.f, 0.f, 45.f},
                                {1.f, 1.f, 1.f});
    SceneNode *inner = addGroup(outer, QStringLiteral("Inner"), {0.f, 0.f, 0.f}, {}, {1, 1, 1});
    const QByteArray start = dump(document);
    WorldPlacement::moveNodes(document, inner, 0, {outer});
    WorldPlacement::moveNodes(document, outer, 0, {outer});
    EXPECT_EQ(dump(document), start);
    EXPECT_EQ(WorldPlacement::group(document, {document.root()}, QStringLiteral("G")), nullptr);
    EXPECT_TRUE(WorldPlacement::ungroup(document, document.root()).empty());
    EXPECT_EQ(dump(document), start);
}
