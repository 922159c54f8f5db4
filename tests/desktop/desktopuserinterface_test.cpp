// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/desktop/desktopuserinterface.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QMainWindow>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>
#include <QToolBar>

using vantrel::host::DesktopUserInterface;

TEST(DesktopUserInterfaceTest, ToolbarActionsStandInPositionOrder)
{
    QMainWindow window;
    QToolBar *toolBar = window.addToolBar(QStringLiteral("Tools"));
    DesktopUserInterface ui(&window, toolBar);
    const int positions[] = {110, 100, 120, 100};
    QList<QAction *> made;
    for (int position : positions) {
        made.append(new QAction(QString::number(position), &ui));
        ui.AddToolbarAction(made.back(), position);
    }
    EXPECT_EQ(toolBar->actions(), (QList<QAction *>{made[1], made[3], made[0], made[2]}));
    delete made[3];
    auto *late = new QAction(QStringLiteral("105"), &ui);
    ui.AddToolbarAction(late, 105);
    EXPECT_EQ(toolBar->actions(), (QList<QAction *>{made[1], late, made[0], made[2]}));
}

TEST(DesktopUserInterfaceTest, AToolWindowIsModalAndGoneOnceItCloses)
{
    QMainWindow window;
    DesktopUserInterface ui(&window, window.addToolBar(QStringLiteral("Tools")));
    QPointer<QDialog> dialog = new QDialog;
    dialog->setWindowFlags(dialog->windowFlags() & ~Qt::WindowContextHelpButtonHint);
    const Qt::WindowFlags flags = dialog->windowFlags();
    bool wasModal = false;
    QTimer::singleShot(0, dialog.data(), [&] {
        wasModal = QApplication::activeModalWidget() == dialog && ui.openWindow() == dialog;
        dialog->accept();
    });
    ui.ShowToolWindow(dialog);
    EXPECT_TRUE(wasModal) << "ShowToolWindow returns only after the window closed";
    EXPECT_TRUE(dialog.isNull()) << "and the window is deleted at once";
    EXPECT_EQ(ui.openWindow(), nullptr);

    // The window keeps the flags its tool gave it when it is put on the document window.
    QPointer<QDialog> second = new QDialog;
    second->setWindowFlags(flags);
    Qt::WindowFlags shownFlags;
    QTimer::singleShot(0, second.data(), [&] {
        shownFlags = second->windowFlags();
        second->reject();
    });
    ui.ShowToolWindow(second);
    EXPECT_EQ(shownFlags, flags);
    EXPECT_TRUE(second.isNull());
}
