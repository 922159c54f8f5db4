// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The Step and Repeat window and tool: Cancel, OK as one undo step, the single-shape rule.
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
