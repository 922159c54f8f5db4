// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "host/hostfunctions.h"
#include "hostapp/core/commands/session.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/document/documentcontext.h"
#include "hostapp/core/document/headlessuserinterface.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/core/script/scriptrunner.h"
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

TEST_F(ScriptRunnerTest, ArgumentsAreReadOnceIntoPlainValuesWithinLimits)
{
    QScriptEngine &engine = *m_runner.engine();
    const auto dictionary = [&](const char *program, QVariantMap *out) {
        const bool read = m_runner.ToDictionary(engine.evaluate(QLatin1String(program)), out);
        const QString error
            = engine.hasUncaughtException() ? engine.uncaughtException().toString() : QString();
        engine.clearExceptions();
        return read ? QStringLiteral("read") : QStringLiteral("refused ") + error;
    };
    QVariantMap map;

    // The limit of 64 levels, the dictionary itself the first.
    const auto nested = [](int levels) {
        return QStringLiteral("(function () { var o = {}; for (var i = 1; i < %1; ++i) o = {x: o};"
                              " return o; })()")
            .arg(levels)
            .toLatin1();
    };
    EXPECT_EQ(dictionary(nested(64).constData(), &map), QStringLiteral("read"));
    int depth = 1;
    for (QVariant v = map.value(QStringLiteral("x")); v.userType() == QMetaType::QVariantMap;
         v = v.toMap().value(QStringLiteral("x")))
        ++depth;
    EXPECT_EQ(depth, 64);
    const QString tooDeep
        = QStringLiteral("refused Error: The parameter is nested more than 64 levels deep");
    EXPECT_EQ(dictionary(nested(65).constData(), &map), tooDeep);
    EXPECT_EQ(dictionary("(function () { var o = {}; o.self = o; return o; })()", &map), tooDeep)
        << "an object that holds itself is endlessly deep";
    EXPECT_EQ(dictionary("(function () { var a = []; for (var i = 1; i < 70; ++i) a = [a];"
                         " return {a: a}; })()",
                         &map),
              tooDeep);
    EXPECT_EQ(
        dictionary("(function () { var a = []; a.length = 4294967295; return {a: a}; })()", &map),
        QStringLiteral("refused Error: The parameter holds more than 1000000 values"))
        << "a sparse array's length counts before any element is read";

    // A value that stands for another by its own valueOf counts as that value; an exception
    // thrown by a getter or a valueOf is what the caller sees.
    EXPECT_EQ(dictionary("({a: new Number(2), b: {valueOf: function () { return 'x'; }},"
                         "  c: {d: [1, 'two', null]}, get e() { return 5; }})",
                         &map),
              QStringLiteral("read"));
    EXPECT_EQ(map.value(QStringLiteral("a")).toDouble(), 2.0);
    EXPECT_EQ(map.value(QStringLiteral("b")).toString(), QStringLiteral("x"));
    EXPECT_EQ(map.value(QStringLiteral("c")).toMap().value(QStringLiteral("d")).toList().size(), 3);
    EXPECT_EQ(map.value(QStringLiteral("e")).toInt(), 5);
    EXPECT_EQ(dictionary("({get a() { throw new Error('boom'); }})", &map),
              QStringLiteral("refused Error: boom"));
    EXPECT_EQ(dictionary("({a: {b: {valueOf: function () { throw 'boom'; }}}})", &map),
              QStringLiteral("refused boom"));
    EXPECT_EQ(
        dictionary("Object = function () {}; Object.prototype.valueOf = null; ({a: 1})", &map),
        QStringLiteral("read"))
        << "a script that replaces Object cannot change what a dictionary is";
}

TEST_F(ScriptRunnerTest, NodeListsAreJudgedAfterEveryElementWasRead)
{
    QScriptEngine &engine = *m_runner.engine();
    std::vector<INode *> nodes;
    // The second element's getter removes the first node; the next one frees a node outright
    // (its creation undone, the redo discarded by a new change).
    EXPECT_FALSE(m_runner.ToNodeList(
        engine.evaluate(QStringLiteral(
            "var a = document.root.addGroup('A'); var list = [a];"
            "list.__defineGetter__(1, function () { a.remove(); return document.root; });"
            "list.length = 2; list")),
        &nodes));
    EXPECT_FALSE(engine.hasUncaughtException());
    EXPECT_FALSE(m_runner.ToNodeList(
        engine.evaluate(QStringLiteral(
            "var f = document.root.addGroup('Freed'); var list = [f];"
            "list.__defineGetter__(1, function () {"
            "  document.undo(); document.root.addGroup('Other'); return document.root; });"
            "list.length = 2; list")),
        &nodes));
    EXPECT_TRUE(nodes.empty());
    EXPECT_FALSE(m_runner.ToNodeList(
        engine.evaluate(
            QStringLiteral("var list = [document.root];"
                           "list.__defineGetter__(1, function () { throw new Error('boom'); });"
                           "list.length = 2; list")),
        &nodes));
    EXPECT_TRUE(engine.hasUncaughtException());
    engine.clearExceptions();
}

TEST_F(ScriptRunnerTest, NumbersThatDoNotFitInSinglePrecisionAreRefusedNamingTheMember)
{
    ASSERT_EQ(run(QStringLiteral("document.root.addShape('generator.Book.Paperback', 'Book');"
                                 "document.root.addLight('Lamp');")),
              QString());
    const QByteArray before = dump(m_document);
    const struct
    {
        const char *assignment;
        const char *error;
    } refused[] = {
        {"document.findNode('Book').position = [1e39, 0, 0]",
         "RangeError: position must be three finite numbers that fit in single precision"},
        {"document.findNode('Book').rotation = [0, NaN, 0]",
         "RangeError: rotation must be three finite numbers that fit in single precision"},
        {"document.findNode('Book').scale = [1, 1, -Infinity]",
         "RangeError: scale must be three finite numbers that fit in single precision"},
        {"document.camera.target = [0, 1e300, 0]",
         "RangeError: target must be three finite numbers that fit in single precision"},
        {"document.camera.distance = 1e39",
         "RangeError: distance must be a finite number that fits in single precision"},
        {"document.camera.fieldOfView = NaN",
         "RangeError: fieldOfView must be a finite number that fits in single precision"},
        {"document.camera.aspectRatio = Infinity",
         "RangeError: aspectRatio must be a finite number that fits in single precision"},
        {"document.camera.yaw = 1e39",
         "RangeError: yaw must be a finite number that fits in single precision"},
        {"document.ambient = -1e300",
         "RangeError: ambient must be a finite number that fits in single precision"},
        {"document.findNode('Lamp').intensity = 1e39",
         "RangeError: intensity must be a finite number that fits in single precision"},
        {"document.findNode('Lamp').shadowBlur = NaN",
         "RangeError: shadowBlur must be a finite number that fits in single precision"},
        {"document.findNode('Book').setParam('width', 1e39)",
         "Error: Parameter \"width\" of generator.Book.Paperback cannot take 1e+39"},
        {"document.findNode('Book').setParam('width', 'inf')",
         "Error: Parameter \"width\" of generator.Book.Paperback cannot take inf"},
        {"document.findNode('Book').setParam('type', NaN)",
         "Error: Parameter \"type\" of generator.Book.Paperback cannot take NaN"},
        {"document.findNode('Book').setParam('type', 3e9)",
         "Error: Parameter \"type\" of generator.Book.Paperback cannot take 3000000000"},
        {"document.root.addShape('generator.Boxes.Box', 'X', {depth: -Infinity})",
         "Error: Parameter \"depth\" of generator.Boxes.Box cannot take -Infinity"},
    };
    // Caught, so that the script goes on and keeps what it did: the camera, which undo does
    // not cover, must be as it was too.
    for (const auto &r : refused) {
        EXPECT_EQ(run(QStringLiteral("try { %1; } catch (e) { print(e.name + ': ' + e.message); }")
                          .arg(QLatin1String(r.assignment)))
                      .toStdString(),
                  std::string(r.error));
        EXPECT_EQ(dump(m_document), before) << r.assignment;
    }
    // The largest float is taken as it is; beyond a generator's limits a parameter is limited.
    EXPECT_EQ(run(QStringLiteral("var b = document.findNode('Book');"
                                 "b.position = [3.4e38, -3.4e38, 0]; b.setParam('width', 3e38);"
                                 "print(b.position[0] > 3.39e38, b.params.width)")),
              QStringLiteral("true 1000"));
}

TEST_F(ScriptRunnerTest, TheSceneIsNestedNoDeeperThanAFileCanHold)
{
    EXPECT_EQ(run(QStringLiteral(
                  "var g = document.root; for (var i = 0; i < 255; ++i) g = g.addGroup('G');"
                  "g.addShape('generator.Boxes.Box', 'Deepest');"
                  "var errors = [];"
                  "function tryIt(f) { try { f(); } catch (e) { errors.push(e.message); } }"
                  "tryIt(function () { g.children[0].addGroup('Deeper'); });"
                  "tryIt(function () { g.children[0].addLight('Deeper'); });"
                  "print(errors.length, errors[0]); print(document.dump().length > 0)")),
              QStringLiteral("2 Nodes cannot be nested more than 256 levels deep\ntrue"));
}

TEST_F(ScriptRunnerTest, OddArgumentsGetTheUsageAndRunNoScriptCodeInTheMiddle)
{
    m_document.root()->CreateChildGroup(QStringLiteral("[object Object]"));
    m_document.root()->createChildShape("generator.Boxes.Box", QStringLiteral("5"));
    const QByteArray before = dump(m_document);
    const struct
    {
        const char *call;
        const char *usage;
    } calls[] = {
        {"document.findNode({toString: function () { return 'A'; }})", "document.findNode(name)"},
        {"document.findNode(null)", "document.findNode(name)"},
        {"document.findNodes()", "document.findNodes(name)"},
        {"document.runTool(5)", "document.runTool(title)"},
        {"document.findNode('5').setParam({toString: function () { return 'width'; }}, 3)",
         "node.setParam(name, value)"},
    };
    for (const auto &c : calls) {
        EXPECT_EQ(run(QLatin1String(c.call)),
                  QStringLiteral("error: test.js:1: Error: Usage: ") + QLatin1String(c.usage));
    }
    EXPECT_EQ(run(QStringLiteral("print({toString: function () { throw 'no'; }}, 'more')")),
              QStringLiteral("error: test.js:1: no"))
        << "a throwing toString prints nothing";
    EXPECT_EQ(dump(m_document), before);
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
