// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/meshnode.h"
#include "tests/support/testsupport.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace vantrel::host;
using vantrel::test::addBoxNode;
using vantrel::test::addPointsNode;
using vantrel::test::dump;
using vantrel::test::lowestWorldZ;

namespace {

// A diamond: its local box is the cube from -1 to 1, but its vertices are the six axis points.
const std::vector<Vector3> diamond
    = {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}};

std::vector<INode *> childrenOf(const BaseNode *node)
{
    return node->GetChildren();
}

} // namespace

TEST(NodeBox, ComesFromTheWorldVerticesNotFromTransformedBoxCorners)
{
    Document document;
    auto *parent
        = static_cast<SceneNode *>(document.root()->CreateChildGroup(QStringLiteral("Turned")));
    parent->SetRotation({0, 0, 30}, false);
    parent->SetScale({2, 2, 2}, 0);
    parent->SetPosition({5, 0, 10}, false);
    MeshNode *gem = addPointsNode(parent, QStringLiteral("Gem"), diamond);
    gem->SetRotation({45, 0, 0}, false);

    // Turned 45 degrees about x, the lowest vertex is a tip at local z -cos 45 (scaled by 2),
    // whereas the turned cube of the local box would reach down to -sqrt 2.
    const TBBox<float> box = ComputeNodeBBox(gem);
    EXPECT_NEAR(box.min[2], 10 - 2 * std::cos(M_PI / 4), 1e-4);
    EXPECT_NEAR(box.min[2], lowestWorldZ(gem), 1e-4);
    EXPECT_NEAR(box.max[2], 10 + 2 * std::cos(M_PI / 4), 1e-4);

    const TBBox<float> groupBox = ComputeNodeBBox(parent);
    for (int axis = 0; axis < 3; ++axis) {
        EXPECT_EQ(groupBox.min[axis], box.min[axis]) << "a group's box is its subtree's";
        EXPECT_EQ(groupBox.max[axis], box.max[axis]);
    }

    // Measured in the parent's frame (identity), the node's own transform still applies.
    TBBox<float> local;
    UpdateBBoxRecursive(local, gem, Matrix());
    EXPECT_NEAR(local.min[2], -std::cos(M_PI / 4), 1e-5);
    EXPECT_NEAR(local.min[0], -1, 1e-6);

    TBBox<float> empty
        = ComputeNodeBBox(document.root()->CreateChildGroup(QStringLiteral("Empty")));
    EXPECT_TRUE(IsBoxEmpty(empty)) << "a subtree without vertices has an empty box";
}

TEST(NodeLists, PositionsAndPreOrderCollectionWithoutRepeats)
{
    Document document;
    BaseNode *root = document.root();
    INode *a = root->CreateChildGroup(QStringLiteral("A"));
    INode *a1 = a->CreateChildGroup(QStringLiteral("A1"));
    INode *a2 = a->CreateChildLight(QStringLiteral("A2"));
    INode *a11 = a1->CreateChildGroup(QStringLiteral("A11"));
    INode *b = root->CreateChildGroup(QStringLiteral("B"));

    EXPECT_EQ(GetNodePos(a2), 1);
    EXPECT_EQ(GetNodePos(b), 1);
    EXPECT_EQ(GetNodePos(root), -1) << "the root has no parent";
    EXPECT_EQ(MakeListOfNodes(b), std::vector<INode *>{b});
    EXPECT_EQ(CollectAllChildren({b, a, a1}), (std::vector<INode *>{b, a, a1, a11, a2}))
        << "pre-order, and A1 lies below A already";
}

TEST(Clone, CopiesTheSubtreeBesideTheOriginalAndSharesMeshesUntilOneChanges)
{
    Document document;
    auto *group
        = static_cast<SceneNode *>(document.root()->CreateChildGroup(QStringLiteral("Pair")));
    MeshNode *book = group->createChildShape("generator.Book.HardCover", QStringLiteral("Book"));
    group->CreateChildLight(QStringLiteral("Lamp"));
    book->SetPosition({1, 2, 3}, false);
    document.root()->CreateChildGroup(QStringLiteral("After"));

    INode *copy = document.CloneNode(group, 0);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->GetParent(), document.root());
    EXPECT_EQ(GetNodePos(copy), 2) << "appended after the last child";
    ASSERT_EQ(copy->GetChildren().size(), 2u);
    auto *bookCopy = qobject_cast<MeshNode *>(copy->GetChildren()[0]);
    ASSERT_NE(bookCopy, nullptr);
    EXPECT_EQ(bookCopy->GetPosition(), Vector3(1, 2, 3));
    EXPECT_EQ(bookCopy->mesh(), book->mesh()) << "clones share one mesh";
    EXPECT_EQ(bookCopy->generator()->parameters(), book->generator()->parameters());

    bookCopy->generator()->setProperty("width", 40.f);
    EXPECT_NE(bookCopy->mesh(), book->mesh()) << "a changed copy gets a mesh of its own";
    EXPECT_NEAR(bookCopy->GetLocalBBox().max[0] - bookCopy->GetLocalBBox().min[0], 40.f, 1.f);
    EXPECT_EQ(document.CloneNode(document.root(), 0), nullptr) << "the root cannot be copied";
}

TEST(Move, InsertsAtTheIndexAppendsPastTheEndAndRefusesCycles)
{
    Document document;
    BaseNode *root = document.root();
    INode *a = root->CreateChildGroup(QStringLiteral("A"));
    INode *b = root->CreateChildGroup(QStringLiteral("B"));
    INode *c = root->CreateChildGroup(QStringLiteral("C"));
    INode *inner = a->CreateChildGroup(QStringLiteral("Inner"));

    document.MoveNodes(root, 0, {c});
    EXPECT_EQ(childrenOf(root), (std::vector<INode *>{c, a, b}));
    document.MoveNodes(root, 99, {c, a});
    EXPECT_EQ(childrenOf(root), (std::vector<INode *>{b, c, a}))
        << "past the end appends in list order";

    const QByteArray before = dump(document);
    document.MoveNodes(inner, 0, {a});
    document.MoveNodes(a, 0, {a});
    document.MoveNodes(a, 0, {root});
    EXPECT_EQ(dump(document), before) << "a node never goes below itself, and the root stays";
}

TEST(Delete, TakesSubtreesOutWithTheirSelectionAndUndoPutsThemBackInPlace)
{
    Document document;
    BaseNode *root = document.root();
    std::vector<INode *> boxes;
    boxes.reserve(6);
    for (int i = 0; i < 6; ++i)
        boxes.push_back(addBoxNode(root, QStringLiteral("Box %1").arg(i), {0, 0, 0}, {1, 1, 1}));
    INode *nested = boxes[4]->CreateChildGroup(QStringLiteral("Nested"));
    document.SetSelection({boxes[0], nested, boxes[5]}, Document::ReplaceSelection);
    document.history().clear();
    const QByteArray before = dump(document);

    document.DeleteNodes({boxes[4], boxes[1], nested, boxes[3], boxes[1]});
    EXPECT_EQ(childrenOf(root), (std::vector<INode *>{boxes[0], boxes[2], boxes[5]}));
    EXPECT_EQ(document.GetSelection(), (std::vector<INode *>{boxes[0], boxes[5]}))
        << "the selected node inside a removed subtree left the selection";
    EXPECT_EQ(document.history().undoCount(), 1) << "removal and selection are one step";
    ASSERT_TRUE(document.undo());
    EXPECT_EQ(dump(document), before) << "every node back at its index, the selection restored";
}

// The one public way to put a node into the tree: a node of this document is one undo step; a
// node or parent of another document, or a node already in a tree, changes neither document.
TEST(AddNode, ANewNodeIsOneStepAndAForeignOrPlacedOneChangesNothing)
{
    Document document;
    Document other;
    BaseNode *group
        = static_cast<BaseNode *>(document.root()->CreateChildGroup(QStringLiteral("Group")));
    BaseNode *inGroup
        = static_cast<BaseNode *>(group->CreateChildGroup(QStringLiteral("In Group")));
    other.root()->CreateChildGroup(QStringLiteral("Elsewhere"));
    document.history().clear();
    other.history().clear();
    const QByteArray before = dump(document);
    const QByteArray otherBefore = dump(other);

    EXPECT_EQ(
        document.addNode(group, std::make_unique<SceneNode>(&other, QStringLiteral("Foreign"))),
        nullptr);
    EXPECT_EQ(document.addNode(other.root(),
                               std::make_unique<SceneNode>(&document, QStringLiteral("Lost"))),
              nullptr);
    EXPECT_EQ(document.addNode(document.root(), std::unique_ptr<BaseNode>(inGroup)), nullptr);
    EXPECT_EQ(inGroup->parentNode(), group) << "a placed node stays where it was";
    EXPECT_EQ(dump(document), before);
    EXPECT_EQ(dump(other), otherBefore);
    EXPECT_EQ(document.history().undoCount() + other.history().undoCount(), 0);

    BaseNode *added
        = document.addNode(group, std::make_unique<SceneNode>(&document, QStringLiteral("Added")));
    ASSERT_NE(added, nullptr);
    EXPECT_EQ(childrenOf(group), (std::vector<INode *>{inGroup, added}));
    EXPECT_EQ(document.history().undoCount(), 1);
    ASSERT_TRUE(document.undo());
    EXPECT_EQ(dump(document), before);
    ASSERT_TRUE(document.redo());
    EXPECT_EQ(childrenOf(group), (std::vector<INode *>{inGroup, added}));
}

// A group of 27 000 children is built, emptied and restored through the document's own
// operations. Nothing is timed here (bench/ measures that); with a cost quadratic in the child
// count this would not finish within the test's time limit.
TEST(Scale, AGroupOfTwentySevenThousandChildrenIsBuiltEmptiedAndRestored)
{
    Document document;
    INode *group = document.root()->CreateChildGroup(QStringLiteral("Grid"));
    INode *source
        = addBoxNode(static_cast<BaseNode *>(group), QStringLiteral("Box"), {0, 0, 0}, {1, 1, 1});
    const QByteArray empty = dump(document);

    document.BeginUndoGroup();
    for (int i = 1; i < 27000; ++i) {
        INode *copy = document.CloneNode(source, 1);
        copy->SetName(QStringLiteral("Box - %1").arg(i + 1));
        document.MoveNodes(group, i, {copy});
        const int column = i % 30, row = (i / 30) % 30, layer = i / 900;
        qobject_cast<ITransformations *>(copy)->SetPosition(
            {float(column), float(row), float(layer)}, false);
    }
    document.EndUndoGroup();
    ASSERT_EQ(group->GetChildren().size(), 27000u);
    EXPECT_EQ(group->GetChildren()[26999]->GetName(), QStringLiteral("Box - 27000"));
    const QByteArray full = dump(document);

    std::vector<INode *> copies(group->GetChildren().begin() + 1, group->GetChildren().end());
    document.DeleteNodes(CollectAllChildren(copies));
    EXPECT_EQ(dump(document), empty);
    ASSERT_TRUE(document.undo());
    EXPECT_EQ(dump(document), full) << "every copy back in its place";
    ASSERT_TRUE(document.undo());
    EXPECT_EQ(dump(document), empty);
    ASSERT_TRUE(document.redo());
    EXPECT_EQ(dump(document), full);

    document.BeginUndoGroup();
    document.DeleteNodes(copies);
    document.CancelUndoGroup();
    EXPECT_EQ(dump(document), full);
}

TEST(CameraChange, EveryCameraMoveTellsViewsAndRecordsNothing)
{
    Document document;
    int cameraChanges = 0, sceneChanges = 0;
    QObject::connect(&document, &Document::cameraChanged, [&] { ++cameraChanges; });
    QObject::connect(&document, &Document::changed, [&] { ++sceneChanges; });
    const int stepsBefore = document.history().undoCount();
    ICamera *camera = document.GetCamera(); // through the interface, as Fit To View moves it
    camera->SetTarget(Vector3(1.f, 2.f, 3.f));
    camera->SetDistance(50.f);
    camera->SetAspectRatio(2.f);
    document.camera()->setYaw(10.f);
    document.camera()->setPitch(95.f); // limited, and still a move
    document.camera()->setFieldOfView(30.f);
    document.camera()->reset();
    EXPECT_EQ(cameraChanges, 7) << "one notification per setter and reset";
    EXPECT_EQ(sceneChanges, 0) << "the camera is view state, not a scene change";
    EXPECT_EQ(document.history().undoCount(), stepsBefore);
}
