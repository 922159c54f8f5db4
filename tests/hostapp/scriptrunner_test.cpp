// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The script runner: how scripts reach the document and its nodes, what one evaluation records,
// how a failing script reports itself, and nodes that left the scene. Argument checks are in
// scriptarguments_test.cpp, the time limit in scripttimelimit_test.cpp.
#include "host/hostfunctions.h"
#include "hostapp/core/scene/meshnode.h"
#include "tests/hostapp/scriptrunnertest.h"
#include "tests/support/testsupport.h"

#include <gtest/gtest.h>

#include <QScriptEngine>

using namespace vantrel::host;
using vantrel::test::dump;
using vantrel::test::ScriptRunnerTest;

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

TEST_F(ScriptRunnerTest, NodesOutOfTheSceneRefuseEveryMemberUntilUndoBringsThemBack)
{
    EXPECT_EQ(run(QStringLiteral("var a = document.root.addGroup('A'); var b = a.addGroup('B');\n"
                                 "a.addShape('generator.Boxes.Box', 'Box').addLight('Lamp');\n"
                                 "document.selection = [b];")),
              QString());
    EXPECT_EQ(
        run(QStringLiteral(
            "var a = document.findNode('A'); a.remove();\n"
            "print(document.root.children.length, document.selection.length);\n"
            "document.undo(); print(document.root.children.length, document.findNode('A') === a,"
            "      a.children.length)")),
        QStringLiteral("0 0\n1 true 2"));

    // Removed in the same script, below a removed node, or with its creation undone: every
    // member refuses at once and changes nothing, even when the script catches the error and
    // goes on (so that its own changes are kept: the removal, taken back at the end).
    const QByteArray before = dump(m_document);
    const char *const setups[] = {
        "var n = document.findNode('A'); n.remove();",
        "var n = document.findNode('Box'); document.findNode('A').remove();",
        "var n = document.root.addShape('generator.Boxes.Box', 'New'); document.undo();",
    };
    const char *const uses[] = {
        "n.name",
        "n.name = 'C'",
        "n.visible = false",
        "n.type",
        "n.parent",
        "n.children",
        "n.worldMatrix",
        "n.worldBox",
        "n.position = [1, 2, 3]",
        "n.rotation",
        "n.scale = [2, 2, 2]",
        "n.addGroup('G')",
        "n.addLight('L')",
        "n.addShape('generator.Boxes.Box', 'S')",
        "n.remove()",
        "n.setParam('width', 5)",
        "n.params",
        "document.selection = [n]",
    };
    for (const char *setup : setups) {
        for (const char *use : uses) {
            if (QByteArray(use).startsWith("n.setParam") || QByteArray(use) == "n.params") {
                if (!QByteArray(setup).contains("Box"))
                    continue; // shapes only
            }
            const QString script = QStringLiteral("%1 var seen = document.dump();"
                                                  "try { %2; } catch (e) { print(e.message); }"
                                                  "print(document.dump() === seen)")
                                       .arg(QLatin1String(setup), QLatin1String(use));
            const int steps = m_document.history().undoCount();
            EXPECT_EQ(run(script), QStringLiteral("This node no longer exists\ntrue"))
                << setup << use;
            if (m_document.history().undoCount() > steps)
                m_document.undo(); // the script's own removal
            EXPECT_EQ(dump(m_document), before) << setup << use;
        }
    }
}

TEST_F(ScriptRunnerTest, WithoutToolsOrWindowsTheToolHooksAnswerPlainly)
{
    EXPECT_EQ(run(QStringLiteral("print(document.toolTitles().length, document.window)")),
              QStringLiteral("0 null"));
    EXPECT_EQ(run(QStringLiteral("document.runTool('Put On The Floor')")),
              QStringLiteral("error: test.js:1: Error: No tool is titled \"Put On The Floor\""));
}
