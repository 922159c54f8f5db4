// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The Stack window: rebuilds, reordering, Cancel, and scripts that drive it.
#include "host/inode.h"
#include "hostapp/core/commands/session.h"
#include "hostapp/core/scene/meshnode.h"
#include "tests/support/testsupport.h"
#include "tests/support/toolssession.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDialog>
#include <QDir>
#include <QPixmap>

using namespace vantrel::host;
using vantrel::test::dump;

namespace {
using StackTest = vantrel::test::ToolsSessionTest;
} // namespace

TEST_F(StackTest, TheWindowRebuildsReordersAndCancelsExactly)
{
    std::vector<INode *> shapes{
        root()->createChildShape("generator.Book.HardCover", QStringLiteral("Atlas")),
        root()->createChildShape("generator.DiscBox.DVD", QStringLiteral("Novel")),
        root()->createChildShape("generator.DiscBox.DVD", QStringLiteral("Novel"))};
    static_cast<MeshNode *>(shapes[1])->generator()->setProperty("coverAngle", 30.f);
    document().SetSelection(shapes, Document::ReplaceSelection);
    const QByteArray before = dump(document());
    const int steps = document().history().undoCount();

    EXPECT_EQ(
        run(QStringLiteral(
            "var shapes = document.selection;"
            "document.runTool('Stack...');"
            "var w = document.window;"
            "function stack() { return document.findNode('Stack').children; }"
            "var first = stack()[0], copy = stack()[3];"
            "print(w.title, w.rows, stack().length, w.get('generationRepeatList'),"
            "      shapes[1].params.coverAngle);"
            "w.set('twistStep', 12); w.set('generationSeed', 5);"
            "print(stack()[3] === copy, stack().length, stack()[1].rotation);"
            "w.set('generationRepeatList', 3); print(stack()[3] === copy);"
            "w.set('generationRepeatList', 2);"
            "print(stack()[3] === copy, stack().length, w.get('twistStep'), stack()[1].rotation);"
            "function who(n) {"
            "  return n === shapes[0] ? 'A' : n === shapes[1] ? 'N1' : n === shapes[2] ? 'N2' : "
            "n.name; }"
            "w.moveRow(0, 2);"
            "print(w.rows, stack().map(who).join(' '));"
            "w.moveRow(2, 1);"
            "print(w.rows, stack().map(who).join(' '), w.get('generationSeed'));"
            "w.cancel();"
            "print(document.findNode('Stack'))")),
        QStringLiteral("Stacks Atlas,Novel,Novel 9 3 0\n"
                       "true 9 90,0,12\n"
                       "true\n"
                       "false 6 12 90,0,12\n"
                       "Novel,Novel,Atlas N1 N2 A Novel Novel Atlas\n"
                       "Novel,Atlas,Novel N1 A N2 Novel Atlas Novel 5\n"
                       "null"));
    EXPECT_EQ(dump(document()), before) << "cancel restores the scene, cover angle included";
    EXPECT_EQ(document().history().undoCount(), steps);

    // OK keeps exactly the last preview, as one undo step.
    EXPECT_EQ(run(QStringLiteral("document.runTool('Stack...');"
                                 "document.window.set('offsetX', 2.5);"
                                 "var preview = document.dump();"
                                 "document.window.accept();"
                                 "print(document.dump() === preview, document.selection[0].name)")),
              QStringLiteral("true Stack"));
    EXPECT_EQ(document().history().undoCount(), steps + 1);
    document().undo();
    EXPECT_EQ(dump(document()), before);
}

TEST_F(StackTest, TheWindowOutlivesScriptsThatChangeItsShapesAndKeepsItsSettingsToItself)
{
    INode *atlas = root()->createChildShape("generator.Book.HardCover", QStringLiteral("Atlas"));
    INode *novel = root()->createChildShape("generator.Book.HardCover", QStringLiteral("Novel"));
    const QString open = QStringLiteral("var a = document.findNode('Atlas'),"
                                        "    n = document.findNode('Novel');"
                                        "document.runTool('Stack...'); var w = document.window;"
                                        "function count() {"
                                        "  return document.findNode('Stack').children.length; }");

    // A re-sort that finds no shape by its row's name keeps the stack; one that finds some
    // stacks those.
    document().SetSelection({atlas}, Document::ReplaceSelection);
    QByteArray before = dump(document());
    int steps = document().history().undoCount();
    EXPECT_EQ(run(open
                  + QStringLiteral("a.name = 'Renamed'; w.moveRow(0, 0);"
                                   "print(w.rows, count(), a.parent.name);"
                                   "w.set('offsetX', 2); a.remove(); w.moveRow(0, 0);"
                                   "w.set('twistStep', 5); print(count()); w.cancel();"))
                  .toStdString(),
              "Atlas 3 Stack\n2");
    EXPECT_EQ(dump(document()), before);
    EXPECT_EQ(document().history().undoCount(), steps);

    document().SetSelection({atlas, novel}, Document::ReplaceSelection);
    before = dump(document());
    steps = document().history().undoCount();
    EXPECT_EQ(run(open
                  + QStringLiteral("n.name = 'Renamed'; w.moveRow(1, 0);"
                                   "print(w.rows, count(), n.parent === document.root);"
                                   "w.accept();"))
                  .toStdString(),
              "Novel,Atlas 3 true");
    EXPECT_EQ(document().history().undoCount(), steps + 1);
    document().undo();
    EXPECT_EQ(dump(document()), before);

    // The window's settings are reached through its panel only, with the panel's checks.
    EXPECT_EQ(run(open
                  + QStringLiteral("w.offsetX = 1e39; w.twistStep = 3e38;"
                                   "print(w.get('offsetX'), w.get('twistStep'));"
                                   "try { w.set('offsetX', 1e39); } catch (e) { print(e.message); }"
                                   "try { w.set('offsetX', {valueOf: function () {"
                                   "  document.window.cancel(); return 1; }}); }"
                                   "catch (e) { print(e.message); }"
                                   "print(document.window)"))
                  .toStdString(),
              "0 0\n"
              "The window has no setting \"offsetX\" that takes 1e+39\n"
              "The tool window is closed\n"
              "null");
    EXPECT_EQ(dump(document()), before);
}
