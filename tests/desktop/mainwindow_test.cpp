// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The desktop window driven as a user drives it, on a real X display (Xvfb): the Tools menu, the
// shortcuts and the tool-bar buttons open the real tool windows, whose sliders, list and buttons
// are worked with mouse and keyboard events. What the window leaves behind is compared, dump for
// dump, with what the tools' script functions make of the same scene in a separate headless
// session.

#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/basenode.h"
#include "hostapp/desktop/scenetreeview.h"
#include "hostapp/desktop/sceneview.h"
#include "tests/support/mainwindowdriver.h"
#include "tests/support/windowdriver.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDrag>
#include <QItemSelectionModel>
#include <QListWidget>
#include <QMenu>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QWindow>

namespace {

using namespace vantrel::host;
using namespace vantrel::test;

// One suite across the window's test files: one fixture type.
using MainWindowTest = MainWindowDriver;

TEST_F(MainWindowTest, PutOnTheFloorFromShortcutAndMenuWithUndoAndRedoThroughTheMenu)
{
    const QString scene = sampleScene();
    ASSERT_TRUE(m_window->openFile(scene));
    const std::string before = dump();
    const std::string expected
        = scripted(scene, QStringLiteral("document.runTool('Put On The Floor')"));
    ASSERT_NE(before, expected);

    // F in the view.
    key(Qt::Key_F);
    EXPECT_EQ(dump(), expected);
    EXPECT_EQ(document().history().undoCount(), 1);
    EXPECT_EQ(m_window->undoAction()->text(), QStringLiteral("&Undo Put On The Floor"));
    EXPECT_TRUE(m_window->isWindowModified());
    EXPECT_TRUE(m_window->windowTitle().startsWith(QStringLiteral("sample.vscene")));

    QMenu *edit = editMenu();
    ASSERT_NE(edit, nullptr);
    pick(edit, QStringLiteral("&Undo Put On The Floor"));
    EXPECT_EQ(dump(), before);
    EXPECT_FALSE(m_window->isWindowModified()); // back where the file was
    pick(edit, QStringLiteral("&Redo Put On The Floor"));
    EXPECT_EQ(dump(), expected);
    pick(edit, QStringLiteral("&Undo Put On The Floor"));

    // And with the standard shortcuts.
    QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(dump(), before);
    QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(dump(), expected);
    QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier);

    // The same from the Tools menu.
    pickTool(QStringLiteral("Put On The Floor"));
    EXPECT_EQ(dump(), expected);
    EXPECT_EQ(document().history().undoCount(), 1);
}

TEST_F(MainWindowTest, ToolsNeedingASelectionAreGreyedOutAndTheirShortcutDoesNothing)
{
    ASSERT_TRUE(m_window->openFile(sampleScene()));
    document().SetSelection({}, Document::ReplaceSelection);
    QApplication::processEvents();
    QMenu *tools = m_window->toolsMenu();
    QStringList titles;
    for (QAction *action : tools->actions())
        titles << action->text() + (action->isEnabled() ? QString() : QStringLiteral(" (grey)"));
    // By order number, with their shortcuts.
    EXPECT_EQ(titles,
              QStringList({QStringLiteral("Fit To View..."),
                           QStringLiteral("Easy Lighting..."),
                           QStringLiteral("Put On The Floor (grey)"),
                           QStringLiteral("Stack... (grey)"),
                           QStringLiteral("Step and Repeat... (grey)")}));
    EXPECT_EQ(menuAction(tools, QStringLiteral("Put On The Floor"))->shortcut(),
              QKeySequence(Qt::Key_F));
    const std::string before = dump();
    const int steps = document().history().undoCount();
    key(Qt::Key_F);
    EXPECT_EQ(dump(), before);
    EXPECT_EQ(document().history().undoCount(), steps);

    // Selecting a row in the tree brings them back as soon as the event loop runs.
    BaseNode *box = document().root()->childNode(0);
    m_window->tree()->setFocus();
    m_window->tree()->setCurrentIndex(m_window->tree()->model()->index(0, 0));
    QApplication::processEvents();
    ASSERT_EQ(document().GetSelection(), std::vector<INode *>({box}));
    EXPECT_TRUE(menuAction(tools, QStringLiteral("Step and Repeat..."))->isEnabled());

    // A click on the hard cover in the view selects it, in the tree too; Ctrl + click adds the
    // gift box.
    BaseNode *hardCover = document().root()->childNode(1)->childNode(1);
    auto pointAt = [this](const BaseNode *wanted) {
        for (int y = 4; y < m_window->view()->height(); y += 8) {
            for (int x = 4; x < m_window->view()->width(); x += 8) {
                if (m_window->view()->nodeAt(QPoint(x, y)) == wanted)
                    return QPoint(x, y);
            }
        }
        return QPoint(-1, -1);
    };
    const QPoint onBook = pointAt(hardCover), onBox = pointAt(box);
    ASSERT_NE(onBook, QPoint(-1, -1));
    ASSERT_NE(onBox, QPoint(-1, -1));
    QTest::mouseClick(m_window->view(), Qt::LeftButton, {}, onBook);
    QTest::mouseClick(m_window->view(), Qt::LeftButton, Qt::ControlModifier, onBox);
    EXPECT_EQ(document().GetSelection(), std::vector<INode *>({hardCover, box}));
    QStringList treeSelection;
    for (const QModelIndex &index : m_window->tree()->selectionModel()->selectedRows())
        treeSelection << index.data().toString();
    treeSelection.sort();
    EXPECT_EQ(treeSelection,
              QStringList({QStringLiteral("Gift Box"), QStringLiteral("Hard Cover")}));

    // The tool bar holds the tools' buttons by position.
    QStringList buttons;
    for (QAction *action : m_window->toolBar()->actions())
        buttons << action->text();
    EXPECT_EQ(buttons,
              QStringList({QStringLiteral("Easy Lighting..."), QStringLiteral("Fit To View...")}));
}

TEST_F(MainWindowTest, EasyLightingFromShortcutAndMenuOkAndCancel)
{
    const QString scene = sampleScene();
    ASSERT_TRUE(m_window->openFile(scene));
    const std::string before = dump();

    // Cancel from the menu takes everything back.
    withModal([this] { pickTool(QStringLiteral("Easy Lighting...")); },
              [](QWidget *window) {
                  nudge(window, QStringLiteral("angleH"), Qt::Key_PageUp, 3);
                  press(window, "cancel");
              });
    EXPECT_EQ(dump(), before);
    EXPECT_EQ(document().history().undoCount(), 0);

    // L in the view, two sliders moved, OK.
    float angleH = 0.f, contrast = 0.f, angleV = 0.f, blur = 0.f;
    withModal([this] { key(Qt::Key_L); },
              [&, this](QWidget *window) {
                  angleH = nudge(window, QStringLiteral("angleH"), Qt::Key_PageDown, 2);
                  contrast = nudge(window, QStringLiteral("contrast"), Qt::Key_Right, 5);
                  angleV = valueOf(window, QStringLiteral("angleV"));
                  blur = valueOf(window, QStringLiteral("blur"));
                  screenshot(window, QStringLiteral("main-easy-lighting"));
                  press(window, "ok");
              });
    const std::string expected = scripted(
        scene,
        QStringLiteral("tools.easyLighting({hangle: %1, vangle: %2, contrast: %3, blur: %4})")
            .arg(number(angleH), number(angleV), number(contrast), number(blur)));
    EXPECT_EQ(dump(), expected);
    EXPECT_EQ(document().history().undoCount(), 1);
    EXPECT_EQ(m_window->undoAction()->text(), QStringLiteral("&Undo Easy Lighting..."));
}

TEST_F(MainWindowTest, FitToViewFromShortcutAndToolbarButton)
{
    const QString scene = sampleScene();
    ASSERT_TRUE(m_window->openFile(scene));
    const std::string before = dump();
    withModal([this] { key(Qt::Key_V); },
              [](QWidget *window) {
                  typeInto(window, QStringLiteral("padding"), QStringLiteral("30"));
                  press(window, "cancel");
              });
    EXPECT_EQ(dump(), before);

    QWidget *button = m_window->toolBar()->widgetForAction(m_window->toolBar()->actions().at(1));
    ASSERT_NE(button, nullptr);
    float padding = 0.f;
    withModal([button] { QTest::mouseClick(button, Qt::LeftButton); },
              [&, this](QWidget *window) {
                  // The padding shows in percent.
                  typeInto(window, QStringLiteral("padding"), QStringLiteral("30"));
                  padding = valueOf(window, QStringLiteral("padding"));
                  screenshot(window, QStringLiteral("main-fit-to-view"));
                  press(window, "ok");
              });
    EXPECT_FLOAT_EQ(padding, 0.3f);
    EXPECT_EQ(
        dump(),
        scripted(scene, QStringLiteral("tools.fitToView({padding: %1})").arg(number(padding))));
    // The camera is view state: no undo step.
    EXPECT_EQ(document().history().undoCount(), 0);
}

TEST_F(MainWindowTest, StepAndRepeatFromTheMenuFollowsInTheViewAndUndoesAsOneStep)
{
    const QString scene = sampleScene();
    ASSERT_TRUE(m_window->openFile(scene));
    const std::string before = dump();
    // The gift box, picked in the tree.
    m_window->tree()->setCurrentIndex(m_window->tree()->model()->index(0, 0));
    QApplication::processEvents();
    const std::string selected = dump();

    withModal([this] { pickTool(QStringLiteral("Step and Repeat...")); },
              [this](QWidget *window) {
                  const QImage first = m_window->view()->grabFramebuffer();
                  typeInto(window, QStringLiteral("repeatX"), QStringLiteral("4"));
                  typeInto(window, QStringLiteral("stepY"), QStringLiteral("2.5"));
                  nudge(window, QStringLiteral("repeatZ"), Qt::Key_Right, 1);
                  // The live copies are in the view while the window is open.
                  EXPECT_NE(m_window->view()->grabFramebuffer(), first);
                  screenshot(window, QStringLiteral("main-step-and-repeat"));
                  press(window, "ok");
              });
    const std::string expected = scripted(
        scene,
        QStringLiteral("document.selection = [document.findNode('Gift Box')];"
                       "tools.stepAndRepeat(document.findNode('Gift Box'),"
                       " {repeatx: 4, repeaty: 3, repeatz: 2, stepx: 1, stepy: 2.5, stepz: 1})"));
    EXPECT_EQ(dump(), expected);
    EXPECT_EQ(m_window->undoAction()->text(), QStringLiteral("&Undo Step and Repeat..."));
    pick(editMenu(), QStringLiteral("&Undo Step and Repeat..."));
    EXPECT_EQ(dump(), selected);
    pick(editMenu(), QStringLiteral("&Undo Select"));
    EXPECT_EQ(dump(), before);
}

TEST_F(MainWindowTest, StackFromTheMenuWithARowDraggedInTheList)
{
    const QString scene = sampleScene();
    ASSERT_TRUE(m_window->openFile(scene));
    // The two books, paperback first.
    BaseNode *shelf = document().root()->childNode(1);
    BaseNode *paperback = shelf->childNode(0), *hardCover = shelf->childNode(1);
    document().SetSelection({paperback, hardCover}, Document::ReplaceSelection);
    const std::string before = dump();

    withModal(
        [this] { pickTool(QStringLiteral("Stack...")); },
        [this](QWidget *window) {
            auto *list = window->findChild<QListWidget *>(QStringLiteral("nodes"));
            ASSERT_NE(list, nullptr);
            ASSERT_EQ(list->count(), 2);
            EXPECT_EQ(list->item(0)->text(), QStringLiteral("Paperback"));
            // Drag the first row below the second, through the window system as a
            // pointer would.
            QWindow *handle = window->windowHandle();
            QWidget *rows = list->viewport();
            const QPoint from = rows->mapTo(window, list->visualItemRect(list->item(0)).center());
            const QRect last = list->visualItemRect(list->item(1));
            const QPoint to = rows->mapTo(window, QPoint(last.center().x(), last.bottom() - 1));
            dragThroughWindowSystem(handle, list, from, to, QPoint(0, 15));
            ASSERT_TRUE(QTest::qWaitFor(
                [list] { return list->item(0)->text() == QLatin1String("Hard Cover"); }, 5000));
            QApplication::processEvents();
            typeInto(window, QStringLiteral("generationRepeatList"), QStringLiteral("2"));
            typeInto(window, QStringLiteral("twistStep"), QStringLiteral("6"));
            screenshot(window, QStringLiteral("main-stack"));
            press(window, "ok");
        });
    const std::string expected
        = scripted(scene,
                   QStringLiteral("var shelf = document.findNode('Shelf');"
                                  "document.selection = [shelf.children[0], shelf.children[1]];"
                                  "tools.stack([shelf.children[1], shelf.children[0]],"
                                  " {repeats: 2, twistStep: 6})"));
    EXPECT_NE(dump(), before);
    EXPECT_EQ(dump(), expected);
    EXPECT_EQ(m_window->undoAction()->text(), QStringLiteral("&Undo Stack..."));
}

TEST_F(MainWindowTest, AToolsMessageIsAMessageBoxAndChangesNothing)
{
    ASSERT_TRUE(m_window->openFile(sampleScene()));
    // The key light, picked in the tree: a light cannot be stacked.
    const QModelIndex light = m_window->tree()->model()->index(3, 0);
    ASSERT_EQ(light.data().toString(), QStringLiteral("Key Light"));
    m_window->tree()->setCurrentIndex(light);
    QApplication::processEvents();
    const std::string before = dump();
    const int steps = document().history().undoCount();
    const QString message = messageOf([this] { pickTool(QStringLiteral("Stack...")); });
    EXPECT_EQ(message,
              QStringLiteral("None of the selected shapes are suitable for stacking. Please "
                             "select flat stackable object, like a book or box."));
    EXPECT_EQ(dump(), before);
    EXPECT_EQ(document().history().undoCount(), steps);
}

} // namespace
