// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The desktop window's files, driven as a user drives them on a real X display (Xvfb): a file
// that cannot be read or written is reported by name and the document stays, unsaved changes are
// asked about, Save As goes through its file dialog, and the recent files menu opens them again;
// File › Export... writes glTF through its own dialog and leaves the scene and its file alone;
// the window's layout is kept for the next run.

#include "hostapp/core/document/document.h"
#include "hostapp/core/files/scenedump.h"
#include "hostapp/core/files/scenefile.h"
#include "hostapp/core/scene/basenode.h"
#include "tests/support/mainwindowdriver.h"
#include "tests/support/windowdriver.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDockWidget>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMenu>
#include <QMessageBox>
#include <QSettings>
#include <QTest>
#include <QWindow>

namespace {

using namespace vantrel::host;
using namespace vantrel::test;

// One suite across the window's test files: one fixture type.
using MainWindowTest = MainWindowDriver;

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
              [](QWidget *modal) { enterFileName(modal, QStringLiteral("copy")); });
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

TEST_F(MainWindowTest, ExportWritesGltfOfTheChosenKindAndLeavesTheSceneAlone)
{
    ASSERT_TRUE(m_window->openFile(sampleScene()));
    const std::string before = dump();
    const QString title = m_window->windowTitle();
    QMenu *file
        = qobject_cast<QMenu *>(m_window->recentMenu()->menuAction()->associatedWidgets().first());
    ASSERT_NE(file, nullptr);

    // The binary kind first, as offered; then the text kind picked in the dialog's type list.
    withModal([&] { pick(file, QStringLiteral("&Export...")); },
              [](QWidget *modal) { enterFileName(modal, QStringLiteral("shelf")); });
    QFile binary(m_folder.filePath(QStringLiteral("shelf.glb")));
    ASSERT_TRUE(binary.open(QIODevice::ReadOnly));
    EXPECT_TRUE(binary.read(4) == "glTF");
    withModal([&] { pick(file, QStringLiteral("&Export...")); },
              [](QWidget *modal) {
                  auto *types = modal->findChild<QComboBox *>(QStringLiteral("fileTypeCombo"));
                  ASSERT_NE(types, nullptr);
                  types->setFocus();
                  QTest::keyClick(types, Qt::Key_Down); // as a user picks the second kind
                  ASSERT_EQ(types->currentIndex(), 1);
                  enterFileName(modal, QStringLiteral("shelf"));
              });
    QFile text(m_folder.filePath(QStringLiteral("shelf.gltf")));
    ASSERT_TRUE(text.open(QIODevice::ReadOnly));
    const QJsonObject gltf = QJsonDocument::fromJson(text.readAll()).object();
    QStringList names;
    for (const QJsonValue node : gltf[QStringLiteral("nodes")].toArray())
        names.append(node[QStringLiteral("name")].toString());
    for (INode *node : document().root()->GetChildren())
        EXPECT_TRUE(names.contains(node->GetName())) << node->GetName().toStdString();

    // A file that cannot be written is reported by name.
    const QString unwritable = QStringLiteral("/nonexistent/folder/shelf.glb");
    bool result = true;
    const QString message = messageOf([&] { result = m_window->exportFile(unwritable); });
    EXPECT_FALSE(result);
    EXPECT_TRUE(message.contains(unwritable)) << message.toStdString();

    EXPECT_EQ(dump(), before);
    EXPECT_EQ(m_window->windowTitle(), title);
    EXPECT_FALSE(m_window->isWindowModified());
    EXPECT_TRUE(m_window->filePath().endsWith(QStringLiteral("sample.vscene")));
}

TEST_F(MainWindowTest, TheLayoutTheUserLeftIsTheOneTheNextWindowOpensWith)
{
    QDockWidget *scene = m_window->sceneDock();
    const int widthBefore = scene->width();
    // The separator between the tree's dock and the view, dragged 150 pixels to the right.
    const QRect dock = scene->geometry();
    const QPoint separator((dock.right() + m_window->centralWidget()->geometry().left() + 1) / 2,
                           dock.center().y());
    // Through the window system's events, as the pointer drags it.
    QWindow *window = m_window->windowHandle();
    QTest::mouseMove(window, separator);
    QTest::mousePress(window, Qt::LeftButton, {}, separator);
    for (int step = 1; step <= 10; ++step)
        QTest::mouseMove(window, separator + QPoint(15 * step, 0), 10);
    QTest::mouseRelease(window, Qt::LeftButton, {}, separator + QPoint(150, 0));
    QApplication::processEvents();
    const int widthAfter = scene->width();
    ASSERT_NEAR(widthAfter, widthBefore + 150, 2) << "the separator did not move";
    // And the properties moved to the other side of the view.
    m_window->addDockWidget(Qt::RightDockWidgetArea, m_window->propertiesDock());
    m_window->resize(1100, 700);
    ASSERT_TRUE(m_window->close());

    const std::unique_ptr<MainWindow> next = openNextWindow();
    EXPECT_EQ(next->size(), QSize(1100, 700));
    EXPECT_EQ(next->sceneDock()->width(), widthAfter);
    EXPECT_EQ(next->dockWidgetArea(next->sceneDock()), Qt::LeftDockWidgetArea);
    EXPECT_EQ(next->dockWidgetArea(next->propertiesDock()), Qt::RightDockWidgetArea);
}

TEST_F(MainWindowTest, ADamagedLayoutInTheSettingsLeavesTheDefaultOne)
{
    const QSize size = m_window->size();
    const int width = m_window->sceneDock()->width();
    ASSERT_TRUE(m_window->close());
    {
        QSettings settings(m_folder.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
        settings.setValue(QStringLiteral("window/geometry"), QByteArray("\x01\x02 not a geometry"));
        settings.setValue(QStringLiteral("window/layout"), QByteArray(4096, '\xff'));
    }
    const std::unique_ptr<MainWindow> next = openNextWindow();
    EXPECT_EQ(next->size(), size);
    EXPECT_EQ(next->sceneDock()->width(), width);
    EXPECT_EQ(next->dockWidgetArea(next->propertiesDock()), Qt::LeftDockWidgetArea);
}

} // namespace
