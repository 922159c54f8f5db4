// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The dialog a long model reading shows in the window, and its Cancel: whatever asked for the
// model (the Add menu's Import Model..., a scene file opening) ends as if nothing was asked, with
// no error box for a stop the user asked for, and the window goes on working.
#include "hostapp/core/document/document.h"
#include "hostapp/desktop/addmenu.h"
#include "hostapp/desktop/propertiespanel.h"
#include "hostapp/desktop/selectionproperties.h"
#include "tests/support/gridply.h"
#include "tests/support/mainwindowdriver.h"
#include "tests/support/windowdriver.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QFile>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTest>

namespace vantrel::test {

namespace {

bool anyMessageBoxOpen()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (qobject_cast<QMessageBox *>(widget) && widget->isVisible())
            return true;
    }
    return false;
}

struct ShownDialog
{
    QString label;
    qint64 shownAfterMs = -1;
    QWidget *parent = nullptr;
};

// Runs read, which reads a large model, and presses Cancel in the dialog it shows, with the
// mouse. Returns what the dialog was.
ShownDialog cancelReading(const std::function<void()> &read)
{
    ShownDialog shown;
    QElapsedTimer clock;
    clock.start();
    withModal(read, [&](QWidget *modal) {
        shown.shownAfterMs = clock.elapsed();
        auto *dialog = qobject_cast<QProgressDialog *>(modal);
        ASSERT_NE(dialog, nullptr) << "the modal window is no progress dialog";
        shown.label = dialog->labelText();
        shown.parent = dialog->parentWidget();
        auto *cancel = dialog->findChild<QPushButton *>();
        ASSERT_NE(cancel, nullptr);
        EXPECT_EQ(cancel->text(), QStringLiteral("Cancel"));
        QTest::mouseClick(cancel, Qt::LeftButton);
    });
    return shown;
}

} // namespace

class ModelReadProgressTest : public MainWindowDriver
{
protected:
    QString bigModel()
    {
        const QString path = m_folder.filePath(QStringLiteral("scan.ply"));
        if (!QFile::exists(path)) {
            EXPECT_TRUE(writeGridPly(path, 1500));
        }
        return path;
    }
};

TEST_F(ModelReadProgressTest, CancelledImportLeavesTheSceneAndTheWindowWorks)
{
    ASSERT_TRUE(m_window->openFile(sampleScene()));
    const std::string before = dump();
    const int steps = document().history().undoCount();
    QSignalSpy errors(m_window->addMenu(), &host::AddMenu::importErrorShown);
    const QString big = bigModel();

    INode *added = nullptr;
    const ShownDialog shown = cancelReading([&] { added = m_window->addMenu()->importModel(big); });
    EXPECT_EQ(shown.label, QStringLiteral("Reading scan.ply..."));
    EXPECT_EQ(shown.parent, m_window.get());
    // The dialog waits half a second, so that a quick reading never flashes one.
    EXPECT_GE(shown.shownAfterMs, 500);
    EXPECT_EQ(added, nullptr);
    EXPECT_EQ(dump(), before);
    EXPECT_EQ(document().history().undoCount(), steps);
    // The user asked for the stop: no box to close, only a word in the status bar.
    EXPECT_EQ(errors.count(), 0);
    EXPECT_FALSE(anyMessageBoxOpen());
    EXPECT_EQ(m_window->statusBar()->currentMessage(),
              big + QStringLiteral(": reading was cancelled"));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);

    // The window goes on: a small model is imported, as one step, with no dialog.
    const QString jar = QStringLiteral(VANTREL_SOURCE_DIR "/examples/models/jar.obj");
    ASSERT_NE(m_window->addMenu()->importModel(jar), nullptr);
    EXPECT_EQ(document().history().undoCount(), steps + 1);
    EXPECT_NE(findNode(QStringLiteral("jar")), nullptr);

    // A file that cannot be read still gets its error box: Cancel changed only Cancel's case.
    const QString broken = m_folder.filePath(QStringLiteral("broken.ply"));
    QFile bad(broken);
    ASSERT_TRUE(bad.open(QIODevice::WriteOnly));
    bad.write("ply\nthis is no model\n");
    bad.close();
    const QString message = messageOf([&] { m_window->addMenu()->importModel(broken); });
    EXPECT_TRUE(message.startsWith(broken)) << message.toStdString();
}

TEST_F(ModelReadProgressTest, CancelledSceneOpeningKeepsTheOpenScene)
{
    ASSERT_TRUE(m_window->openFile(sampleScene()));
    const std::string before = dump();
    const QString scene = m_folder.filePath(QStringLiteral("scan.vscene"));
    QFile file(scene);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QStringLiteral(
                   R"({"format": "vantrel-scene", "version": 1, "root": {"children": [)"
                   R"({"type": "shape", "name": "Scan", "generator": "generator.external.model",)"
                   R"( "params": {"path": "%1"}}]}})")
                   .arg(bigModel())
                   .toUtf8());
    file.close();
    QSignalSpy errors(m_window.get(), &host::MainWindow::fileErrorShown);

    bool opened = true;
    cancelReading([&] { opened = m_window->openFile(scene); });
    EXPECT_FALSE(opened);
    EXPECT_EQ(dump(), before);
    EXPECT_EQ(m_window->filePath(), sampleScene());
    EXPECT_EQ(errors.count(), 0);
    EXPECT_FALSE(anyMessageBoxOpen());
    EXPECT_TRUE(
        m_window->statusBar()->currentMessage().endsWith(QStringLiteral(": reading was cancelled")))
        << m_window->statusBar()->currentMessage().toStdString();
}

// A model path typed into the Properties is refused under the panel, as an unreadable file is;
// the shape keeps the model it had.
TEST_F(ModelReadProgressTest, CancelledModelPathKeepsTheShapesModel)
{
    const QString jar = QStringLiteral(VANTREL_SOURCE_DIR "/examples/models/jar.obj");
    ASSERT_NE(m_window->addMenu()->importModel(jar), nullptr); // selected, in the Properties
    const std::string before = dump();
    const int steps = document().history().undoCount();
    const QString big = bigModel();
    host::SelectionProperties *properties
        = host::PropertiesPanel::of(m_window->propertiesDock()).properties();

    QString refusal;
    cancelReading([&] { refusal = properties->panelWrite(QStringLiteral("param.path"), big); });
    EXPECT_EQ(refusal, big + QStringLiteral(": reading was cancelled"));
    EXPECT_EQ(dump(), before);
    EXPECT_EQ(document().history().undoCount(), steps);
    EXPECT_FALSE(anyMessageBoxOpen());
}

// A reading started while a modal window is in front (a tool window) shows its dialog over that
// window, where the user can reach Cancel, and the window in front stays as it was.
TEST_F(ModelReadProgressTest, DialogShowsOverTheWindowInFront)
{
    const QString big = bigModel();
    QDialog front(m_window.get());
    front.setWindowTitle(QStringLiteral("In front"));
    ShownDialog shown;
    withModal([&] { front.exec(); },
              [&](QWidget *modal) {
                  ASSERT_EQ(modal, &front);
                  shown = cancelReading([&] { m_window->addMenu()->importModel(big); });
                  EXPECT_TRUE(front.isVisible());
                  front.reject();
              });
    EXPECT_EQ(shown.parent, &front);
    EXPECT_EQ(shown.label, QStringLiteral("Reading scan.ply..."));
    EXPECT_FALSE(anyMessageBoxOpen());
}

} // namespace vantrel::test
