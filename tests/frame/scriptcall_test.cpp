// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "frame/scriptcall.h"
#include "frame/scriptsettings.h"
#include "host/idocument.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/document/documentcontext.h"
#include "hostapp/core/scene/basenode.h"
#include "hostapp/core/script/scriptrunner.h"
#include "tests/support/testsupport.h"

#include <gtest/gtest.h>

#include <QScriptContext>
#include <QScriptEngine>

using namespace vantrel::host;
using vantrel::test::dump;

namespace {

// A settings object with one property of each kind the tools use.
class ProbeSettings : public QObject
{
    Q_OBJECT
    Q_PROPERTY(float angle READ angle WRITE setAngle)
    Q_PROPERTY(int count READ count WRITE setCount)
    Q_PROPERTY(bool flag READ flag WRITE setFlag)

public:
    float angle() const { return m_angle; }
    void setAngle(float v) { m_angle = qBound(-180.f, v, 180.f); }
    int count() const { return m_count; }
    void setCount(int v) { m_count = qBound(1, v, 30); }
    bool flag() const { return m_flag; }
    void setFlag(bool v) { m_flag = v; }

    float m_angle = 90;
    int m_count = 3;
    bool m_flag = true;
};

const ScriptSetting s_keys[] = {{"angle", "angle"}, {"count", "count"}, {"flag", "flag"}};

// What the test functions saw, for the checks below.
QString s_seen;

// tools.probe(params): the one-argument shape; records the settings it would apply.
QScriptValue probe(QScriptContext *context, QScriptEngine *engine)
{
    ScriptCall call(context, engine, "Usage: tools.probe(params)", 1);
    QVariantMap params;
    if (!call.dictionary(0, "The parameter has to be a dictionary", &params)
        || !call.numbers(params, NumberKeys(ProbeSettings::staticMetaObject, s_keys)))
        return call.result();
    ProbeSettings settings;
    ApplyScriptSettings(settings, params, s_keys);
    s_seen = QStringLiteral("%1 %2 %3")
                 .arg(double(settings.angle()))
                 .arg(settings.count())
                 .arg(settings.flag());
    call.document().SetAmbientIntensity(0.5f); // proves the call reached its document
    return call.result();
}

// tools.probe2(nodes, params): the two-argument shape with a check after the first conversion.
QScriptValue probe2(QScriptContext *context, QScriptEngine *engine)
{
    ScriptCall call(context, engine, "Usage: tools.probe2(nodes, params)", 2);
    std::vector<INode *> nodes;
    if (!call.nodes(0, "The first parameter has to be an array of nodes", &nodes))
        return call.result();
    if (nodes.size() != 1 && !call.fail("The first parameter has be a shape node"))
        return call.result();
    QVariantMap params;
    if (!call.dictionary(1, "The second parameter has to be a dictionary", &params))
        return call.result();
    s_seen = QStringLiteral("ran");
    return call.result();
}

class ScriptCallTest : public ::testing::Test
{
protected:
    ScriptCallTest()
        : m_context(&m_document)
        , m_runner(m_context)
    {
        m_runner.RegisterFunction("probe", probe);
        m_runner.RegisterFunction("probe2", probe2);
        m_document.root()->CreateChildGroup(QStringLiteral("Group"));
        m_document.history().clear();
    }

    // The error message a call throws ("" when none) and whether the result was undefined.
    QString call(const QString &program)
    {
        s_seen.clear();
        QScriptEngine &engine = *m_runner.engine();
        const QScriptValue result = engine.evaluate(program);
        QString error;
        if (engine.hasUncaughtException()) {
            error = result.property(QStringLiteral("message")).toString();
            engine.clearExceptions();
        } else {
            EXPECT_TRUE(result.isUndefined()) << qPrintable(program);
        }
        return error;
    }

    Document m_document;
    DocumentContext m_context;
    ScriptRunner m_runner;
};

} // namespace

TEST_F(ScriptCallTest, ChecksRunInTheirOrderWithTheirMessagesAndChangeNothing)
{
    // Each tool's script tests check the messages its own calls get (usage, constructor,
    // dictionary, node list, a check between two conversions) and that they change nothing. What
    // no tool's call shows is that new is refused before the argument count is looked at.
    const QByteArray before = dump(m_document);
    EXPECT_EQ(call(QStringLiteral("new tools.probe()")),
              QStringLiteral("Do not call this as a constructor"));
    EXPECT_TRUE(s_seen.isEmpty()) << "ran past its checks";
    EXPECT_EQ(dump(m_document), before);
    EXPECT_EQ(call(QStringLiteral("tools.probe2(document.root.children[0], {})")), QString());
    EXPECT_EQ(s_seen, QStringLiteral("ran"));
}

TEST_F(ScriptCallTest, AnEngineWithoutDocumentOrRunnerIsReportedFirst)
{
    s_seen.clear();     // the tests may share one process
    QScriptEngine bare; // belongs to no document
    bare.globalObject().setProperty(QStringLiteral("probe"), bare.newFunction(probe));
    QScriptValue result = bare.evaluate(QStringLiteral("new probe(1, 2)"));
    EXPECT_EQ(result.property(QStringLiteral("message")).toString(),
              QStringLiteral("Can't get document context"));

    DocumentContext withoutRunner(&m_document);
    QScriptEngine engine;
    bindScriptEngine(&engine, &withoutRunner);
    engine.globalObject().setProperty(QStringLiteral("probe"), engine.newFunction(probe));
    result = engine.evaluate(QStringLiteral("new probe(1, 2)"));
    EXPECT_EQ(result.property(QStringLiteral("message")).toString(),
              QStringLiteral("Can't get script runner"));
    EXPECT_TRUE(s_seen.isEmpty());
}

TEST_F(ScriptCallTest, KeysMatchExactlyUnknownOnesAreIgnoredAndBadValuesBecomeZero)
{
    EXPECT_EQ(call(QStringLiteral("tools.probe({})")), QString());
    EXPECT_EQ(s_seen, QStringLiteral("90 3 1")) << "missing keys leave the initial values";
    EXPECT_EQ(m_document.GetAmbientIntensity(), 0.5f) << "the call reached its document";

    call(QStringLiteral("tools.probe({angle: 'abc', count: 'many', flag: 0})"));
    EXPECT_EQ(s_seen, QStringLiteral("0 1 0")) << "non-numbers convert to 0, then meet the limits";

    call(QStringLiteral("tools.probe({angle: 500, count: 12.7, flag: 'yes'})"));
    EXPECT_EQ(s_seen, QStringLiteral("180 13 1"))
        << "limits of the write accessors; Qt's toInt rounds";

    // Below the int range a count saturates rather than wrapping round to a large number (the
    // tools' tests check the top of the range).
    call(QStringLiteral("tools.probe({count: -3e9})"));
    EXPECT_EQ(s_seen, QStringLiteral("90 1 1"));
}

TEST_F(ScriptCallTest, NumbersBeyondSinglePrecisionAreRefusedNamingTheKey)
{
    // The tools' tests refuse NaN, the infinities and 1e39 (as a number and as text) for their
    // keys; these are the forms they do not write.
    const QByteArray before = dump(m_document);
    for (const char *value : {"-3.5e38", "'inf'", "'1e400'", "new Number(Infinity)"}) {
        for (const char *key : {"angle", "count"}) {
            EXPECT_EQ(call(QStringLiteral("tools.probe({%1: %2})")
                               .arg(QLatin1String(key), QLatin1String(value)))
                          .toStdString(),
                      std::string(key) + " must be a finite number that fits in single precision")
                << value;
            EXPECT_TRUE(s_seen.isEmpty()) << key << ": " << value;
        }
    }
    EXPECT_EQ(dump(m_document), before);
    call(QStringLiteral("tools.probe({angle: 3.4e38, count: 3.4e38, flag: NaN})"));
    EXPECT_EQ(s_seen, QStringLiteral("180 30 0")) << "the largest floats meet the limits; "
                                                     "a flag is no number";
}

TEST_F(ScriptCallTest, ArgumentsAreReadWholeBeforeTheCallGoesOnAndTheScriptsOwnErrorsWin)
{
    // Getters and valueOf run while the arguments are read; what they throw is the error.
    const struct
    {
        const char *program;
        const char *message;
    } thrown[] = {
        {"tools.probe({get angle() { throw new Error('boom'); }})", "boom"},
        {"tools.probe({count: {valueOf: function () { throw new Error('boom'); }}})", "boom"},
        {"var list = [document.root.children[0]];"
         "list.__defineGetter__(1, function () { throw new Error('boom'); }); list.length = 2;"
         "tools.probe2(list, {})",
         "boom"},
        {"var o = {}; for (var i = 0; i < 50000; ++i) o = {x: o}; tools.probe(o)",
         "The parameter is nested more than 64 levels deep"},
        {"var o = {}; for (var i = 0; i < 64; ++i) o = {x: o};"
         "tools.probe2(document.root.children[0], o)",
         "The parameter is nested more than 64 levels deep"},
    };
    for (const auto &t : thrown) {
        EXPECT_EQ(call(QLatin1String(t.program)), QLatin1String(t.message)) << t.program;
        EXPECT_TRUE(s_seen.isEmpty()) << t.program << " ran past its checks";
    }
    call(QStringLiteral("tools.probe({angle: {valueOf: function () { return 45; }}})"));
    EXPECT_EQ(s_seen, QStringLiteral("45 3 1")) << "an object with a valueOf stands for its value";

    // A getter of the dictionary that frees a node of the list (its creation undone, the redo
    // discarded by a new change): the node list's message. (The Stack's tests check a node
    // taken out of the scene, before the call and by such a getter.)
    EXPECT_EQ(
        call(QStringLiteral("var n = document.root.addGroup('N');"
                            "tools.probe2(n, {get a() {"
                            "  document.undo(); document.root.addGroup('Other'); return 1; }})")),
        QStringLiteral("The first parameter has to be an array of nodes"));
    EXPECT_TRUE(s_seen.isEmpty());
}

#include "scriptcall_test.moc"
