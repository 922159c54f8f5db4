// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// tools.stepAndRepeat and the settings table behind the panel and the script keys.
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
