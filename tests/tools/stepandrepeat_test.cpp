// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Step and Repeat's grid: where the copies stand, what a count or a step change does, limits and
// names.
#include "tests/tools/stepandrepeattest.h"

#include <QCoreApplication>
#include <QFile>
#include <QMetaProperty>
#include <QPushButton>

#include <cmath>
#include <set>

using namespace stepandrepeattest;
using vantrel::test::addPointsNode;
using vantrel::test::dump;
using vantrel::test::Near;

TEST_F(StepAndRepeatTest, TheDefaultGridWrapsTheShapeInItsPlaceAndFillsTheGroupInCellOrder)
{
    m_box->SetRotation({0, 0, 30}, false);
    m_box->SetScale({1, 2, 1}, 0);
    StepAndRepeatImpl settings(&document(), false, m_box);
    INode *group = settings.group();

    ASSERT_EQ(root()->GetChildren(), (std::vector<INode *>{m_front, group, m_back}))
        << "the group stands where the shape stood";
    EXPECT_EQ(group->GetNodeType(), INode::GroupNodeType);
    EXPECT_EQ(group->GetName(), QStringLiteral("Box"));
    EXPECT_TRUE(Near(positionOf(group), {5, 6, 7}));
    EXPECT_TRUE(Near(transformationsOf(group)->GetRotation(), {0, 0, 30}));
    EXPECT_TRUE(Near(transformationsOf(group)->GetScale(), {1, 2, 1}));

    const std::vector<INode *> &members = group->GetChildren();
    ASSERT_EQ(members.size(), 9u);
    EXPECT_EQ(members.front(), m_box) << "the shape itself is cell 0";
    EXPECT_EQ(std::vector<INode *>(members.begin() + 1, members.end()), settings.copies());
    EXPECT_EQ(namesOf(members), numberedNames(QStringLiteral("Box"), 9));

    const auto *sourceMesh = qobject_cast<IMeshNode *>(m_box);
    for (int k = 0; k < 9; ++k) {
        SCOPED_TRACE(testing::Message() << "cell " << k);
        EXPECT_TRUE(Near(positionOf(members[k]), cellPosition(k, 3, 3, {2, 1, 3}, {1, 1, 1})));
        EXPECT_TRUE(Near(transformationsOf(members[k])->GetRotation(), {0, 0, 0}));
        EXPECT_TRUE(Near(transformationsOf(members[k])->GetScale(), {1, 1, 1}));
        EXPECT_EQ(qobject_cast<IMeshNode *>(members[k])->GetMeshParts(), sourceMesh->GetMeshParts())
            << "copies share the shape's mesh";
    }
    EXPECT_TRUE(Near(positionOf(members[5]), {6, 2, 0})) << "column 2, row 1: spacing (3, 2, 4)";

    // The gaps between the boxes themselves, read from the vertices: exactly the steps.
    for (int k = 1; k < 9; ++k) {
        const TBBox<float> box = boxInParent(members[k]);
        if (k % 3 != 0) {
            EXPECT_NEAR(box.min[0] - boxInParent(members[k - 1]).max[0], 1.0, 1e-5) << k;
        }
        if (k >= 3) {
            EXPECT_NEAR(box.min[1] - boxInParent(members[k - 3]).max[1], 1.0, 1e-5) << k;
        }
    }

    settings.SetRepeatX(1);
    settings.SetRepeatY(1);
    EXPECT_TRUE(settings.copies().empty());
    EXPECT_EQ(group->GetChildren(), (std::vector<INode *>{m_box})) << "1 x 1 x 1 keeps the group";
    settings.setAccepted(true);
}

TEST_F(StepAndRepeatTest, ACountChangeReplacesEveryCopyAndAStepChangeOnlyMovesThem)
{
    StepAndRepeatImpl settings(&document(), false, m_box);
    INode *group = settings.group();
    const std::vector<INode *> old = settings.copies();

    settings.SetRepeatX(4);
    ASSERT_EQ(settings.copies().size(), 11u);
    const std::set<INode *> oldSet(old.begin(), old.end());
    for (INode *copy : settings.copies())
        EXPECT_EQ(oldSet.count(copy), 0u) << "every copy is new";
    for (INode *copy : old)
        EXPECT_EQ(copy->GetParent(), nullptr) << "and the old ones left the scene";
    EXPECT_EQ(namesOf(group->GetChildren()), numberedNames(QStringLiteral("Box"), 12));
    for (int k = 1; k < 12; ++k)
        EXPECT_TRUE(
            Near(positionOf(group->GetChildren()[k]), cellPosition(k, 4, 3, {2, 1, 3}, {1, 1, 1})))
            << "cell " << k << " of 4 columns";

    // Steps: the same nodes with the same names, moved. Negative steps overlap the boxes; a step
    // of minus the box size stacks a whole row of columns in one place.
    settings.SetRepeatZ(2);
    const std::vector<INode *> members = group->GetChildren();
    const struct
    {
        Vector3 steps;
    } cases[] = {{{-3, 1, 1}}, {{-2, -2.5f, 0.5f}}, {{100, -100, -3}}};
    for (const auto &c : cases) {
        settings.SetStepX(c.steps.x);
        settings.SetStepY(c.steps.y);
        settings.SetStepZ(c.steps.z);
        EXPECT_EQ(group->GetChildren(), members);
        EXPECT_EQ(namesOf(group->GetChildren()), numberedNames(QStringLiteral("Box"), 24));
        for (int k = 0; k < 24; ++k)
            EXPECT_TRUE(
                Near(positionOf(members[k]), cellPosition(k, 4, 3, {2, 1, 3}, c.steps), 1e-4f))
                << "cell " << k << " steps " << c.steps.x << ", " << c.steps.y << ", " << c.steps.z;
    }
    EXPECT_TRUE(Near(positionOf(members[3]), {306, 0, 0})) << "column 3 with a gap of 100";
    settings.SetStepX(-2);
    for (int k = 0; k < 4; ++k)
        EXPECT_EQ(positionOf(members[k]).x, 0.0f) << "every column at x = 0";
    settings.setAccepted(true);
}

TEST_F(StepAndRepeatTest, WritesAreLimitedAndAnEqualValueLeavesTheSceneAlone)
{
    StepAndRepeatImpl settings(&document(), false, m_box);
    const struct
    {
        int written, stored;
    } counts[] = {{0, 1}, {-7, 1}, {31, 30}, {INT_MAX, 30}, {2, 2}};
    for (const auto &c : counts) {
        settings.SetRepeatY(c.written);
        EXPECT_EQ(settings.GetRepeatY(), c.stored) << c.written;
        EXPECT_EQ(int(settings.copies().size()), 3 * c.stored - 1) << c.written;
    }
    const struct
    {
        float written, stored;
    } steps[] = {{500, 100}, {-1e9f, -100}, {INFINITY, 100}, {NAN, 0}, {-0.25f, -0.25f}};
    for (const auto &s : steps) {
        settings.SetStepZ(s.written);
        EXPECT_EQ(settings.GetStepZ(), s.stored) << s.written;
    }

    // Move a copy by hand: writes that change nothing after limiting do not lay out again.
    settings.SetStepX(100);
    const std::vector<INode *> copies = settings.copies();
    transformationsOf(copies[0])->SetPosition({-9, -9, -9}, false);
    const int steps0 = document().history().undoCount();
    settings.SetStepX(250);
    settings.SetRepeatX(3);
    settings.SetRepeatY(2);
    EXPECT_EQ(settings.copies(), copies);
    EXPECT_TRUE(Near(positionOf(copies[0]), {-9, -9, -9}));
    EXPECT_EQ(document().history().undoCount(), steps0) << "nothing recorded";
    settings.SetStepX(99);
    EXPECT_TRUE(Near(positionOf(copies[0]), {101, 0, 0}));
    settings.setAccepted(true);
}

TEST_F(StepAndRepeatTest, ATurnedOrScaledShapeCarriesTheWholeGrid)
{
    const struct
    {
        Vector3 rotation, scale;
    } cases[] = {{{0, 0, 90}, {1, 1, 1}}, {{0, 0, 0}, {2, 2, 2}}, {{90, 0, 90}, {1, 0.5f, 3}}};
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << "rotation z " << c.rotation.z << " scale " << c.scale.x
                                        << ", " << c.scale.y << ", " << c.scale.z);
        Session session;
        auto *box = addBoxNode(
            session.document().root(), QStringLiteral("Box"), {-1, -0.5f, 0}, {1, 0.5f, 3});
        box->SetPosition({5, 6, 7}, false);
        box->SetRotation(c.rotation, false);
        box->SetScale(c.scale, 0);
        // Before the tool: the shape's world box and the world images of its own axes.
        const TBBox<float> before = ComputeNodeBBox(box);
        Matrix world;
        GetNodeGlobalMatrix(world, box);

        StepAndRepeatImpl settings(&session.document(), false, box);
        settings.SetRepeatZ(2);
        settings.SetStepY(0.5f);
        const std::vector<INode *> &members = settings.group()->GetChildren();
        for (int k = 0; k < 18; ++k) {
            // The local offset of cell k along the shape's axes, carried into the world.
            const Vector3 local = cellPosition(k, 3, 3, {2, 1, 3}, {1, 0.5f, 1});
            const double shift[3]
                = {local.x * double(world[0]) + local.y * world[4] + local.z * world[8],
                   local.x * double(world[1]) + local.y * world[5] + local.z * world[9],
                   local.x * double(world[2]) + local.y * world[6] + local.z * world[10]};
            const TBBox<float> moved = ComputeNodeBBox(members[k]);
            for (int axis = 0; axis < 3; ++axis) {
                EXPECT_NEAR(moved.min[axis], before.min[axis] + shift[axis], 1e-3)
                    << "cell " << k << " axis " << axis;
                EXPECT_NEAR(moved.max[axis], before.max[axis] + shift[axis], 1e-3)
                    << "cell " << k << " axis " << axis;
            }
        }
        if (c.scale.x == 2) {
            // Twice the size and twice the gap: the world gap between neighbours is 2 x 1.
            EXPECT_NEAR(
                ComputeNodeBBox(members[1]).min[0] - ComputeNodeBBox(members[0]).max[0], 2.0, 1e-4);
        }
        settings.setAccepted(true);
    }
}

TEST_F(StepAndRepeatTest, AShapeWithoutGeometryIsSpacedByTheStepsAlone)
{
    MeshNode *empty = addPointsNode(root(), QStringLiteral("Nothing"), {});
    StepAndRepeatImpl settings(&document(), false, empty);
    settings.SetStepX(2.5f);
    settings.SetStepY(-4);
    settings.SetRepeatZ(3);
    const std::vector<INode *> &members = settings.group()->GetChildren();
    ASSERT_EQ(members.size(), 27u);
    for (int k = 0; k < 27; ++k)
        EXPECT_TRUE(Near(positionOf(members[k]), cellPosition(k, 3, 3, {0, 0, 0}, {2.5f, -4, 1})))
            << "cell " << k;
    settings.setAccepted(true);
}

TEST_F(StepAndRepeatTest, CopyNamesTakeTheGroupsNameAsItStands)
{
    m_box->SetName(QStringLiteral("50%2 off %1"));
    StepAndRepeatImpl settings(&document(), false, m_box);
    EXPECT_EQ(namesOf(settings.group()->GetChildren()),
              numberedNames(QStringLiteral("50%2 off %1"), 9))
        << "placeholders in the name are the name's own text";
    settings.group()->SetName(QStringLiteral("Crate"));
    settings.SetRepeatX(2);
    EXPECT_EQ(namesOf(settings.copies()), numberedNames(QStringLiteral("Crate"), 6).mid(1))
        << "a rebuild names the new copies after the group as it is now";
    EXPECT_EQ(m_box->GetName(), QStringLiteral("50%2 off %1 - 1")) << "the shape keeps its name";
    settings.setAccepted(true);
}
