// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The desktop main window on a real display, opened for a test and driven as a user drives it:
// menus opened from the menu bar and their items clicked, keys pressed in the 3D view, and what
// the window leaves compared with what a headless session's scripts make of the same scene file.
// Modal windows are driven with the helpers of windowdriver.h.
#pragma once

#include "hostapp/desktop/mainwindow.h"

#include <gtest/gtest.h>

#include <QString>
#include <QTemporaryDir>

#include <memory>
#include <string>

class QAction;
class QMenu;
class QWidget;

namespace vantrel::host {
class BaseNode;
class Document;
} // namespace vantrel::host

namespace vantrel::test {

// A fixture whose SetUp shows the main window with the real tools plug-in, at the screen's
// corner and active (shortcuts go to the active window only), in a folder of its own for the
// settings and scene files.
class MainWindowDriver : public ::testing::Test
{
protected:
    void SetUp() override;
    // Whatever a test left unsaved is not asked about: the window is simply deleted.
    void TearDown() override { m_window.reset(); }

    // The sample packaging scene with the three hovering shapes selected, as a scene file.
    QString sampleScene();

    host::Document &document() { return *m_window->document(); }
    // As text, so that a failure shows the lines that differ.
    std::string dump();

    // The dump a headless session makes of the scene file after the script.
    static std::string scripted(const QString &scenePath, const QString &program);

    // The menu's item of that text, or null.
    static QAction *menuAction(QMenu *menu, const QString &text);
    // Opens the menu from the menu bar and clicks the item, as a user picks it.
    void pick(QMenu *menu, const QString &text);
    void pickTool(const QString &title) { pick(m_window->toolsMenu(), title); }
    // Opens the Add menu from the menu bar, then the group's submenu, and clicks the entry.
    void pickAdd(const QString &group, const QString &name);
    // The first node of that name in the document, depth first; null when there is none.
    host::BaseNode *findNode(const QString &name);
    // Presses a key in the view, with the main window made active first.
    void key(Qt::Key pressed);
    QMenu *editMenu();

    // Another main window on the same settings file, shown, as the next run of the program opens.
    std::unique_ptr<host::MainWindow> openNextWindow();

    // The screen where the main window and the tool window are, saved for a person to look at.
    void screenshot(QWidget *toolWindow, const QString &name);

    QTemporaryDir m_folder;
    std::unique_ptr<host::MainWindow> m_window;
};

} // namespace vantrel::test
