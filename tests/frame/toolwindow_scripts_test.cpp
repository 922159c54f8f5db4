// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Tool windows driven from outside: tool-bar actions, scripts, one window at a time.
#include "tests/frame/toolwindowtest.h"

using namespace toolwindowtest;
using vantrel::test::dump;

TEST_F(ToolWindowTest, AToolbarActionRunsItsToolOnTheContextItWasMadeFor)
{
    HeadlessUserInterface otherUi;
    Document otherDocument;
    DocumentContext other(&otherDocument, &otherUi);

    auto *late = new TestToolbarHelper(m_tool, &m_session.context(), 110);
    auto *early = new TestToolbarHelper(m_tool, &m_session.context(), 100);
    new TestToolbarHelper(m_tool, &other, 100);
    EXPECT_EQ(late->parent(), &m_session.userInterface());
    EXPECT_EQ(early->parent(), &m_session.userInterface());

    const QList<QAction *> actions = m_session.userInterface().toolbarActions();
    ASSERT_EQ(actions.size(), 2);
    EXPECT_EQ(actions[0]->parent(), &m_session.userInterface());
    EXPECT_EQ(actions[0]->text(), QStringLiteral("Test Tool..."));
    EXPECT_EQ(actions[0]->property("buttonId").toString(), QStringLiteral("TestButton"));

    // The other document's button opens the window there, whatever else is open.
    otherUi.toolbarActions().front()->trigger();
    ASSERT_EQ(m_tool->executedOn.size(), 1);
    EXPECT_EQ(m_tool->executedOn.back(), &other);
    EXPECT_NE(otherUi.openWindow(), nullptr);
    EXPECT_EQ(m_session.userInterface().openWindow(), nullptr);
    actions[1]->trigger();
    EXPECT_EQ(m_tool->executedOn.back(), &m_session.context());
    otherUi.openWindow()->reject();
    m_session.userInterface().openWindow()->reject();
    settleDeletes();
}

TEST_F(ToolWindowTest, ScriptsDriveTheRealPanel)
{
    const QByteArray before = dump(m_session.document());
    EXPECT_EQ(run(QStringLiteral(
                  "document.runTool('Test Tool...');"
                  "var w = document.window;"
                  "w.set('angle', 500); w.set('count', 6); w.set('keep', false);"
                  "print(w.title, w.get('angle'), w.get('count'), w.get('share'), w.get('keep'));"
                  "w.cancel();"
                  "print(document.window, document.findNode('Preview'))")),
              QStringLiteral("Test Tool 180 6 0.20000000298023224 false\nnull null"));
    EXPECT_EQ(dump(m_session.document()), before);

    EXPECT_EQ(run(QStringLiteral("document.runTool('Test Tool...');"
                                 "document.window.set('width', 3)")),
              QStringLiteral(
                  "error: test.js:1: Error: The window has no setting \"width\" that takes 3"));
    EXPECT_EQ(run(QStringLiteral("document.runTool('Test Tool...');"
                                 "document.window.set('keep', 'yes')")),
              QStringLiteral(
                  "error: test.js:1: Error: The window has no setting \"keep\" that takes yes"));
    EXPECT_EQ(dump(m_session.document()), before) << "a failed script leaves nothing behind";

    EXPECT_EQ(run(QStringLiteral("document.runTool('Test Tool...');"
                                 "document.window.set('count', 4); document.window.accept();"
                                 "print(document.findNode('Preview').position)")),
              QStringLiteral("4,0,0"));
}

TEST_F(ToolWindowTest, OneWindowAtATimeWithItsUndoGroupsNested)
{
    const QByteArray before = dump(m_session.document());

    // A script running a tool closes the open window first, as Cancel would, so that the next
    // tool's undo group does not open inside the old one's.
    EXPECT_EQ(run(QStringLiteral("document.runTool('Test Tool...');"
                                 "var first = document.window; first.set('count', 12);"
                                 "document.runTool('Test Tool...');"
                                 "var second = document.window;"
                                 "print(first === second, second.get('count'), document.ambient);"
                                 "try { first.cancel(); } catch (e) { print('closed'); }"
                                 "second.set('count', 6); second.accept();"
                                 "print(document.findNodes('Preview').length, document.ambient)")),
              QStringLiteral("false 1 0.30000001192092896\nclosed\n1 0.20000000298023224"));
    EXPECT_EQ(m_session.document().history().openGroupCount(), 0);
    m_session.document().undo();
    EXPECT_EQ(dump(m_session.document()), before);

    // A window handed over while another is open opened its group inside the open one's: it is
    // the one refused, at once, and the open window's preview stays as it was.
    QPointer<TestWindow> first = open();
    ASSERT_TRUE(panel(first)->setPanelValue(QStringLiteral("count"), 12.0));
    const QByteArray preview = dump(m_session.document());
    m_tool->Execute(m_session.context());
    EXPECT_EQ(m_session.userInterface().openWindow(), first.data());
    EXPECT_EQ(dump(m_session.document()), preview);
    EXPECT_EQ(m_session.document().history().openGroupCount(), 1);
    first->reject();
    settleDeletes();
    EXPECT_EQ(dump(m_session.document()), before);
    EXPECT_EQ(m_session.document().history().openGroupCount(), 0);
}
