// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The desktop window driven as a user drives it, on a real X display (Xvfb): the Tools menu, the
// shortcuts and the tool-bar buttons open the real tool windows, whose sliders, list and buttons
// are worked with mouse and keyboard events. What the window leaves behind is compared, dump for
// dump, with what the tools' script functions make of the same scene in a separate headless
// session.

#include "hostapp/core/commands/samplescene.h"
#include "hostapp/core/commands/session.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/files/scenedump.h"
#include "hostapp/core/files/scenefile.h"
#include "hostapp/core/scene/basenode.h"
#include "hostapp/desktop/mainwindow.h"
#include "hostapp/desktop/scenetreeview.h"
#include "hostapp/desktop/sceneview.h"
#include "hostapp/ui/inputlineslider.h"
#include "hostapp/ui/propertylistwidget.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QUndoStack>
#include <QWindow>

#include <functional>

namespace {

using namespace vantrel::host;

// Calls drive with the modal window that open() brings up, once it is on screen, and fails the
// test when none comes up. drive must close the window, or open() never returns.
void withModal(const std::function<void()> &open, const std::function<void(QWidget *)> &drive)
{
    QWidget *before = QApplication::activeModalWidget();
    bool driven = false;
    QTimer timer;
    timer.setInterval(20);
    QObject::connect(&timer, &QTimer::timeout, [&] {
        QWidget *modal = QApplication::activeModalWidget();
        if (driven || !modal || modal == before || !modal->isVisible())
            return;
        driven = true;
        timer.stop();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(modal));
        // Keyboard focus moves, and a number field commits what was typed, only in the active
        // window; without a window manager a new window is not always made active at once.
        modal->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(modal));
        // A drive that fails half-way, or a window that opens another over itself, must fail
        // the test, not leave it waiting for ever in the window's own event loop. Armed before
        // the drive, which may itself be stuck in such a loop.
        QTimer::singleShot(45000, modal, [modal] {
            if (!modal->isVisible())
                return;
            // What the window opened over itself (a question) goes first, then the window.
            for (int closed = 0; closed < 8; ++closed) {
                QWidget *top = QApplication::activeModalWidget();
                if (!top)
                    break;
                auto *box = qobject_cast<QMessageBox *>(top);
                ADD_FAILURE() << "a modal window was left open: "
                              << top->windowTitle().toStdString()
                              << (box ? " \"" + box->text().toStdString() + '"' : std::string());
                if (auto *dialog = qobject_cast<QDialog *>(top))
                    dialog->reject();
                else
                    top->close();
                if (top == modal)
                    break;
            }
        });
        drive(modal);
    });
    timer.start();
    open();
    timer.stop();
    EXPECT_TRUE(driven) << "no modal window came up";
}

// The text of the message box open() shows, closed with its default button.
QString messageOf(const std::function<void()> &open)
{
    QString text;
    withModal(open, [&text](QWidget *modal) {
        auto *box = qobject_cast<QMessageBox *>(modal);
        ASSERT_NE(box, nullptr) << "the modal window is not a message box";
        text = box->text();
        box->accept();
    });
    return text;
}

InputLineSlider *sliderOf(QWidget *window, const QString &property)
{
    auto *panel = window->findChild<PropertyListWidget *>();
    return panel ? qobject_cast<InputLineSlider *>(panel->findWidget(property)) : nullptr;
}

// Types a value into a setting's number field and moves on with Tab, as a user would (Enter
// would also press the window's default button, OK).
void typeInto(QWidget *window, const QString &property, const QString &text)
{
    InputLineSlider *slider = sliderOf(window, property);
    ASSERT_NE(slider, nullptr) << property.toStdString();
    QLineEdit *field = slider->field();
    // The field commits when it loses the focus, which happens only in the active window; the
    // window system may still be handing the activation over, so Qt is told at once.
    QApplication::setActiveWindow(window);
    field->setFocus();
    field->selectAll();
    QTest::keyClicks(field, text);
    QTest::keyClick(field, Qt::Key_Tab);
}

// A setting's value as the window's settings hold it.
float valueOf(QWidget *window, const QString &property)
{
    auto *panel = window->findChild<PropertyListWidget *>();
    return panel ? panel->panelValue(property).toFloat() : 0.f;
}

// Moves a setting's slider with the keyboard; returns the value the setting took.
float nudge(QWidget *window, const QString &property, Qt::Key key, int presses)
{
    InputLineSlider *slider = sliderOf(window, property);
    EXPECT_NE(slider, nullptr) << property.toStdString();
    if (!slider)
        return 0.f;
    slider->slider()->setFocus();
    for (int i = 0; i < presses; ++i)
        QTest::keyClick(slider->slider(), key);
    return valueOf(window, property);
}

void press(QWidget *window, const char *button)
{
    auto *found = window->findChild<QAbstractButton *>(QString::fromLatin1(button));
    ASSERT_NE(found, nullptr) << button;
    QTest::mouseClick(found, Qt::LeftButton);
}

QString number(float value)
{
    return QString::number(double(value), 'g', 9);
}

class MainWindowTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_folder.isValid());
        m_window = std::make_unique<MainWindow>(QStringLiteral(VANTREL_TOOLS_PLUGIN),
                                                m_folder.filePath(QStringLiteral("settings.ini")));
        QString error;
        ASSERT_TRUE(m_window->initialize(&error)) << error.toStdString();
        m_window->move(0, 0);
        m_window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(m_window.get()));
        // Shortcuts go to the active window only.
        m_window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(m_window.get()));
    }

    void TearDown() override
    {
        // Whatever a test left unsaved is not asked about: the window is simply deleted.
        m_window.reset();
    }

    // The sample packaging scene with the three hovering shapes selected, as a scene file.
    QString sampleScene()
    {
        const QString path = m_folder.filePath(QStringLiteral("sample.vscene"));
        if (!QFile::exists(path)) {
            Document document;
            const std::vector<INode *> hovering = buildSampleScene(document);
            document.SetSelection(hovering, Document::ReplaceSelection);
            QString error;
            EXPECT_TRUE(SceneFile::save(path, document, &error)) << error.toStdString();
        }
        return path;
    }

    Document &document() { return *m_window->document(); }
    // As text, so that a failure shows the lines that differ.
    std::string dump() { return dumpScene(document()).toStdString(); }

    // The dump a headless session makes of the scene file after the script.
    static std::string scripted(const QString &scenePath, const QString &program)
    {
        QString error;
        std::unique_ptr<Document> loaded = SceneFile::load(scenePath, &error);
        EXPECT_NE(loaded, nullptr) << error.toStdString();
        if (!loaded)
            return std::string();
        Session session(std::move(loaded));
        EXPECT_TRUE(session.loadToolsPlugin(QStringLiteral(VANTREL_TOOLS_PLUGIN), &error));
        EXPECT_TRUE(session.runner().evaluate(program, QStringLiteral("expected.js"), &error))
            << error.toStdString();
        return dumpScene(session.document()).toStdString();
    }

    QAction *menuAction(QMenu *menu, const QString &text)
    {
        for (QAction *action : menu->actions()) {
            if (action->text() == text)
                return action;
        }
        return nullptr;
    }

    // Opens the menu from the menu bar and clicks the item, as a user picks it.
    void pick(QMenu *menu, const QString &text)
    {
        QMenuBar *bar = m_window->menuBar();
        QTest::mouseClick(
            bar, Qt::LeftButton, {}, bar->actionGeometry(menu->menuAction()).center());
        ASSERT_TRUE(QTest::qWaitFor([menu] { return menu->isVisible(); }, 5000));
        QAction *action = menuAction(menu, text);
        ASSERT_NE(action, nullptr) << text.toStdString();
        ASSERT_TRUE(action->isEnabled()) << text.toStdString();
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
    }

    void pickTool(const QString &title) { pick(m_window->toolsMenu(), title); }

    // Presses a key in the view. Without a window manager the main window does not get the
    // keyboard back by itself after a tool window closed, and shortcuts go to the active window.
    void key(Qt::Key pressed)
    {
        m_window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(m_window.get()));
        m_window->view()->setFocus();
        QTest::keyClick(m_window->view(), pressed);
    }

    QMenu *editMenu()
    {
        return m_window->undoAction()->associatedWidgets().isEmpty()
                   ? nullptr
                   : qobject_cast<QMenu *>(m_window->undoAction()->associatedWidgets().first());
    }

    // The screen where the main window and the tool window are, saved for a person to look at.
    void screenshot(QWidget *toolWindow, const QString &name)
    {
        QApplication::processEvents();
        QTest::qWait(100); // the view draws the last change
        const QRect area = m_window->frameGeometry().united(toolWindow->frameGeometry());
        const QPixmap shot = QGuiApplication::primaryScreen()->grabWindow(
            0, area.x(), area.y(), area.width(), area.height());
        QDir().mkpath(QStringLiteral(VANTREL_SCREENSHOT_DIR));
        EXPECT_TRUE(shot.save(QStringLiteral(VANTREL_SCREENSHOT_DIR "/%1.png").arg(name)));
    }

    QTemporaryDir m_folder;
    std::unique_ptr<MainWindow> m_window;
};

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
            // pointer would. The drag runs its own event loop, so the moves that carry it
            // and the release are sent from a timer.
            QWindow *handle = window->windowHandle();
            QWidget *rows = list->viewport();
            const QPoint from = rows->mapTo(window, list->visualItemRect(list->item(0)).center());
            const QRect last = list->visualItemRect(list->item(1));
            const QPoint to = rows->mapTo(window, QPoint(last.center().x(), last.bottom() - 1));
            QTimer::singleShot(200, handle, [handle, from, to] {
                for (int step = 1; step <= 8; ++step) {
                    QTest::mouseMove(handle, from + (to - from) * step / 8);
                    QTest::qWait(20);
                }
                QTest::mouseRelease(handle, Qt::LeftButton, {}, to);
            });
            QTest::mousePress(handle, Qt::LeftButton, {}, from);
            QTest::mouseMove(handle, from + QPoint(0, 3));
            QTest::mouseMove(handle, from + QPoint(0, 15));
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

TEST_F(MainWindowTest, BrokenFileIsReportedByNameAndTheDocumentStays)
{
    ASSERT_TRUE(m_window->openFile(sampleScene()));
    key(Qt::Key_F); // an unsaved change
    const std::string before = dump();
    const QString title = m_window->windowTitle();
    const QString broken = QStringLiteral(VANTREL_SOURCE_DIR "/tests/errors/truncated.json");
    bool result = true;
    const QString message = messageOf([&] { result = m_window->openFile(broken); });
    EXPECT_FALSE(result);
    EXPECT_TRUE(message.contains(QStringLiteral("truncated.json"))) << message.toStdString();
    EXPECT_EQ(dump(), before);
    EXPECT_EQ(m_window->windowTitle(), title);
    EXPECT_TRUE(m_window->isWindowModified());
    EXPECT_EQ(document().history().undoCount(), 1);

    // A save that cannot be written names the file and keeps the changes unsaved.
    const QString unwritable = QStringLiteral("/nonexistent/folder/scene.vscene");
    const QString saveMessage = messageOf([&] { result = m_window->saveFile(unwritable); });
    EXPECT_FALSE(result);
    EXPECT_TRUE(saveMessage.contains(unwritable)) << saveMessage.toStdString();
    EXPECT_TRUE(m_window->isWindowModified());
    EXPECT_EQ(dump(), before);
}

TEST_F(MainWindowTest, UnsavedChangesAreAskedAboutBeforeClosing)
{
    const QString scene = sampleScene();
    ASSERT_TRUE(m_window->openFile(scene));
    key(Qt::Key_F);
    const std::string changed = dump();
    ASSERT_TRUE(m_window->windowTitle().contains(QLatin1Char('*')) || m_window->isWindowModified());

    // Cancel: the window stays with its changes.
    withModal([this] { m_window->close(); },
              [](QWidget *modal) {
                  auto *box = qobject_cast<QMessageBox *>(modal);
                  ASSERT_NE(box, nullptr);
                  EXPECT_TRUE(box->text().contains(QStringLiteral("sample.vscene")));
                  QTest::mouseClick(box->button(QMessageBox::Cancel), Qt::LeftButton);
              });
    EXPECT_TRUE(m_window->isVisible());
    EXPECT_EQ(dump(), changed);

    // Save: the file gets the changes and the window closes.
    withModal([this] { m_window->close(); },
              [](QWidget *modal) {
                  auto *box = qobject_cast<QMessageBox *>(modal);
                  ASSERT_NE(box, nullptr);
                  QTest::mouseClick(box->button(QMessageBox::Save), Qt::LeftButton);
              });
    EXPECT_FALSE(m_window->isVisible());
    QString error;
    std::unique_ptr<Document> saved = SceneFile::load(scene, &error);
    ASSERT_NE(saved, nullptr) << error.toStdString();
    EXPECT_EQ(dumpScene(*saved).toStdString(), changed);
}

TEST_F(MainWindowTest, SaveAsNewAndRecentFiles)
{
    const QString scene = sampleScene();
    ASSERT_TRUE(m_window->openFile(scene));
    const std::string sample = dump();
    EXPECT_EQ(m_window->windowTitle(), QStringLiteral("sample.vscene[*] — Vantrel"));
    EXPECT_FALSE(m_window->isWindowModified());

    key(Qt::Key_F);
    EXPECT_TRUE(m_window->isWindowModified());
    // Save As through its file dialog: a name without a suffix gets ".vscene".
    const QString copy = m_folder.filePath(QStringLiteral("copy.vscene"));
    QMenu *file
        = qobject_cast<QMenu *>(m_window->recentMenu()->menuAction()->associatedWidgets().first());
    ASSERT_NE(file, nullptr);
    withModal([&] { pick(file, QStringLiteral("Save &As...")); },
              [&](QWidget *modal) {
                  auto *name = modal->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
                  ASSERT_NE(name, nullptr);
                  // The dialog opens in the current file's folder, reads it in the background and
                  // then selects the current file in its list, which is what Return saves to
                  // when the list has a selection. On a busy machine that selection can come
                  // after the typing (which clears it), and Return would then ask to replace the
                  // sample. A user looks before pressing Return and types the name again; so
                  // does this.
                  auto *list = modal->findChild<QAbstractItemView *>(QStringLiteral("listView"));
                  ASSERT_NE(list, nullptr);
                  for (int attempt = 0; attempt < 5; ++attempt) {
                      name->setFocus();
                      name->selectAll();
                      QTest::keyClicks(name, QStringLiteral("copy"));
                      QTest::qWait(300);
                      if (name->text() == QLatin1String("copy")
                          && list->selectionModel()->selectedRows().isEmpty())
                          break;
                  }
                  EXPECT_EQ(name->text().toStdString(), "copy");
                  EXPECT_TRUE(list->selectionModel()->selectedRows().isEmpty());
                  QTest::keyClick(name, Qt::Key_Return);
              });
    ASSERT_TRUE(QFile::exists(copy));
    EXPECT_EQ(m_window->windowTitle(), QStringLiteral("copy.vscene[*] — Vantrel"));
    EXPECT_FALSE(m_window->isWindowModified());
    const std::string floored = dump();
    EXPECT_EQ(
        m_window->recentFiles(),
        QStringList({QFileInfo(copy).absoluteFilePath(), QFileInfo(scene).absoluteFilePath()}));

    // New after a change asks; Discard empties the scene.
    key(Qt::Key_F);
    pick(editMenu(), QStringLiteral("&Undo Put On The Floor"));
    ASSERT_FALSE(m_window->isWindowModified()); // undone back to the saved state: nothing to ask
    document().SetSelection({}, Document::ReplaceSelection);
    ASSERT_TRUE(m_window->isWindowModified());
    withModal([this] { m_window->newDocument(); },
              [](QWidget *modal) {
                  auto *box = qobject_cast<QMessageBox *>(modal);
                  ASSERT_NE(box, nullptr);
                  QTest::mouseClick(box->button(QMessageBox::Discard), Qt::LeftButton);
              });
    EXPECT_EQ(document().root()->GetChildren().size(), 0u);
    EXPECT_EQ(m_window->windowTitle(), QStringLiteral("Untitled[*] — Vantrel"));

    // The recent files menu opens the sample again; a file gone since is reported and dropped.
    QMenu *recent = m_window->recentMenu();
    pick(file, QStringLiteral("Open &Recent"));
    ASSERT_TRUE(QTest::qWaitFor([recent] { return recent->isVisible(); }, 5000));
    QAction *second = recent->actions().at(1);
    QTest::mouseClick(recent, Qt::LeftButton, {}, recent->actionGeometry(second).center());
    ASSERT_TRUE(
        QTest::qWaitFor([this] { return m_window->filePath().endsWith("sample.vscene"); }, 5000));
    EXPECT_EQ(dump(), sample);
    ASSERT_TRUE(m_window->openFile(copy));
    EXPECT_EQ(dump(), floored);

    ASSERT_TRUE(QFile::remove(scene));
    const QString message = messageOf([&] { m_window->openFile(scene); });
    EXPECT_TRUE(message.contains(QStringLiteral("sample.vscene"))) << message.toStdString();
    EXPECT_EQ(m_window->recentFiles(), QStringList({QFileInfo(copy).absoluteFilePath()}));
    EXPECT_EQ(dump(), floored);
}

} // namespace
