// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The time limit of a script evaluation, in a session with the tools plug-in loaded.
#include "hostapp/core/commands/session.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/script/scriptrunner.h"
#include "tests/support/testsupport.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QRegularExpression>

#include <vector>

using namespace vantrel::host;

namespace {

// An endless script, and the message it stops with (a regular expression).
struct EndlessScript
{
    const char *name;
    const char *program;
    QString message;
};

// Endless scripts stopped in different places: after changes, inside a catch-all, with a tool
// window open, inside a call from the engine and inside a call from a tool. stopped: the limit's
// words, as a regular expression.
std::vector<EndlessScript> endlessScripts(const QString &stopped)
{
    return {
        {"a loop without statements after changes",
         "document.root.addGroup('G'); document.findNode('Box').position = [5, 5, 5];\n"
         "while (true) {}",
         "endless.js: " + stopped},
        {"a loop that catches everything and cleans up",
         "while (true) { try { for (;;) {} } catch (e) {} finally { document.root.addGroup('F') } "
         "}",
         "endless.js: " + stopped},
        {"a tool window left open",
         "document.selection = [document.findNode('Box')];\n"
         "document.runTool('Step and Repeat...'); document.window.set('repeatX', 4);\n"
         "do {} while (document.window)",
         "endless.js: " + stopped},
        {"a function called from a sort",
         "[3, 1, 2].sort(function (a, b) { document.root.addGroup('S'); while (true) {} })",
         "endless.js(:1)?: " + stopped},
        // The engine knows the place here: the script is inside a call from the tool.
        {"a settings getter that a tool reads",
         "document.root.addGroup('G');\n"
         "tools.stepAndRepeat(document.findNode('Box'), {repeatX: 3, get repeatY() {\n"
         "    while (true) {} }})",
         "endless.js:3: " + stopped},
    };
}

} // namespace

// Endless scripts under a time limit stop with the limit's message, whatever they were doing when
// the time ran out, and leave the scene exactly as it was: their changes, a tool's work and a tool
// window left open all go as after any script error.
TEST(ScriptTimeLimit, StopsEndlessScriptsAndLeavesTheSceneAsItWas)
{
    Session session;
    QString error;
    ASSERT_TRUE(session.loadToolsPlugin(QStringLiteral(VANTREL_TOOLS_PLUGIN), &error))
        << qPrintable(error);
    ScriptRunner &runner = session.runner();
    ASSERT_TRUE(runner.evaluate(
        QStringLiteral(
            "document.root.addShape('generator.Boxes.Box', 'Box');"
            "document.root.addShape('generator.Book.HardCover', 'Book').position = [20, 0, 5]"),
        QStringLiteral("setup.js"),
        &error))
        << qPrintable(error);
    const QByteArray before = vantrel::test::dump(session.document());
    const int steps = session.document().history().undoCount();
    const QString stopped = QStringLiteral("script stopped: time limit of 0\\.25 s reached");

    const std::vector<EndlessScript> cases = endlessScripts(stopped);
    for (const auto &c : cases) {
        runner.setTimeLimit(0.25);
        QElapsedTimer clock;
        clock.start();
        EXPECT_FALSE(
            runner.evaluate(QString::fromUtf8(c.program), QStringLiteral("endless.js"), &error))
            << c.name;
        EXPECT_LT(clock.elapsed(), 10000) << c.name;
        EXPECT_TRUE(QRegularExpression(QRegularExpression::anchoredPattern(c.message))
                        .match(error)
                        .hasMatch())
            << c.name << ": " << qPrintable(error);
        EXPECT_EQ(vantrel::test::dump(session.document()), before) << c.name;
        EXPECT_EQ(session.document().history().undoCount(), steps) << c.name;
        EXPECT_EQ(session.userInterface().openWindow(), nullptr) << c.name;
    }

    // The limit counts all scripts together: once it is reached, a script does not start at all
    // (and the message names it, not the place where the one before was stopped).
    EXPECT_FALSE(runner.evaluate(
        QStringLiteral("document.root.addGroup('Late')"), QStringLiteral("late.js"), &error));
    EXPECT_EQ(error, QStringLiteral("late.js: script stopped: time limit of 0.25 s reached"));
    EXPECT_EQ(vantrel::test::dump(session.document()), before);

    // Under a limit not reached, scripts and tools work as without one, and the engine still
    // runs scripts after the stops above.
    runner.setTimeLimit(60);
    EXPECT_TRUE(
        runner.evaluate(QStringLiteral("tools.stepAndRepeat(document.findNode('Box'), "
                                       "{repeatX: 3}); document.findNodes('Box - 3').length"),
                        QStringLiteral("fast.js"),
                        &error))
        << qPrintable(error);
    EXPECT_NE(vantrel::test::dump(session.document()), before);
    EXPECT_EQ(session.document().history().undoCount(), steps + 1);
}
