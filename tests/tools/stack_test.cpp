// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "host/hostfunctions.h"
#include "host/inode.h"
#include "host/itransformations.h"
#include "hostapp/core/commands/session.h"
#include "hostapp/core/scene/generatorregistry.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/core/scene/scenenode.h"
#include "tests/support/testsupport.h"
#include "tests/support/toolssession.h"
#include "tools/stack/stackbuilder.h"
#include "tools/stack/stackclassification.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDialog>
#include <QDir>
#include <QPixmap>

#include <cmath>
#include <cstdlib>

using namespace vantrel::host;
using vantrel::test::addBoxNode;
using vantrel::test::dump;
using vantrel::test::Near;

namespace {

ITransformations *transformations(INode *node)
{
    return qobject_cast<ITransformations *>(node);
}

// The draws a layout makes after seeding: one discarded, then three per node.
std::vector<float> drawsFor(int seed, std::size_t nodes)
{
    std::srand(unsigned(seed));
    std::rand();
    std::vector<float> draws;
    for (std::size_t i = 0; i < 3 * nodes; ++i)
        draws.push_back(float(std::rand()) * 4.656613e-10f - 0.5f);
    return draws;
}

// The centre of the node's world box, and its height range.
struct Placed
{
    double x, y, bottom, top;
};

Placed placed(INode *node)
{
    const TBBox<float> box = ComputeNodeBBox(node);
    return Placed{
        (box.min[0] + box.max[0]) / 2.0, (box.min[1] + box.max[1]) / 2.0, box.min[2], box.max[2]};
}

using StackTest = vantrel::test::ToolsSessionTest;

} // namespace

TEST(StackClassificationTest, TheWholeTableAndItsNearMisses)
{
    const QMap<QString, QVariant> none;
    const QMap<QString, QVariant> closed{{QStringLiteral("coverAngle"), 0}};
    const QMap<QString, QVariant> plain{{QStringLiteral("type"), 0}};
    const QMap<QString, QVariant> flat{{QStringLiteral("bend"), 0}};
    const struct
    {
        const char *id;
        bool stackable;
        const QMap<QString, QVariant> &required;
    } cases[] = {
        {"generator.DiscBox.DigipakDVD", true, closed},
        {"generator.DiscBox.DigipakCD", true, closed},
        {"generator.DiscBox.DVD", true, closed},
        {"generator.DiscBox.SlimCD", true, closed},
        {"generator.DiscBox.BluRay", true, closed},
        {"generator.Devices.iPad", true, none},
        {"generator.Devices.iPhone4", true, none},
        {"generator.Devices.iPhone5", true, none},
        {"generator.canvas.simple", true, none},
        {"generator.Boxes.Box", true, none},
        {"generator.Boxes.SlidingBox", true, none},
        {"generator.Boxes.TaggedBox", true, none},
        {"generator.DiscBox.Disc", true, none},
        {"generator.Book.HardCover", true, none},
        {"generator.Book.PaperbackRoundCorners", true, none},
        {"generator.Book.Magazine", true, none},
        {"generator.Book.Stepback", true, plain},
        {"generator.Book.Paperback", true, plain},
        {"generator.Images.Image", true, flat},
        {"generator.external.model", true, none},
        {"GENERATOR.BOOK.PAPERBACK", true, plain},
        {"generator.images.image", true, flat},
        {"generator.Book.Paperback ", false, none},
        {"generator.Book.Paper", false, none},
        {"generator.Book.PaperbackRound", false, none},
        {"generator.Book", false, none},
        {"", false, none},
        {"generator.Boxes.Box.Lid", false, none},
    };
    for (const auto &c : cases) {
        QMap<QString, QVariant> required{{QStringLiteral("left over"), 5}};
        EXPECT_EQ(ClassifyStackGenerator(QLatin1String(c.id), required), c.stackable) << c.id;
        EXPECT_EQ(required, c.required) << c.id;
        for (const QVariant &value : qAsConst(required))
            EXPECT_EQ(value.userType(), QMetaType::Int) << c.id;
    }
    // Every generator the host knows is either in the table or deliberately left out.
    for (const QByteArray &id : generatorIdentifiers()) {
        QMap<QString, QVariant> required;
        EXPECT_TRUE(ClassifyStackGenerator(QString::fromLatin1(id), required)) << id.constData();
    }
}

TEST_F(StackTest, NodesAreJudgedByKindAndForcedOnlyWhenAsked)
{
    MeshNode *dvd = root()->createChildShape("generator.DiscBox.DVD", QStringLiteral("DVD"));
    dvd->generator()->setProperty("coverAngle", 40.f);
    MeshNode *paperback
        = root()->createChildShape("generator.Book.Paperback", QStringLiteral("Novel"));
    paperback->generator()->setProperty("type", 1);
    MeshNode *box = root()->createChildShape("generator.Boxes.Box", QStringLiteral("Box"));
    INode *light = root()->CreateChildLight(QStringLiteral("Lamp"));
    INode *group = root()->CreateChildGroup(QStringLiteral("Group"));

    const QByteArray before = dump(document());
    for (INode *node : std::vector<INode *>{dvd, paperback, box})
        EXPECT_TRUE(IsStackableNode(node, false));
    EXPECT_FALSE(IsStackableNode(light, true));
    EXPECT_FALSE(IsStackableNode(group, true));
    EXPECT_EQ(dump(document()), before) << "judging changes nothing";

    EXPECT_TRUE(IsStackableNode(dvd, true));
    EXPECT_TRUE(IsStackableNode(paperback, true));
    EXPECT_EQ(dvd->generator()->property("coverAngle").toFloat(), 0.f);
    EXPECT_EQ(paperback->generator()->property("type").toInt(), 0);

    std::vector<INode *> list{paperback, light, box};
    EXPECT_EQ(FilterStackableNodes(list), SomeUnsuitable);
    EXPECT_EQ(list, (std::vector<INode *>{paperback, box}));
    list = {light};
    EXPECT_EQ(FilterStackableNodes(list), NoneSuitable);
    EXPECT_TRUE(list.empty());
    list = {};
    EXPECT_EQ(FilterStackableNodes(list), NoneSuitable);
    list = {box, box};
    EXPECT_EQ(FilterStackableNodes(list), AllSuitable);
    EXPECT_EQ(list.size(), 2u);
}

TEST_F(StackTest, TheLayoutStacksScaledBoxesOnTheFloorWithStepsAndDisorder)
{
    // Boxes of known size: x width, y thickness (the height in the stack), z depth.
    MeshNode *a = addBoxNode(root(), QStringLiteral("A"), Vector3{-4, -1, 0}, Vector3{6, 2, 8});
    MeshNode *b = addBoxNode(root(), QStringLiteral("B"), Vector3{0, 0, 0}, Vector3{3, 1.5f, 4});
    b->applyScale(Vector3{1, 2, 1});
    a->applyPosition(Vector3{30, -20, 7});
    const double heights[] = {3, 3, 3, 3}; // A: 3; B: 1.5 scaled by 2

    for (const auto &p : {std::tuple{0.f, 0.f, 0.f, 0.f, 0.f, 0},
                          std::tuple{1.f, -0.5f, 0.f, 0.f, 0.f, 3},
                          std::tuple{0.5f, 2.f, 0.8f, 10.f, 0.f, 11},
                          std::tuple{-1.f, 0.f, 1.f, -7.f, 1.f, 12345}}) {
        const auto [offsetX, offsetY, offsetDisorder, twistStep, twistDisorder, seed] = p;
        SCOPED_TRACE(testing::Message() << "offset " << offsetX << ", " << offsetY << " twist "
                                        << twistStep << " seed " << seed);
        const QByteArray before = dump(document());
        {
            StackBuilder builder({a, b}, &document(), 2, true);
            StackLayout layout;
            layout.seed = seed;
            layout.offsetX = offsetX;
            layout.offsetY = offsetY;
            layout.offsetDisorder = offsetDisorder;
            layout.twistStep = twistStep;
            layout.twistDisorder = twistDisorder;
            builder.Layout(layout);
            const std::vector<INode *> &nodes = builder.stackNodes();
            ASSERT_EQ(nodes.size(), 4u);
            EXPECT_TRUE(
                Near(transformations(builder.stackGroup())->GetPosition(), Vector3{30, -20, 0}))
                << "the stack stands where the first shape stood, on the floor";
            const std::vector<float> u = drawsFor(seed, nodes.size());
            double bottom = 0;
            float twist = 0;
            for (std::size_t k = 0; k < nodes.size(); ++k) {
                SCOPED_TRACE(k);
                const float angle = u[3 * k] * (twistDisorder * 45) + twist;
                EXPECT_TRUE(Near(transformations(nodes[k])->GetRotation(), Vector3{90, 0, angle}));
                const Placed where = placed(nodes[k]);
                EXPECT_NEAR(where.bottom, bottom, 1e-4);
                EXPECT_NEAR(where.top, bottom + heights[k], 1e-4);
                EXPECT_NEAR(
                    where.x, 30 + (k + 1) * offsetX + offsetDisorder * u[3 * k + 1] * 4, 1e-4);
                EXPECT_NEAR(
                    where.y, -20 + (k + 1) * offsetY + offsetDisorder * u[3 * k + 2] * 4, 1e-4);
                bottom += heights[k];
                twist += twistStep;
            }
            const QByteArray laidOut = dump(document());
            builder.Layout(layout);
            EXPECT_EQ(dump(document()), laidOut) << "a layout writes absolute values";
        }
        EXPECT_EQ(dump(document()), before) << "not committed: everything taken back";
    }
}

TEST_F(StackTest, CopiesFollowTheInputAndCountsZeroAndOneAddNone)
{
    MeshNode *a = root()->createChildShape("generator.Boxes.Box", QStringLiteral("A"));
    MeshNode *b = root()->createChildShape("generator.Book.HardCover", QStringLiteral("B"));
    {
        StackBuilder builder({a, b}, &document(), 3, true);
        QStringList names;
        for (INode *node : builder.stackNodes())
            names.append(node->GetName());
        EXPECT_EQ(names.join(QLatin1Char(' ')), QStringLiteral("A B A B A B"));
        EXPECT_EQ(builder.stackNodes()[0], a);
        EXPECT_EQ(builder.stackNodes()[1], b);
        EXPECT_EQ(builder.stackGroup()->GetChildren(), builder.stackNodes());
        EXPECT_EQ(document().GetSelection(), std::vector<INode *>{builder.stackGroup()});
    }
    QByteArray dumps[2];
    for (std::size_t count : {0u, 1u}) {
        StackBuilder builder({a, b}, &document(), count, true);
        EXPECT_EQ(builder.stackNodes().size(), 2u);
        dumps[count] = dump(document());
    }
    EXPECT_EQ(dumps[0], dumps[1]);
}

TEST_F(StackTest, TheToolExplainsOrOpensTheWindow)
{
    MeshNode *paperback
        = root()->createChildShape("generator.Book.Paperback", QStringLiteral("Novel"));
    paperback->generator()->setProperty("type", 2);
    INode *light = root()->CreateChildLight(QStringLiteral("Lamp"));
    ITool *tool = m_session.tools().findTool(QStringLiteral("Stack..."));
    const QByteArray before = dump(document());
    const struct
    {
        std::vector<INode *> selection;
        const char *message;
    } refusals[] = {
        {{}, "Can't built a stack: nothing selected"},
        {{light},
         "None of the selected shapes are suitable for stacking. Please select flat stackable "
         "object, like a book or box."},
        {{paperback, light},
         "Some of the selected shapes are not suitable for stacking. Please select flat stackable "
         "objects only, like books or boxes."},
    };
    for (const auto &refusal : refusals) {
        document().SetSelection(refusal.selection, Document::ReplaceSelection);
        const QByteArray selected = dump(document());
        tool->Execute(m_session.context());
        ASSERT_FALSE(m_session.userInterface().messages().isEmpty());
        EXPECT_EQ(m_session.userInterface().messages().back().text, QLatin1String(refusal.message));
        EXPECT_EQ(m_session.userInterface().messages().back().kind, 0);
        EXPECT_EQ(m_session.userInterface().openWindow(), nullptr);
        EXPECT_EQ(dump(document()), selected);
    }

    document().SetSelection({paperback}, Document::ReplaceSelection);
    tool->Execute(m_session.context());
    QDialog *window = m_session.userInterface().openWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Stacks"));
    EXPECT_EQ(window->size(), QSize(600, 550));
    INode *stack = root()->GetChildren().back();
    EXPECT_EQ(stack->GetName(), QStringLiteral("Stack"));
    EXPECT_EQ(stack->GetChildren().size(), 3u) << "the paperback and two copies";
    // What the window looks like at its fixed size, for a person to look at.
    QDir().mkpath(QStringLiteral(VANTREL_SCREENSHOT_DIR));
    EXPECT_TRUE(window->grab().save(QStringLiteral(VANTREL_SCREENSHOT_DIR "/stack.png")));
    EXPECT_EQ(paperback->generator()->property("type").toInt(), 0);
    window->reject();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(paperback->generator()->property("type").toInt(), 2) << "Cancel restores it";
}
