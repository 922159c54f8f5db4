// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// tools.stack: every check before anything is built, then the stack.
#include "host/inode.h"
#include "hostapp/core/commands/session.h"
#include "hostapp/core/scene/meshnode.h"
#include "tests/support/testsupport.h"
#include "tests/support/toolssession.h"
#include "tools/stack/stackbuilder.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDialog>
#include <QDir>
#include <QPixmap>

using namespace vantrel::host;
using vantrel::test::dump;

namespace {
using StackTest = vantrel::test::ToolsSessionTest;

// Calls of tools.stack that must fail, with the error each must throw before anything changes.
const struct
{
    const char *call;
    const char *error;
} s_failures[] = {
    {"tools.stack([document.findNode('Box')])", "Usage: tools.stack(nodes, params)"},
    {"tools.stack([document.findNode('Box')], {}, 1)", "Usage: tools.stack(nodes, params)"},
    {"tools.stack(document.findNode('Box'), {})",
     "The first parameter has to be an array of nodes"},
    {"tools.stack([1, 2], {})", "The first parameter has to be an array of nodes"},
    {"tools.stack([document.findNode('Box')], [])", "The second parameter has to be a dictionary"},
    {"tools.stack([], {})", "The list of nodes is empty"},
    {"tools.stack([document.findNode('Box'), document.findNode('Lamp')], {})",
     "The list contains nodes that cannot be stacked"},
    {"tools.stack([document.findNode('Lamp')], {})",
     "The list contains nodes that cannot be stacked"},
    {"new tools.stack([], {})", "Do not call this as a constructor"},
    {"tools.stack([document.findNode('Box'), document.findNode('Box')], {repeats: 50001})",
     "The stack would hold 100002 shapes; at most 100000 can be stacked"},
    {"tools.stack([document.findNode('Box')], {repeats: 5e9})",
     "The stack would hold 2147483647 shapes; at most 100000 can be stacked"},
    // Nodes out of the scene, before the call or taken out by a getter while the
    // dictionary is read.
    {"var b = document.findNode('Box'); b.remove(); tools.stack([b], {})",
     "The first parameter has to be an array of nodes"},
    {"var b = document.findNode('Box'); tools.stack([b], {get seed() { b.remove(); return 2; "
     "}})",
     "The first parameter has to be an array of nodes"},
    {"var b = document.root.addShape('generator.Boxes.Box', 'New'); document.undo();"
     "tools.stack([b], {})",
     "The first parameter has to be an array of nodes"},
    {"tools.stack([document.findNode('Box')], {offsetX: NaN})",
     "offsetX must be a finite number that fits in single precision"},
    {"tools.stack([document.findNode('Box')], {offsetY: -Infinity})",
     "offsetY must be a finite number that fits in single precision"},
    {"tools.stack([document.findNode('Box')], {twistStep: 1e39})",
     "twistStep must be a finite number that fits in single precision"},
    {"tools.stack([document.findNode('Box')], {twistDisorder: '1e39'})",
     "twistDisorder must be a finite number that fits in single precision"},
    {"tools.stack([document.findNode('Box')], {offsetDisorder: Infinity})",
     "offsetDisorder must be a finite number that fits in single precision"},
    {"tools.stack([document.findNode('Box')], {seed: NaN})",
     "seed must be a finite number that fits in single precision"},
    {"tools.stack([document.findNode('Box')], {repeats: Infinity})",
     "repeats must be a finite number that fits in single precision"},
};
} // namespace

TEST_F(StackTest, TheScriptFunctionChecksEverythingBeforeBuilding)
{
    root()->createChildShape("generator.Boxes.Box", QStringLiteral("Box"));
    root()->CreateChildLight(QStringLiteral("Lamp"));
    const QByteArray before = dump(document());
    for (const auto &failure : s_failures) {
        EXPECT_EQ(run(QLatin1String(failure.call)).toStdString(),
                  "error: test.js:1: Error: " + std::string(failure.error));
        EXPECT_EQ(dump(document()), before) << failure.call;
    }

    EXPECT_EQ(
        run(QStringLiteral(
            "var r = tools.stack([document.findNode('Box')], {repeats: 1, twistStep: 15, Seed: 4});"
            "var s = document.findNode('Stack');"
            "print(r, s.children.length, s.children[0].rotation,"
            "      Math.abs(s.children[0].worldBox[2]) < 1e-4)")),
        QStringLiteral("undefined 1 90,0,0 true"));
    const auto counts = QStringLiteral(
        "print(document.findNodes('Stack').map(function (s) { return s.children.length; }))");
    EXPECT_EQ(
        run(QStringLiteral("tools.stack([document.findNode('Box')], {repeats: -4});") + counts),
        QStringLiteral("0,1"));
    EXPECT_EQ(
        run(QStringLiteral("tools.stack([document.findNode('Box')], {repeats: 0});") + counts),
        QStringLiteral("0,0,1"));
    EXPECT_EQ(run(QStringLiteral("tools.stack([document.findNode('Box')], {});") + counts),
              QStringLiteral("0,0,0,3"));

    // Equal scenes and equal parameters give equal stacks.
    QByteArray stacks[2];
    for (QByteArray &result : stacks) {
        Session session;
        QString error;
        session.document().root()->createChildShape("generator.Boxes.Box", QStringLiteral("One"));
        session.document().root()->createChildShape("generator.Book.HardCover",
                                                    QStringLiteral("Two"));
        std::vector<INode *> nodes = session.document().GetRootNode()->GetChildren();
        StackBuilder builder(nodes, &session.document(), 3, false);
        StackLayout layout;
        layout.seed = 7;
        layout.twistDisorder = 1;
        layout.offsetDisorder = 0.5f;
        builder.Layout(layout);
        builder.setCommitted(true);
        result = dump(session.document());
    }
    EXPECT_EQ(stacks[0], stacks[1]);
}
