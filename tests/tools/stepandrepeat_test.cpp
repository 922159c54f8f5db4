// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "host/imeshnode.h"
#include "host/inode.h"
#include "host/itransformations.h"
#include "hostapp/core/commands/session.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/ui/propertieslistbuilder.h"
#include "hostapp/ui/propertylistwidget.h"
#include "tests/support/testsupport.h"
#include "tests/support/toolssession.h"
#include "tools/stepandrepeat/stepandrepeatimpl.h"
#include "tools/stepandrepeat/stepandrepeatsettings.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDialog>
#include <QFile>
#include <QMetaProperty>
#include <QPushButton>

#include <cmath>
#include <set>

using namespace vantrel::host;
using vantrel::test::addBoxNode;
using vantrel::test::addPointsNode;
using vantrel::test::dump;
using vantrel::test::Near;

namespace {

ITransformations *transformationsOf(INode *node)
{
    return qobject_cast<ITransformations *>(node);
}

Vector3 positionOf(INode *node)
{
    return transformationsOf(node)->GetPosition();
}

// The node's box in its parent's space, read from its vertices through its own local matrix:
// where the copies stand next to each other inside the group.
TBBox<float> boxInParent(const INode *node)
{
    TBBox<float> box;
    UpdateBBoxRecursive(box, node, Matrix());
    return box;
}

QStringList namesOf(const std::vector<INode *> &nodes)
{
    QStringList names;
    for (const INode *node : nodes)
        names.append(node->GetName());
    return names;
}

// "<name> - 1" to "<name> - <count>", as a user reads them in the scene tree.
QStringList numberedNames(const QString &name, int count)
{
    QStringList names;
    for (int i = 1; i <= count; ++i)
        names.append(name + QStringLiteral(" - ") + QString::number(i));
    return names;
}

// Where cell k stands inside the group, worked out here in double precision from the cell's
// column, row and layer: one box size plus one step per neighbour.
Vector3 cellPosition(int k, int columns, int rows, const Vector3 &size, const Vector3 &steps)
{
    const int x = k % columns, y = k / columns % rows, z = k / (columns * rows);
    return Vector3{float(x * (double(size.x) + steps.x)),
                   float(y * (double(size.y) + steps.y)),
                   float(z * (double(size.z) + steps.z))};
}

class StepAndRepeatTest : public vantrel::test::ToolsSessionTest
{
protected:
    StepAndRepeatTest()
    {
        // A shape between two siblings, measuring 2 x 1 x 3, somewhere off the origin.
        m_front = root()->CreateChildGroup(QStringLiteral("Front"));
        m_box = addBoxNode(root(), QStringLiteral("Box"), {-1, -0.5f, 0}, {1, 0.5f, 3});
        m_box->SetPosition({5, 6, 7}, false);
        m_back = root()->CreateChildLight(QStringLiteral("Back"));
        document().history().clear();
    }

    // Runs the tool as the host's tool list does, on the current selection.
    QDialog *openWindow()
    {
        m_session.tools()
            .findTool(QStringLiteral("Step and Repeat..."))
            ->Execute(m_session.context());
        return m_session.userInterface().openWindow();
    }

    INode *m_front;
    MeshNode *m_box;
    INode *m_back;
};

} // namespace

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

TEST_F(StepAndRepeatTest, CancelAfterAnyNumberOfChangesRestoresTheSceneExactly)
{
    document().SetSelection({m_box}, Document::ReplaceSelection);
    const QByteArray before = dump(document());
    const int steps = document().history().undoCount();

    EXPECT_EQ(run(QStringLiteral(
                  "document.runTool('Step and Repeat...');"
                  "var w = document.window, g = document.findNode('Box');"
                  "print(w.title, g.type, g.children.length, w.get('repeatX'), w.get('stepZ'));"
                  "w.set('repeatX', 4); w.set('stepY', -2.5); w.set('repeatZ', 3);"
                  "w.set('repeatX', 1); w.set('stepX', 7); w.set('repeatY', 30);"
                  "w.set('repeatX', 45); w.set('stepZ', -100);"
                  "print(g.children.length, w.get('repeatX'), g.children[30].name);"
                  "w.cancel(); print(document.window)")),
              QStringLiteral("Step and Repeat 3 9 3 1\n2700 30 Box - 31\nnull"));
    EXPECT_EQ(dump(document()), before) << "the shape back in its place, name and transform";
    EXPECT_EQ(document().history().undoCount(), steps);
}

TEST_F(StepAndRepeatTest, OkKeepsTheGridAsOneUndoStep)
{
    document().SetSelection({m_box}, Document::ReplaceSelection);
    const QByteArray before = dump(document());
    const int steps = document().history().undoCount();
    QDialog *window = openWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->size(), QSize(600, 450));
    auto *panel = window->findChild<PropertyListWidget *>();
    ASSERT_TRUE(panel->setPanelValue(QStringLiteral("repeatX"), 5.0));
    ASSERT_TRUE(panel->setPanelValue(QStringLiteral("stepY"), 3.5));
    EXPECT_EQ(panel->panelValue(QStringLiteral("stepY")).toDouble(), 3.5);
    const QByteArray preview = dump(document());
    const INode *group = m_box->GetParent();
    ASSERT_EQ(group->GetChildren().size(), 15u);
    EXPECT_TRUE(Near(positionOf(group->GetChildren()[14]), {12, 9, 0}));

    window->findChild<QPushButton *>(QStringLiteral("ok"))->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(m_session.userInterface().openWindow(), nullptr);
    EXPECT_EQ(dump(document()), preview);
    EXPECT_EQ(document().history().undoCount(), steps + 1);
    ASSERT_TRUE(document().undo());
    EXPECT_EQ(dump(document()), before) << "one undo takes the whole grid back";
    ASSERT_TRUE(document().redo());
    EXPECT_EQ(dump(document()), preview);
}

TEST_F(StepAndRepeatTest, TheToolRunsOnASingleShapeOnly)
{
    const QString message
        = QStringLiteral("Step and Repeat tool requires a single shape object to be selected.");
    ITool *tool = m_session.tools().findTool(QStringLiteral("Step and Repeat..."));
    EXPECT_FALSE(tool->IsEnabled(m_session.context())) << "nothing selected";
    const std::vector<INode *> refused[] = {{m_box, m_front}, {m_back}, {m_front}};
    for (const std::vector<INode *> &selection : refused) {
        document().SetSelection(selection, Document::ReplaceSelection);
        const QByteArray before = dump(document());
        const int steps = document().history().undoCount();
        EXPECT_TRUE(tool->IsEnabled(m_session.context()));
        EXPECT_EQ(run(QStringLiteral("print(document.runTool('Step and Repeat...'))")), message);
        EXPECT_EQ(m_session.userInterface().messages().last().kind, 0);
        EXPECT_EQ(m_session.userInterface().openWindow(), nullptr);
        EXPECT_EQ(dump(document()), before);
        EXPECT_EQ(document().history().undoCount(), steps);
    }
}

TEST_F(StepAndRepeatTest, TheScriptFunctionChecksEverythingBeforeItChangesAnything)
{
    INode *inside = addBoxNode(
        static_cast<BaseNode *>(m_front), QStringLiteral("Inner"), {0, 0, 0}, {1, 1, 1});
    document().DeleteNodes({m_front}); // the undo history keeps the removed nodes alive
    const int steps = document().history().undoCount();
    const QByteArray before = dump(document());
    const struct
    {
        const char *call;
        const char *error;
    } failures[] = {
        {"tools.stepAndRepeat(box)", "Usage: tools.stepAndRepeat(node, params)"},
        {"tools.stepAndRepeat(box, {}, {})", "Usage: tools.stepAndRepeat(node, params)"},
        {"new tools.stepAndRepeat(box, {})", "Do not call this as a constructor"},
        {"tools.stepAndRepeat(light, {})", "The first parameter has be a shape node"},
        {"tools.stepAndRepeat([box, box], {})", "The first parameter has be a shape node"},
        {"tools.stepAndRepeat(document.root, {})", "The first parameter has be a shape node"},
        {"tools.stepAndRepeat(light, 5)", "The first parameter has be a shape node"},
        {"tools.stepAndRepeat(removed, {})", "The first parameter has be a shape node"},
        {"tools.stepAndRepeat(box, 5)", "The second parameter has to be a dictionary"},
        {"tools.stepAndRepeat(box, [1])", "The second parameter has to be a dictionary"},
        {"tools.stepAndRepeat(box, null)", "The second parameter has to be a dictionary"},
        {"tools.stepAndRepeat([box], box)", "The second parameter has to be a dictionary"},
    };
    m_session.runner().engine()->globalObject().setProperty(QStringLiteral("removed"),
                                                            m_session.runner().wrap(inside));
    for (const auto &failure : failures) {
        EXPECT_EQ(run(QStringLiteral("var box = document.findNode('Box'),"
                                     "    light = document.findNode('Back');")
                      + QLatin1String(failure.call)),
                  QStringLiteral("error: test.js:1: Error: ") + QLatin1String(failure.error))
            << failure.call;
        EXPECT_EQ(dump(document()), before) << failure.call;
    }
    EXPECT_EQ(document().history().undoCount(), steps);
}

TEST_F(StepAndRepeatTest, ScriptKeysAreLowerCaseExactAndAppliedInOrder)
{
    const auto grid = [this](const QString &params) {
        return run(QStringLiteral("var b = document.root.addShape('generator.Boxes.Box', 'B');"
                                  "print(tools.stepAndRepeat([b], %1));"
                                  "var g = b.parent; print(g.children.length,"
                                  "    g.children[g.children.length - 1].position);"
                                  "g.remove()")
                       .arg(params));
    };
    // The box generator's default box measures 20 x 10 x 30.
    EXPECT_EQ(grid(QStringLiteral("{}")), QStringLiteral("undefined\n9 42,22,0"));
    EXPECT_EQ(grid(QStringLiteral("{repeatX: 5, StepX: 9, REPEATY: 1}")),
              QStringLiteral("undefined\n9 42,22,0"))
        << "the property names are not keys";
    EXPECT_EQ(grid(QStringLiteral("{repeatx: 2, stepx: 500, repeaty: 0}")),
              QStringLiteral("undefined\n2 120,0,0"))
        << "limited to 1 row and a gap of 100";
    EXPECT_EQ(grid(QStringLiteral(
                  "{repeatx: 2, repeaty: 4, repeatz: 3, stepx: 0.5, stepy: -12, stepz: 2.5}")),
              QStringLiteral("undefined\n24 20.5,-6,65"));
    EXPECT_EQ(grid(QStringLiteral("{repeatx: 'abc', repeaty: 3e9, stepy: 'x'}")),
              QStringLiteral("undefined\n30 0,290,0"))
        << "text counts as 0 and a huge count as the most";
    const QByteArray unchanged = dump(document());
    for (const char *key : {"repeatx", "stepy"}) {
        EXPECT_EQ(grid(QStringLiteral("{%1: NaN}").arg(QLatin1String(key))),
                  QStringLiteral("error: test.js:1: Error: %1 must be a finite number that fits "
                                 "in single precision")
                      .arg(QLatin1String(key)));
        EXPECT_EQ(dump(document()), unchanged) << key;
    }

    // The grid is part of the script's own undo step.
    const QByteArray before = dump(document());
    const int steps = document().history().undoCount();
    EXPECT_EQ(run(QStringLiteral("tools.stepAndRepeat(document.findNode('Box'), {repeatz: 2})")),
              QString());
    EXPECT_EQ(m_box->GetParent()->GetChildren().size(), 18u);
    EXPECT_EQ(document().history().undoCount(), steps + 1);
    document().undo();
    EXPECT_EQ(dump(document()), before);
}

TEST_F(StepAndRepeatTest, TheSettingsTableMatchesTheObjectThePanelAndTheScriptingGuide)
{
    // The panel exactly as the tool's description gives it.
    PropertiesListBuilder expected(QStringLiteral("Step and Repeat"));
    expected.AddPanel(QStringLiteral("Repeats"));
    expected.AddSlider(QStringLiteral("Columns"), QStringLiteral("repeatX"), 1, 30, 288, 0);
    expected.AddSlider(QStringLiteral("Rows"), QStringLiteral("repeatY"), 1, 30, 288, 0);
    expected.AddSlider(QStringLiteral("Layers"), QStringLiteral("repeatZ"), 1, 30, 288, 0);
    expected.AddPanel(QStringLiteral("Steps"));
    expected.AddSlider(QStringLiteral("Right"), QStringLiteral("stepX"), -100, 100, 320, 2);
    expected.AddSlider(QStringLiteral("Back"), QStringLiteral("stepY"), -100, 100, 320, 2);
    expected.AddSlider(QStringLiteral("Up"), QStringLiteral("stepZ"), -100, 100, 320, 2);
    StepAndRepeatImpl settings(&document(), false, m_box);
    EXPECT_EQ(settings.GetPropertiesList(), expected.GetList());

    QFile guide(QStringLiteral(VANTREL_SOURCE_DIR "/docs/scripting.md"));
    ASSERT_TRUE(guide.open(QIODevice::ReadOnly | QIODevice::Text));
    const QString text = QString::fromUtf8(guide.readAll());
    const QMetaObject &meta = StepAndRepeatImpl::staticMetaObject;
    const int first = meta.propertyOffset();
    ASSERT_EQ(meta.propertyCount() - first, int(std::size(StepAndRepeatSettings)));
    for (std::size_t i = 0; i < std::size(StepAndRepeatSettings); ++i) {
        const ToolSetting &s = StepAndRepeatSettings[i];
        const QMetaProperty property = meta.property(first + int(i));
        EXPECT_STREQ(property.name(), s.property) << "declared in table order";
        EXPECT_EQ(property.userType(),
                  i < StepAndRepeatCountSettings ? QMetaType::Int : QMetaType::Float)
            << s.property;
        EXPECT_TRUE(property.isWritable() && property.isStored() && !property.hasNotifySignal());
        EXPECT_EQ(QString::fromLatin1(s.key), QString::fromLatin1(s.key).toLower());
        // The guide's row: | `key` | label | min .. max | ...
        const QString row = QStringLiteral("| `%1` | %2 | %3 .. %4 |")
                                .arg(QLatin1String(s.key), QLatin1String(s.label))
                                .arg(double(s.minimum))
                                .arg(double(s.maximum))
                                .replace(QLatin1Char('-'), QChar(0x2212));
        EXPECT_TRUE(text.contains(row)) << row.toStdString();
    }
    settings.setAccepted(true);
}
