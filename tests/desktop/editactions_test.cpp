// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Making and editing a scene in the desktop window as a user does: the Add menu's shapes, light,
// group and model import, the Edit menu's scene actions by shortcut and menu, renaming and
// dragging rows in the tree. Each action is checked as one named undo step whose undo gives the
// dump back exactly, and against what a headless script session makes of the same edit, or
// against world matrices taken before.

#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/document/worldplacement.h"
#include "hostapp/core/scene/basenode.h"
#include "hostapp/desktop/addmenu.h"
#include "hostapp/desktop/editactions.h"
#include "hostapp/desktop/scenetreemodel.h"
#include "hostapp/desktop/scenetreeview.h"
#include "hostapp/desktop/sceneview.h"
#include "hostapp/desktop/shapenames.h"
#include "tests/support/mainwindowdriver.h"
#include "tests/support/testsupport.h"
#include "tests/support/windowdriver.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QDrag>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QTest>
#include <QTimer>
#include <QWindow>

namespace {

using namespace vantrel::host;
using namespace vantrel::test;

class EditActionsTest : public MainWindowDriver
{
protected:
    // Presses a key with modifiers in the view, the window made active first.
    void keyInView(Qt::Key pressed, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        m_window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(m_window.get()));
        m_window->view()->setFocus();
        QTest::keyClick(m_window->view(), pressed, modifiers);
        QApplication::processEvents();
    }

    void select(const std::vector<INode *> &nodes)
    {
        document().SetSelection(nodes, Document::ReplaceSelection);
        document().history().clear(); // the selection is the test's setting, not a user's step
        QApplication::processEvents();
    }

    QString undoText() const { return m_window->undoAction()->text(); }

    // Takes the last step back through the Edit menu; the dump must be before's exactly.
    void expectUndoGives(const std::string &before, const char *what)
    {
        pick(editMenu(), undoText());
        EXPECT_EQ(dump(), before) << what;
    }
};

::testing::AssertionResult standsOnTheFloorBelow(const INode *node, const Vector3 &target)
{
    const TBBox<float> box = ComputeNodeBBox(node);
    const float x = 0.5f * (box.min[0] + box.max[0]), y = 0.5f * (box.min[1] + box.max[1]);
    if (std::fabs(box.min[2]) > 1e-4f || std::fabs(x - target.x) > 1e-4f
        || std::fabs(y - target.y) > 1e-4f)
        return ::testing::AssertionFailure() << node->GetName().toStdString() << ": lowest point "
                                             << box.min[2] << ", centre " << x << " " << y;
    return ::testing::AssertionSuccess();
}

TEST_F(EditActionsTest, AddMenuAddsEveryShapeOnTheFloorBelowTheTargetAsOneStepEach)
{
    const Vector3 target(12.5f, -8.f, 20.f);
    document().camera()->SetTarget(target);
    for (const ShapeName &entry : shapeNames()) {
        const QString name = QString::fromUtf8(entry.name);
        const int steps = document().history().undoCount();
        pickAdd(QString::fromUtf8(entry.group), name);
        QApplication::processEvents();
        ASSERT_EQ(document().history().undoCount(), steps + 1) << entry.name;
        EXPECT_EQ(undoText(), QStringLiteral("&Undo Add ") + name);
        INode *added = document().root()->GetChildren().back();
        EXPECT_EQ(added->GetName(), name);
        EXPECT_EQ(document().GetSelection(), std::vector<INode *>{added});
        EXPECT_TRUE(standsOnTheFloorBelow(added, target));
    }
    // A name already taken gets a number; the same as a script makes it, placed by its box.
    const QString scene = m_folder.filePath(QStringLiteral("added.vscene"));
    ASSERT_TRUE(m_window->saveFile(scene));
    pickAdd(QStringLiteral("Books"), QStringLiteral("Hard Cover Book"));
    EXPECT_EQ(document().root()->GetChildren().back()->GetName(),
              QStringLiteral("Hard Cover Book 2"));
    EXPECT_EQ(dump(),
              scripted(scene,
                       QStringLiteral("var n = document.root.addShape('generator.Book.HardCover',"
                                      " 'Hard Cover Book 2');"
                                      "var b = n.worldBox;"
                                      "n.position = [12.5 - (b[0] + b[3]) / 2, -8 - (b[1] + b[4]) "
                                      "/ 2, -b[2]];"
                                      "document.selection = [n];")));

    // A light above the target's floor point, a group on it.
    pick(m_window->addMenu()->menu(), QStringLiteral("&Light"));
    EXPECT_EQ(undoText(), QStringLiteral("&Undo Add Light"));
    const Matrix light = WorldPlacement::worldMatrix(document().root()->GetChildren().back());
    EXPECT_EQ(Vector3(light[12], light[13], light[14]),
              Vector3(target.x, target.y, AddMenu::LightHeight));
    pick(m_window->addMenu()->menu(), QStringLiteral("&Group"));
    EXPECT_EQ(undoText(), QStringLiteral("&Undo Add Group"));
    EXPECT_EQ(document().root()->GetChildren().back()->GetNodeType(), INode::GroupNodeType);

    // The menu as a user sees it, the Books open.
    QMenu *add = m_window->addMenu()->menu();
    QMenuBar *bar = m_window->menuBar();
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(add->menuAction()).center());
    ASSERT_TRUE(QTest::qWaitFor([add] { return add->isVisible(); }, 5000));
    QAction *books = menuAction(add, QStringLiteral("Books"));
    // Pointing at the entry opens its submenu, as it does for a user.
    QTest::mouseMove(add, add->actionGeometry(books).center());
    add->setActiveAction(books);
    ASSERT_TRUE(QTest::qWaitFor([books] { return books->menu()->isVisible(); }, 5000));
    screenshot(books->menu(), QStringLiteral("edit-add-menu"));
    books->menu()->close();
    add->close();
}

TEST_F(EditActionsTest, ImportModelAddsTheFileAndAnUnreadableOneChangesNothing)
{
    const QString model = m_folder.filePath(QStringLiteral("crate.obj"));
    QFile obj(model);
    ASSERT_TRUE(obj.open(QIODevice::WriteOnly));
    // A tetrahedron hovering below the floor: it must be lifted onto it.
    obj.write("v 0 0 -5\nv 10 0 -5\nv 0 10 -5\nv 0 0 5\nf 1 3 2\nf 1 2 4\nf 1 4 3\nf 2 3 4\n");
    obj.close();
    withModal([this] { pick(m_window->addMenu()->menu(), QStringLiteral("&Import Model...")); },
              [model](QWidget *dialog) {
                  // The whole path typed into the name field and Return, as a user pastes it.
                  auto *field = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
                  ASSERT_NE(field, nullptr);
                  field->setFocus();
                  QTest::keyClicks(field, model);
                  QTest::keyClick(field, Qt::Key_Return);
              });
    EXPECT_EQ(undoText(), QStringLiteral("&Undo Add crate"));
    INode *added = document().root()->GetChildren().back();
    EXPECT_EQ(added->GetName(), QStringLiteral("crate"));
    EXPECT_TRUE(standsOnTheFloorBelow(added, document().camera()->GetTarget()));

    const QString broken = m_folder.filePath(QStringLiteral("broken.obj"));
    QFile bad(broken);
    ASSERT_TRUE(bad.open(QIODevice::WriteOnly));
    bad.write("this is no model\n");
    bad.close();
    const std::string before = dump();
    const int steps = document().history().undoCount();
    const QString message = messageOf([&] { m_window->addMenu()->importModel(broken); });
    EXPECT_TRUE(message.contains(QStringLiteral("broken.obj"))) << message.toStdString();
    EXPECT_EQ(dump(), before);
    EXPECT_EQ(document().history().undoCount(), steps);
}

TEST_F(EditActionsTest, DeleteDuplicateRenameAndSelectAllAreOneNamedStepEach)
{
    const QString scene = sampleScene();
    ASSERT_TRUE(m_window->openFile(scene));
    EditActions &edit = *m_window->editActions();
    BaseNode *dvd = findNode(QStringLiteral("DVD Case"));
    select({dvd});
    std::string before = dump();

    keyInView(Qt::Key_Delete);
    EXPECT_EQ(undoText(), QStringLiteral("&Undo Delete"));
    EXPECT_EQ(dump(),
              scripted(scene,
                       QStringLiteral("var d = document.findNode('DVD Case');"
                                      "document.selection = [d]; d.remove();")));
    EXPECT_FALSE(edit.deleteAction()->isEnabled()); // nothing left selected
    expectUndoGives(before, "delete");

    // The copy stands its width and a little more along x, right after its original.
    select({dvd});
    before = dump();
    const Matrix original = WorldPlacement::worldMatrix(dvd);
    const TBBox<float> box = ComputeNodeBBox(dvd);
    keyInView(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(undoText(), QStringLiteral("&Undo Duplicate"));
    ASSERT_EQ(document().GetSelection().size(), 1u);
    INode *copy = document().GetSelection().front();
    EXPECT_NE(copy, dvd);
    EXPECT_EQ(copy->GetName(), QStringLiteral("DVD Case 2"));
    EXPECT_EQ(GetNodePos(copy), GetNodePos(dvd) + 1);
    Matrix shifted = original;
    shifted[12] += EditActions::DuplicateOffset * (box.max[0] - box.min[0]);
    EXPECT_TRUE(Near(WorldPlacement::worldMatrix(copy), shifted, 1e-5f));
    expectUndoGives(before, "duplicate");

    // F2 opens the name in the tree; Return records it.
    BaseNode *gift = findNode(QStringLiteral("Gift Box"));
    select({gift});
    before = dump();
    keyInView(Qt::Key_F2);
    auto *editor = m_window->tree()->viewport()->findChild<QLineEdit *>();
    ASSERT_NE(editor, nullptr);
    ASSERT_TRUE(QTest::qWaitFor([editor] { return editor->hasFocus(); }, 5000));
    editor->selectAll();
    QTest::keyClicks(editor, QStringLiteral("Present"));
    QTest::keyClick(editor, Qt::Key_Return);
    QApplication::processEvents();
    EXPECT_EQ(undoText(), QStringLiteral("&Undo Rename"));
    EXPECT_EQ(dump(),
              scripted(scene,
                       QStringLiteral("var g = document.findNode('Gift Box');"
                                      "document.selection = [g]; g.name = 'Present';")));
    expectUndoGives(before, "rename");

    // An empty name is refused: no step, the name stays.
    const int steps = document().history().undoCount();
    const QModelIndex row = m_window->tree()->sceneModel()->indexOf(gift);
    m_window->tree()->edit(row);
    editor = m_window->tree()->viewport()->findChild<QLineEdit *>();
    ASSERT_NE(editor, nullptr);
    editor->selectAll();
    QTest::keyClick(editor, Qt::Key_Backspace);
    QTest::keyClick(editor, Qt::Key_Return);
    QApplication::processEvents();
    EXPECT_EQ(gift->GetName(), QStringLiteral("Gift Box"));
    EXPECT_EQ(document().history().undoCount(), steps);

    // Select All from the menu: the top-level nodes, one "Select" step.
    pick(editMenu(), QStringLiteral("Select &All"));
    EXPECT_EQ(undoText(), QStringLiteral("&Undo Select"));
    EXPECT_EQ(document().GetSelection(), document().root()->GetChildren());
    expectUndoGives(before, "select all");
}

// Group then Ungroup leaves every shape where it stood in the world; each is one step, and the
// actions are greyed out while they cannot apply.
TEST_F(EditActionsTest, GroupAndUngroupKeepWorldPlacesAndGreyOutWhenTheyCannotApply)
{
    ASSERT_TRUE(m_window->openFile(sampleScene()));
    EditActions &edit = *m_window->editActions();
    BaseNode *paperback = findNode(QStringLiteral("Paperback"));
    BaseNode *dvd = findNode(QStringLiteral("DVD Case"));
    BaseNode *gift = findNode(QStringLiteral("Gift Box"));
    select({gift});
    EXPECT_FALSE(edit.ungroupAction()->isEnabled()); // a shape is no group
    EXPECT_TRUE(edit.groupAction()->isEnabled());
    select({});
    EXPECT_FALSE(edit.deleteAction()->isEnabled());
    EXPECT_FALSE(edit.duplicateAction()->isEnabled());
    EXPECT_FALSE(edit.groupAction()->isEnabled());
    EXPECT_TRUE(edit.selectAllAction()->isEnabled());

    // Shapes from the turned shelf and the top level together.
    const std::vector<INode *> shapes = {paperback, dvd, gift};
    std::vector<Matrix> worlds;
    for (INode *shape : shapes)
        worlds.push_back(WorldPlacement::worldMatrix(shape));
    select(shapes);
    const std::string before = dump();
    keyInView(Qt::Key_G, Qt::ControlModifier);
    EXPECT_EQ(undoText(), QStringLiteral("&Undo Group"));
    ASSERT_EQ(document().GetSelection().size(), 1u);
    INode *group = document().GetSelection().front();
    EXPECT_EQ(group->GetNodeType(), INode::GroupNodeType);
    EXPECT_EQ(group->GetChildren(), (std::vector<INode *>{gift, paperback, dvd}));
    EXPECT_TRUE(edit.ungroupAction()->isEnabled());
    const std::string grouped = dump();

    keyInView(Qt::Key_G, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(undoText(), QStringLiteral("&Undo Ungroup"));
    EXPECT_EQ(group->GetParent(), nullptr);
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        EXPECT_TRUE(Near(WorldPlacement::worldMatrix(shapes[i]), worlds[i], 1e-5f))
            << shapes[i]->GetName().toStdString();
        EXPECT_EQ(shapes[i]->GetParent(), document().root());
    }
    expectUndoGives(grouped, "ungroup");
    expectUndoGives(before, "group");
}

// Del and Ctrl+A in a text field of the window edit the text; in the view they edit the scene.
TEST_F(EditActionsTest, DeleteAndSelectAllInAFocusedTextFieldEditTheText)
{
    ASSERT_TRUE(m_window->openFile(sampleScene()));
    auto *field = new QLineEdit(QStringLiteral("abc"));
    m_window->propertiesDock()->setWidget(field);
    QApplication::processEvents();
    select({findNode(QStringLiteral("DVD Case"))});
    const std::string before = dump();
    m_window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(m_window.get()));
    field->setFocus();
    ASSERT_TRUE(QTest::qWaitFor([field] { return field->hasFocus(); }, 5000));
    field->setCursorPosition(0);
    QTest::keyClick(field, Qt::Key_Delete);
    EXPECT_EQ(field->text(), QStringLiteral("bc"));
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(field->selectedText(), QStringLiteral("bc"));
    QApplication::processEvents();
    EXPECT_EQ(dump(), before);
    EXPECT_EQ(document().history().undoCount(), 0);

    keyInView(Qt::Key_Delete);
    EXPECT_EQ(findNode(QStringLiteral("DVD Case")), nullptr);
}

// A row dragged with the mouse onto the shelf's row goes into the shelf, keeping its place in the
// world; one "Move" step.
TEST_F(EditActionsTest, DraggingARowIntoAGroupKeepsItsWorldPlace)
{
    ASSERT_TRUE(m_window->openFile(sampleScene()));
    SceneTreeView *tree = m_window->tree();
    BaseNode *dvd = findNode(QStringLiteral("DVD Case"));
    BaseNode *shelf = findNode(QStringLiteral("Shelf"));
    // The pressed row is selected already: the press makes no "Select" step of its own.
    select({dvd});
    tree->collapseAll();
    QApplication::processEvents();
    const Matrix world = WorldPlacement::worldMatrix(dvd);
    const std::string before = dump();

    QWidget *rows = tree->viewport();
    QWindow *handle = m_window->windowHandle();
    const QPoint from
        = rows->mapTo(m_window.get(), tree->visualRect(tree->sceneModel()->indexOf(dvd)).center());
    const QPoint to = rows->mapTo(m_window.get(),
                                  tree->visualRect(tree->sceneModel()->indexOf(shelf)).center());
    dragThroughWindowSystem(handle, tree, from, to, QPoint(0, -15));
    ASSERT_TRUE(QTest::qWaitFor([dvd, shelf] { return dvd->GetParent() == shelf; }, 5000));
    QApplication::processEvents();
    EXPECT_EQ(undoText(), QStringLiteral("&Undo Move"));
    EXPECT_TRUE(Near(WorldPlacement::worldMatrix(dvd), world, 1e-5f));
    expectUndoGives(before, "move");

    // Dropped between rows of its own parent, a row counts the dragged row in its old place: the
    // Gift Box dropped before the light's row lands just before the light.
    SceneTreeModel *model = tree->sceneModel();
    BaseNode *gift = findNode(QStringLiteral("Gift Box"));
    std::unique_ptr<QMimeData> dragged(model->mimeData({model->indexOf(gift)}));
    ASSERT_TRUE(model->canDropMimeData(dragged.get(), Qt::MoveAction, 3, 0, {}));
    model->dropMimeData(dragged.get(), Qt::MoveAction, 3, 0, {});
    EXPECT_EQ(undoText(), QStringLiteral("&Undo Reorder"));
    EXPECT_EQ(GetNodePos(gift), 2);
    EXPECT_EQ(GetNodePos(findNode(QStringLiteral("Key Light"))), 3);
    // Nothing goes below itself, and a shape takes no rows dropped onto it.
    std::unique_ptr<QMimeData> shelfRow(model->mimeData({model->indexOf(shelf)}));
    const QModelIndex paperback = model->indexOf(findNode(QStringLiteral("Paperback")));
    EXPECT_FALSE(
        model->canDropMimeData(shelfRow.get(), Qt::MoveAction, 0, 0, model->indexOf(shelf)));
    EXPECT_FALSE(model->canDropMimeData(dragged.get(), Qt::MoveAction, -1, 0, paperback));
}

} // namespace
