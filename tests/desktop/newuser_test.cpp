// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The path of a new user, as docs/desktop.md tells it: from an empty window to the demo's scene
// (a gift box, two books on a turned shelf, a DVD case and a light) with the Add menu, the
// properties, Group and Rename, without a script; then the five tools, a nudge, every step
// undone by its name and redone, and the scene saved and opened again. The scene the window
// builds must be the demo's own, dump for dump.

#include "hostapp/core/commands/samplescene.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/files/programfolders.h"
#include "hostapp/core/files/scenedump.h"
#include "hostapp/core/scene/basenode.h"
#include "hostapp/core/scene/scenenode.h"
#include "hostapp/desktop/addmenu.h"
#include "hostapp/desktop/propertiespanel.h"
#include "hostapp/desktop/scenetreemodel.h"
#include "hostapp/desktop/scenetreeview.h"
#include "hostapp/desktop/sceneview.h"
#include "hostapp/ui/filechooser.h"
#include "hostapp/ui/inputlineslider.h"
#include "hostapp/ui/propertylistwidget.h"
#include "tests/support/mainwindowdriver.h"
#include "tests/support/windowdriver.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDockWidget>
#include <QLineEdit>
#include <QTest>

#include <cmath>

namespace {

using namespace vantrel::host;

// The dump without its camera line: the camera is view state, which undo does not take back.
std::string withoutCamera(std::string dump)
{
    const std::size_t start = dump.find("\n    \"camera\"");
    if (start != std::string::npos)
        dump.erase(start, dump.find('\n', start + 1) - start);
    return dump;
}

using namespace vantrel::test;

class NewUserTest : public MainWindowDriver
{
protected:
    PropertyListWidget *panel()
    {
        QTest::qWait(30); // the dock follows the document on the event loop's next pass
        return PropertiesPanel::of(m_window->propertiesDock()).list();
    }

    // Replaces a field's text and presses Enter, as a user types a value.
    void type(const QString &property, const QString &text)
    {
        PropertyListWidget *list = panel();
        ASSERT_NE(list, nullptr) << "nothing selected for " << property.toStdString();
        QWidget *row = list->findWidget(property);
        QLineEdit *field = nullptr;
        if (auto *slider = qobject_cast<InputLineSlider *>(row))
            field = slider->field();
        else if (auto *chooser = qobject_cast<FileChooser *>(row))
            field = chooser->field();
        else
            field = qobject_cast<QLineEdit *>(row);
        ASSERT_NE(field, nullptr) << property.toStdString();
        field->setFocus();
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Backspace);
        QTest::keyClicks(field, text);
        QTest::keyClick(field, Qt::Key_Return);
    }
    void typePlace(const char *what, float x, float y, float z)
    {
        const QString prefix = QLatin1String(what) + QLatin1Char('.');
        type(prefix + QLatin1Char('x'), number(x));
        type(prefix + QLatin1Char('y'), number(y));
        type(prefix + QLatin1Char('z'), number(z));
    }
    static QString artwork(const char *file)
    {
        return programFile(QStringLiteral("share/vantrel/artwork/") + QLatin1String(file));
    }

    // Clicks the node's row in the scene tree (Ctrl held: adds it to the selection).
    void clickRow(const QString &name, Qt::KeyboardModifiers modifiers = {})
    {
        SceneTreeView *tree = m_window->tree();
        BaseNode *node = findNode(name);
        ASSERT_NE(node, nullptr) << name.toStdString();
        const QModelIndex index = tree->sceneModel()->indexOf(node);
        tree->scrollTo(index);
        QTest::mouseClick(
            tree->viewport(), Qt::LeftButton, modifiers, tree->visualRect(index).center());
        QApplication::processEvents();
    }

    void buildTheDemoScene();
};

void NewUserTest::buildTheDemoScene()
{
    pickAdd(QStringLiteral("Boxes"), QStringLiteral("Box"));
    type(QStringLiteral("name"), QStringLiteral("Gift Box"));
    typePlace("position", -45.f, 15.f, 0.f);
    type(QStringLiteral("artwork"), artwork("gift-box.png"));

    pickAdd(QStringLiteral("Books"), QStringLiteral("Paperback"));
    type(QStringLiteral("artwork"), artwork("paperback.png"));
    pickAdd(QStringLiteral("Books"), QStringLiteral("Hard Cover Book"));
    type(QStringLiteral("name"), QStringLiteral("Hard Cover"));
    type(QStringLiteral("artwork"), artwork("hard-cover.png"));

    // The two books on a shelf turned by 15°: grouped, the group renamed in the tree with F2.
    clickRow(QStringLiteral("Paperback"));
    clickRow(QStringLiteral("Hard Cover"), Qt::ControlModifier);
    QTest::keyClick(m_window->tree(), Qt::Key_G, Qt::ControlModifier);
    EXPECT_EQ(m_window->undoAction()->text(), QStringLiteral("&Undo Group"));
    clickRow(QStringLiteral("Group"));
    QTest::keyClick(m_window->tree(), Qt::Key_F2);
    auto *editor = qobject_cast<QLineEdit *>(QApplication::focusWidget());
    ASSERT_NE(editor, nullptr) << "F2 opened no editor";
    editor->selectAll();
    QTest::keyClicks(editor, QStringLiteral("Shelf"));
    QTest::keyClick(editor, Qt::Key_Return);
    QTest::qWait(30);
    EXPECT_EQ(m_window->undoAction()->text(), QStringLiteral("&Undo Rename"));
    typePlace("position", 0.f, 0.f, 0.f);
    typePlace("rotation", 0.f, 0.f, 15.f);
    m_window->tree()->expand(
        m_window->tree()->sceneModel()->indexOf(findNode(QStringLiteral("Shelf"))));
    clickRow(QStringLiteral("Paperback"));
    typePlace("position", -15.f, 0.f, 12.f);
    typePlace("rotation", 0.f, 0.f, 0.f);
    clickRow(QStringLiteral("Hard Cover"));
    typePlace("position", 2.f, 0.f, 7.5f);
    typePlace("rotation", 0.f, 20.f, 0.f);

    pickAdd(QStringLiteral("Disc Cases"), QStringLiteral("DVD Case"));
    typePlace("position", 28.f, -5.f, 4.f);
    typePlace("rotation", 25.f, 0.f, 40.f);
    type(QStringLiteral("artwork"), artwork("dvd-case.png"));

    QMenu *add = m_window->addMenu()->menu();
    pick(add, QStringLiteral("&Light"));
    type(QStringLiteral("name"), QStringLiteral("Key Light"));
    typePlace("position", -60.f, -80.f, 120.f);
    auto *shadows = qobject_cast<QCheckBox *>(panel()->findWidget(QStringLiteral("castShadows")));
    ASSERT_NE(shadows, nullptr);
    QTest::mouseClick(shadows, Qt::LeftButton, {}, QPoint(8, shadows->height() / 2));
    EXPECT_EQ(m_window->undoAction()->text(), QStringLiteral("&Undo Change Cast Shadows"));
}

TEST_F(NewUserTest, BuildsTheDemoSceneRunsTheToolsUndoesEachStepByNameAndSaves)
{
    const std::string empty = dump();
    buildTheDemoScene();
    screenshot(m_window.get(), QStringLiteral("new-user-scene"));

    // What the window made is the demo's scene, with the three hovering shapes selected.
    clickRow(QStringLiteral("Paperback"));
    clickRow(QStringLiteral("Hard Cover"), Qt::ControlModifier);
    clickRow(QStringLiteral("DVD Case"), Qt::ControlModifier);
    const QString sample = sampleScene();
    EXPECT_EQ(dump(), scripted(sample, QString()));

    // The five tools on it, each one step named after itself.
    key(Qt::Key_F);
    EXPECT_EQ(dump(), scripted(sample, QStringLiteral("document.runTool('Put On The Floor')")));
    EXPECT_EQ(m_window->undoAction()->text(), QStringLiteral("&Undo Put On The Floor"));
    withModal([this] { key(Qt::Key_L); }, [](QWidget *window) { press(window, "ok"); });
    EXPECT_EQ(m_window->undoAction()->text(), QStringLiteral("&Undo Easy Lighting..."));
    withModal([this] { pickTool(QStringLiteral("Stack...")); },
              [](QWidget *window) { press(window, "ok"); });
    EXPECT_EQ(m_window->undoAction()->text(), QStringLiteral("&Undo Stack..."));
    clickRow(QStringLiteral("Gift Box"));
    withModal([this] { pickTool(QStringLiteral("Step and Repeat...")); },
              [](QWidget *window) {
                  typeInto(window, QStringLiteral("repeatX"), QStringLiteral("3"));
                  press(window, "ok");
              });
    EXPECT_EQ(m_window->undoAction()->text(), QStringLiteral("&Undo Step and Repeat..."));
    // Fit To View moves only the camera, which is no undo step.
    withModal([this] { key(Qt::Key_V); }, [](QWidget *window) { press(window, "ok"); });

    // And a nudge from the keyboard, one step of 1 cm.
    clickRow(QStringLiteral("DVD Case"));
    auto *dvd = static_cast<SceneNode *>(findNode(QStringLiteral("DVD Case")));
    const Vector3 before = dvd->GetPosition();
    key(Qt::Key_Right);
    const Vector3 after = dvd->GetPosition();
    EXPECT_NEAR(std::hypot(after.x - before.x, after.y - before.y, after.z - before.z), 1.f, 1e-4f);
    EXPECT_EQ(m_window->undoAction()->text(), QStringLiteral("&Undo Nudge"));
    screenshot(m_window.get(), QStringLiteral("new-user-tools"));

    // Every step undone through the Edit menu by the name it shows, back to the empty window.
    const std::string finished = dump();
    QStringList names;
    while (document().history().undoCount() > 0) {
        const QString text = m_window->undoAction()->text();
        ASSERT_TRUE(text.startsWith(QStringLiteral("&Undo ")) && text.size() > 6)
            << text.toStdString();
        names << text.mid(6);
        pick(editMenu(), text);
    }
    EXPECT_EQ(withoutCamera(dump()), withoutCamera(empty));
    EXPECT_EQ(names.first(), QStringLiteral("Nudge"));
    EXPECT_EQ(names.last(), QStringLiteral("Add Box"));
    EXPECT_TRUE(names.contains(QStringLiteral("Add DVD Case")));
    EXPECT_TRUE(names.contains(QStringLiteral("Change Artwork")));
    EXPECT_TRUE(names.contains(QStringLiteral("Group")));
    while (document().history().redoCount() > 0)
        QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(dump(), finished);

    // Saved, and opened again as it was.
    const QString path = m_folder.filePath(QStringLiteral("my-mock-up.vscene"));
    ASSERT_TRUE(m_window->saveFile(path));
    EXPECT_FALSE(m_window->isWindowModified());
    ASSERT_TRUE(m_window->openFile(path));
    EXPECT_EQ(dump(), finished);
}

} // namespace
