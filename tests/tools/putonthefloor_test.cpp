// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/document/documentcontext.h"
#include "hostapp/core/scene/meshnode.h"
#include "tests/support/testsupport.h"
#include "tools/putonthefloor/floorplacement.h"
#include "tools/putonthefloor/putonthefloor.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace vantrel::host;
using vantrel::test::addBoxNode;
using vantrel::test::addPointsNode;
using vantrel::test::dump;
using vantrel::test::lowestWorldZ;
using vantrel::test::Near;

namespace {

// The document as the tool sees it, with a selection that this host would not allow (it never
// selects the root): the root is the one node without ITransformations.
class SelectionOverride final : public IDocument
{
public:
    SelectionOverride(Document &document, std::vector<INode *> selection)
        : m_document(document)
        , m_selection(std::move(selection))
    {}
    INode *GetRootNode() const override { return m_document.GetRootNode(); }
    ICamera *GetCamera() const override { return m_document.GetCamera(); }
    const std::vector<INode *> &GetSelection() const override { return m_selection; }
    void SetSelection(const std::vector<INode *> &n, int mode) override
    {
        m_document.SetSelection(n, mode);
    }
    void DeleteNodes(const std::vector<INode *> &n) override { m_document.DeleteNodes(n); }
    void MoveNodes(INode *p, int i, const std::vector<INode *> &n) override
    {
        m_document.MoveNodes(p, i, n);
    }
    INode *CloneNode(INode *n, int flag) override { return m_document.CloneNode(n, flag); }
    float GetAmbientIntensity() const override { return m_document.GetAmbientIntensity(); }
    void SetAmbientIntensity(float v) override { m_document.SetAmbientIntensity(v); }
    void SetLightingMode(int mode) override { m_document.SetLightingMode(mode); }
    void BeginUndoGroup() override { m_document.BeginUndoGroup(); }
    void EndUndoGroup() override { m_document.EndUndoGroup(); }
    void CancelUndoGroup() override { m_document.CancelUndoGroup(); }

private:
    Document &m_document;
    std::vector<INode *> m_selection;
};

class PutOnTheFloorTest : public ::testing::Test
{
protected:
    void select(const std::vector<INode *> &nodes)
    {
        m_document.SetSelection(nodes, Document::ReplaceSelection);
        m_document.history().clear();
    }
    void run()
    {
        DocumentContext context(&m_document);
        PutOnTheFloor().Execute(context);
    }

    Document m_document;
};

} // namespace

TEST_F(PutOnTheFloorTest, MovesTheSelectionTogetherByTheLowestPointOnly)
{
    BaseNode *root = m_document.root();
    MeshNode *low = addBoxNode(root, QStringLiteral("Low"), {-1, -1, 1}, {1, 1, 2});   // bottom z 1
    MeshNode *high = addBoxNode(root, QStringLiteral("High"), {-1, -1, 3}, {1, 1, 4}); // bottom z 3
    low->SetPosition({4, 5, 0}, false);
    low->SetRotation({0, 0, 33}, false);
    low->SetScale({2, 3, 1}, 0);
    addBoxNode(root, QStringLiteral("Unselected"), {0, 0, -7}, {1, 1, 1});
    select({high, low});
    const QByteArray before = dump(m_document);

    run();
    EXPECT_EQ(low->GetPosition(), Vector3(4, 5, -1)) << "x and y kept, lowered by 1";
    EXPECT_EQ(high->GetPosition(), Vector3(0, 0, -1)) << "the same distance for every node";
    EXPECT_NEAR(lowestWorldZ(low), 0.0, 1e-6);
    EXPECT_NEAR(lowestWorldZ(high), 2.0, 1e-6);
    EXPECT_EQ(low->GetRotation(), Vector3(0, 0, 33));
    EXPECT_EQ(low->GetScale(), Vector3(2, 3, 1));

    EXPECT_EQ(m_document.history().undoCount(), 1);
    ASSERT_TRUE(m_document.undo());
    EXPECT_EQ(dump(m_document), before);
}

TEST_F(PutOnTheFloorTest, ARotatedShapeRestsOnItsLowestVertexNotItsBoxCorner)
{
    // A diamond turned about x and y: its lowest point is a tip, well above where the corners of
    // its turned local box would reach.
    MeshNode *gem
        = addPointsNode(m_document.root(),
                        QStringLiteral("Gem"),
                        {{2, 0, 0}, {-2, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 3}, {0, 0, -3}});
    gem->SetRotation({40, 25, 10}, false);
    gem->SetPosition({1, 1, 7.5f}, false);
    select({gem});
    run();
    EXPECT_NEAR(lowestWorldZ(gem), 0.0, 1e-5) << "the lowest vertex ends on the floor";
    EXPECT_NEAR(gem->GetPosition().x, 1.f, 0.f);
    EXPECT_NEAR(gem->GetPosition().y, 1.f, 0.f);
}

TEST_F(PutOnTheFloorTest, AChildOfATurnedAndScaledParentLandsThroughTheParentsMatrix)
{
    auto *parent
        = static_cast<SceneNode *>(m_document.root()->CreateChildGroup(QStringLiteral("Parent")));
    parent->SetRotation({30, -20, 45}, false);
    parent->SetScale({1.5f, 0.5f, 2}, 0);
    parent->SetPosition({10, -3, 20}, false);
    MeshNode *child = addBoxNode(parent, QStringLiteral("Child"), {-1, -2, -1}, {1, 2, 3});
    child->SetPosition({2, 1, 5}, false);
    child->SetRotation({0, 15, 0}, false);
    Matrix before;
    GetNodeGlobalMatrix(before, child);
    select({child});

    run();
    Matrix after;
    GetNodeGlobalMatrix(after, child);
    EXPECT_NEAR(lowestWorldZ(child), 0.0, 1e-4);
    EXPECT_NEAR(after[12], before[12], 1e-4f) << "the world x of the child is kept";
    EXPECT_NEAR(after[13], before[13], 1e-4f) << "and its world y";
    EXPECT_EQ(parent->GetPosition(), Vector3(10, -3, 20)) << "the unselected parent stays";
}

TEST_F(PutOnTheFloorTest, NodesThatCannotMoveCountButStay)
{
    // The root, selected together with a box: the union box reaches down to the sunken crate, so
    // the box moves up by 5 while the root (no ITransformations) stays where it is.
    MeshNode *box = addBoxNode(m_document.root(), QStringLiteral("Box"), {0, 0, 2}, {1, 1, 3});
    addBoxNode(m_document.root(), QStringLiteral("Sunken"), {0, 0, -5}, {1, 1, 0});
    SelectionOverride document(m_document, {m_document.root(), box, nullptr});
    PlaceSelectionOnTheFloor(document);
    EXPECT_EQ(box->GetPosition(), Vector3(0, 0, 5));
    EXPECT_EQ(m_document.root()->GetLocalMatrix(), Matrix());
    EXPECT_EQ(m_document.history().undoCount(), 3) << "two boxes made, then the move: one step";
}

TEST_F(PutOnTheFloorTest, NothingToMeasureChangesNothingAndRecordsNothing)
{
    INode *emptyGroup = m_document.root()->CreateChildGroup(QStringLiteral("Empty"));
    INode *light = m_document.root()->CreateChildLight(QStringLiteral("Lamp"));
    select({});
    const QByteArray before = dump(m_document);
    run();
    EXPECT_EQ(m_document.history().undoCount(), 0) << "empty selection";

    select({emptyGroup, light});
    run();
    EXPECT_EQ(m_document.history().undoCount(), 0) << "a selection without vertices";
    m_document.SetSelection({}, Document::ReplaceSelection);
    EXPECT_EQ(dump(m_document), before);
}

TEST_F(PutOnTheFloorTest, ASelectionOnTheFloorStillMakesOneUndoStep)
{
    MeshNode *box = addBoxNode(m_document.root(), QStringLiteral("Box"), {0, 0, 0}, {1, 1, 1});
    select({box});
    const QByteArray before = dump(m_document);
    run();
    EXPECT_EQ(dump(m_document), before);
    EXPECT_EQ(m_document.history().undoCount(), 1);
}

TEST_F(PutOnTheFloorTest, ANodeUnderAFlattenedParentIsLeftWhereItIs)
{
    auto *flat
        = static_cast<SceneNode *>(m_document.root()->CreateChildGroup(QStringLiteral("Flat")));
    flat->SetScale({1, 0, 1}, 0); // singular: no local place reaches a given world place
    MeshNode *inside = addBoxNode(flat, QStringLiteral("Inside"), {0, 0, 4}, {1, 1, 5});
    MeshNode *outside
        = addBoxNode(m_document.root(), QStringLiteral("Outside"), {0, 0, 2}, {1, 1, 3});
    select({inside, outside});
    run();
    EXPECT_EQ(inside->GetPosition(), Vector3(0, 0, 0)) << "left where it is";
    EXPECT_EQ(outside->GetPosition(), Vector3(0, 0, -2)) << "the others still move";
}
