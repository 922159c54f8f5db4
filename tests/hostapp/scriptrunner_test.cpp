// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "host/hostfunctions.h"
#include "hostapp/core/document.h"
#include "hostapp/core/documentcontext.h"
#include "hostapp/core/headlessuserinterface.h"
#include "hostapp/core/meshnode.h"
#include "hostapp/core/scriptrunner.h"
#include "hostapp/core/session.h"
#include "tests/support/testsupport.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QScriptEngine>

using namespace vantrel::host;
using vantrel::test::dump;

namespace {

class ScriptRunnerTest : public ::testing::Test
{
protected:
    ScriptRunnerTest()
        : m_context(&m_document, &m_ui)
        , m_runner(m_context)
    {
        QObject::connect(&m_runner, &ScriptRunner::printed, &m_runner, [this](const QString &line) {
            m_printed.append(line);
        });
    }

    // Runs the program; returns what it printed, or the error.
    QString run(const QString &program)
    {
        m_printed.clear();
        QString error;
        if (!m_runner.evaluate(program, QStringLiteral("test.js"), &error))
            return QStringLiteral("error: ") + error;
        return m_printed.join(QLatin1Char('\n'));
    }

    Document m_document;
    HeadlessUserInterface m_ui;
    DocumentContext m_context;
    ScriptRunner m_runner;
    QStringList m_printed;
};

} // namespace

TEST_F(ScriptRunnerTest, TheEngineKnowsItsDocumentAndForeignEnginesDoNot)
{
    EXPECT_EQ(documentContextFromScriptEngine(m_runner.engine()), &m_context);
    EXPECT_EQ(m_context.GetScriptRunner(), &m_runner);
    QScriptEngine foreign;
    EXPECT_EQ(documentContextFromScriptEngine(&foreign), nullptr);
    EXPECT_EQ(documentContextFromScriptEngine(nullptr), nullptr);
}

TEST_F(ScriptRunnerTest, NodeListsAndDictionariesAcceptExactlyWhatTheyShould)
{
    INode *box = m_document.root()->createChildShape("generator.Boxes.Box", QStringLiteral("Box"));
    INode *light = m_document.root()->CreateChildLight(QStringLiteral("Lamp"));
    QScriptEngine &engine = *m_runner.engine();
    engine.globalObject().setProperty(QStringLiteral("box"), m_runner.wrap(box));
    engine.globalObject().setProperty(QStringLiteral("lamp"), m_runner.wrap(light));

    std::vector<INode *> nodes;
    EXPECT_TRUE(m_runner.ToNodeList(engine.evaluate(QStringLiteral("[box, lamp]")), &nodes));
    EXPECT_EQ(nodes, (std::vector<INode *>{box, light}));
    EXPECT_TRUE(m_runner.ToNodeList(engine.evaluate(QStringLiteral("box")), &nodes));
    EXPECT_EQ(nodes, std::vector<INode *>{box}) << "a single node is a one-element list";
    EXPECT_TRUE(m_runner.ToNodeList(engine.evaluate(QStringLiteral("[]")), &nodes));
    EXPECT_TRUE(nodes.empty());
    for (const char *refused : {"[box, 1]",
                                "[box, null]",
                                "({0: box, length: 1})",
                                "5",
                                "'box'",
                                "null",
                                "undefined",
                                "document",
                                "(function () {})"}) {
        nodes = {box};
        EXPECT_FALSE(m_runner.ToNodeList(engine.evaluate(QLatin1String(refused)), &nodes))
            << refused;
    }

    QVariantMap dictionary;
    EXPECT_TRUE(m_runner.ToDictionary(
        engine.evaluate(QStringLiteral("({a: 1, B: 'x', c: [1, 2]})")), &dictionary));
    EXPECT_EQ(dictionary.value(QStringLiteral("a")).toInt(), 1);
    EXPECT_EQ(dictionary.value(QStringLiteral("B")).toString(), QStringLiteral("x"));
    EXPECT_TRUE(
        m_runner.ToDictionary(engine.evaluate(QStringLiteral("new Object()")), &dictionary));
    for (const char *refused : {"[1, 2]",
                                "box",
                                "(function () {})",
                                "null",
                                "3",
                                "'text'",
                                "undefined",
                                "new Date()",
                                "/x/",
                                "document.camera.target"}) {
        EXPECT_FALSE(m_runner.ToDictionary(engine.evaluate(QLatin1String(refused)), &dictionary))
            << refused;
    }
}

TEST_F(ScriptRunnerTest, NodesAreTheSameObjectsWhereverTheyAreReachedFrom)
{
    EXPECT_EQ(
        run(QStringLiteral(
            "var shelf = document.root.addGroup('Shelf');\n"
            "var book = shelf.addShape('generator.Book.Paperback', 'Book', {width: 12, type: 1});\n"
            "print(book.parent === shelf, shelf.children[0] === book,\n"
            "      document.findNode('Book') === book, document.findNodes('Shelf')[0] === shelf,\n"
            "      book.generator, book.params.width, book.params.type, book.type, shelf.type,\n"
            "      document.root.type, book.vertexCount > 0);")),
        QStringLiteral("true true true true generator.Book.Paperback 12 1 1 3 0 true"));
}

TEST_F(ScriptRunnerTest, AssignmentsChangeTheSceneAndAWholeEvaluationIsOneUndoStep)
{
    const QByteArray before = dump(m_document);
    EXPECT_EQ(
        run(QStringLiteral(
            "var box = document.root.addShape('generator.Boxes.Box', 'Box');\n"
            "box.position = [1, 2, 3]; box.rotation = [0, 0, 90]; box.scale = [2, 2, 2];\n"
            "box.name = 'Crate'; box.visible = false; box.setParam('depth', 12);\n"
            "var lamp = document.root.addLight('Lamp');\n"
            "lamp.intensity = 0.5; lamp.shadowBlur = 3; lamp.castShadows = true;\n"
            "document.ambient = 0.25; document.selection = [box, lamp];\n"
            "document.camera.distance = 300; document.camera.target = [0, 0, 10];\n"
            "print(box.position, box.worldMatrix[12], box.worldBox[2], box.name, box.visible,\n"
            "      lamp.intensity, document.selection.length, document.ambient, "
            "document.camera.distance);")),
        QStringLiteral("1,2,3 1 3 Crate false 0.5 2 0.25 300"));
    EXPECT_EQ(m_document.history().undoCount(), 1);
    EXPECT_EQ(run(QStringLiteral("document.undo(); print(document.undoCount, document.redoCount)")),
              QStringLiteral("0 1"));
    m_document.camera()->reset(); // the camera is view state: undo leaves it as it is
    EXPECT_EQ(dump(m_document), before);
}

TEST_F(ScriptRunnerTest, AFailingScriptReportsFileAndLineAndChangesNothing)
{
    const QByteArray before = dump(m_document);
    EXPECT_EQ(
        run(QStringLiteral("document.root.addGroup('Kept?');\n\nnull.f();")),
        QStringLiteral(
            "error: test.js:3: TypeError: Result of expression 'null' [null] is not an object."));
    EXPECT_EQ(dump(m_document), before);
    EXPECT_EQ(m_document.history().undoCount(), 0);

    for (const char *bad : {"document.root.addShape('generator.Nope', 'X')",
                            "document.root.addShape('generator.Boxes.Box', 'X', {size: 1})",
                            "document.root.addShape('generator.Boxes.Box', 'X', {width: 'wide'})",
                            "document.root.addShape('generator.Boxes.Box', 'X', [1])",
                            "document.root.addGroup('A').position = [1, 2]",
                            "document.root.addGroup('A').position = [1, 2, 'x']",
                            "document.root.remove()",
                            "document.selection = 5",
                            "document.ambient = 'x'",
                            "document.root.type = 3",
                            "document.camera.globalMatrix = []"}) {
        EXPECT_TRUE(run(QLatin1String(bad)).startsWith(QStringLiteral("error: test.js:1: ")))
            << bad;
        EXPECT_EQ(dump(m_document), before) << bad;
    }
    EXPECT_EQ(run(QStringLiteral("document.root.addShape('generator.Nope', 'X')")),
              QStringLiteral("error: test.js:1: Error: Unknown generator: generator.Nope"));
    EXPECT_EQ(run(QStringLiteral("document.root.addShape('generator.Boxes.Box', 'X', {size: 1})")),
              QStringLiteral(
                  "error: test.js:1: Error: Unknown parameter \"size\" for generator.Boxes.Box"));
}

TEST_F(ScriptRunnerTest, RemovedNodesLeaveTheTreeAndComeBackWithUndo)
{
    EXPECT_EQ(run(QStringLiteral("var a = document.root.addGroup('A'); var b = a.addGroup('B');\n"
                                 "document.selection = [b];")),
              QString());
    EXPECT_EQ(
        run(QStringLiteral(
            "var a = document.findNode('A'); a.remove();\n"
            "print(document.root.children.length, document.selection.length, a.parent);\n"
            "document.undo(); print(document.root.children.length, document.findNode('A') === a)")),
        QStringLiteral("0 0 null\n1 true"));
}

TEST_F(ScriptRunnerTest, WithoutToolsOrWindowsTheToolHooksAnswerPlainly)
{
    EXPECT_EQ(run(QStringLiteral("print(document.toolTitles().length, document.window)")),
              QStringLiteral("0 null"));
    EXPECT_EQ(run(QStringLiteral("document.runTool('Put On The Floor')")),
              QStringLiteral("error: test.js:1: Error: No tool is titled \"Put On The Floor\""));
}

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

    const struct
    {
        const char *name;
        const char *program;
        QString message; // a regular expression
    } cases[] = {
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
