// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tests/support/mainwindowdriver.h"

#include "host/hostfunctions.h"
#include "hostapp/core/commands/samplescene.h"
#include "hostapp/core/commands/session.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/files/scenedump.h"
#include "hostapp/core/files/scenefile.h"
#include "hostapp/core/scene/basenode.h"
#include "hostapp/desktop/addmenu.h"
#include "hostapp/desktop/sceneview.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

#include <vector>

namespace vantrel::test {

using host::Document;
using host::MainWindow;
using host::SceneFile;
using host::Session;

void MainWindowDriver::SetUp()
{
    ASSERT_TRUE(m_folder.isValid());
    m_window = std::make_unique<MainWindow>(QStringLiteral(VANTREL_TOOLS_PLUGIN),
                                            m_folder.filePath(QStringLiteral("settings.ini")));
    QString error;
    ASSERT_TRUE(m_window->initialize(&error)) << error.toStdString();
    m_window->move(0, 0);
    m_window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(m_window.get()));
    m_window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(m_window.get()));
}

std::unique_ptr<MainWindow> MainWindowDriver::openNextWindow()
{
    auto next = std::make_unique<MainWindow>(QStringLiteral(VANTREL_TOOLS_PLUGIN),
                                             m_folder.filePath(QStringLiteral("settings.ini")));
    QString error;
    EXPECT_TRUE(next->initialize(&error)) << error.toStdString();
    next->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(next.get()));
    return next;
}

QString MainWindowDriver::sampleScene()
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

std::string MainWindowDriver::dump()
{
    return host::dumpScene(document()).toStdString();
}

std::string MainWindowDriver::scripted(const QString &scenePath, const QString &program)
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
    return host::dumpScene(session.document()).toStdString();
}

QAction *MainWindowDriver::menuAction(QMenu *menu, const QString &text)
{
    for (QAction *action : menu->actions()) {
        if (action->text() == text)
            return action;
    }
    return nullptr;
}

void MainWindowDriver::pick(QMenu *menu, const QString &text)
{
    QMenuBar *bar = m_window->menuBar();
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(menu->menuAction()).center());
    ASSERT_TRUE(QTest::qWaitFor([menu] { return menu->isVisible(); }, 5000));
    QAction *action = menuAction(menu, text);
    ASSERT_NE(action, nullptr) << text.toStdString();
    ASSERT_TRUE(action->isEnabled()) << text.toStdString();
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
}

void MainWindowDriver::pickAdd(const QString &group, const QString &name)
{
    QMenu *add = m_window->addMenu()->menu();
    QMenuBar *bar = m_window->menuBar();
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(add->menuAction()).center());
    ASSERT_TRUE(QTest::qWaitFor([add] { return add->isVisible(); }, 5000));
    QAction *entry = menuAction(add, group);
    ASSERT_NE(entry, nullptr) << group.toStdString();
    QMenu *submenu = entry->menu();
    ASSERT_NE(submenu, nullptr) << group.toStdString();
    QTest::mouseClick(add, Qt::LeftButton, {}, add->actionGeometry(entry).center());
    ASSERT_TRUE(QTest::qWaitFor([submenu] { return submenu->isVisible(); }, 5000));
    QAction *item = menuAction(submenu, name);
    ASSERT_NE(item, nullptr) << name.toStdString();
    QTest::mouseClick(submenu, Qt::LeftButton, {}, submenu->actionGeometry(item).center());
}

host::BaseNode *MainWindowDriver::findNode(const QString &name)
{
    for (INode *node : CollectAllChildren(document().root()->GetChildren())) {
        if (node->GetName() == name)
            return static_cast<host::BaseNode *>(node);
    }
    return nullptr;
}

void MainWindowDriver::key(Qt::Key pressed)
{
    // Without a window manager the main window does not get the keyboard back by itself after a
    // tool window closed, and shortcuts go to the active window.
    m_window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(m_window.get()));
    m_window->view()->setFocus();
    QTest::keyClick(m_window->view(), pressed);
}

QMenu *MainWindowDriver::editMenu()
{
    return m_window->undoAction()->associatedWidgets().isEmpty()
               ? nullptr
               : qobject_cast<QMenu *>(m_window->undoAction()->associatedWidgets().first());
}

void MainWindowDriver::screenshot(QWidget *toolWindow, const QString &name)
{
    QApplication::processEvents();
    // The screen is read back from the display, so the view's last change must have reached it:
    // a frame asked for now is on the screen once the view's window has swapped it in.
    QSignalSpy swapped(m_window->view(), &QOpenGLWidget::frameSwapped);
    m_window->view()->update();
    EXPECT_TRUE(QTest::qWaitFor([&swapped] { return !swapped.isEmpty(); }, 5000))
        << "the view drew no frame";
    // X refuses to read back any area that reaches past the screen, and a tool window may be
    // placed partly outside it: only what is on the screen is taken.
    QScreen *screen = QGuiApplication::primaryScreen();
    const QRect area = m_window->frameGeometry()
                           .united(toolWindow->frameGeometry())
                           .intersected(screen->geometry());
    const QPixmap shot = screen->grabWindow(0, area.x(), area.y(), area.width(), area.height());
    QDir().mkpath(QStringLiteral(VANTREL_SCREENSHOT_DIR));
    EXPECT_TRUE(shot.save(QStringLiteral(VANTREL_SCREENSHOT_DIR "/%1.png").arg(name)));
}

} // namespace vantrel::test
