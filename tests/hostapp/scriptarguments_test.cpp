// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// What script functions accept as arguments: node lists, dictionaries and numbers read once and
// within limits, the nesting depth a scene file can hold, and the usage message for odd
// arguments, each refusal leaving the scene as it was.
#include "hostapp/core/scene/meshnode.h"
#include "tests/hostapp/scriptrunnertest.h"
#include "tests/support/testsupport.h"

#include <gtest/gtest.h>

#include <QScriptEngine>

using namespace vantrel::host;
using vantrel::test::dump;
using vantrel::test::ScriptRunnerTest;

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
