// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The main window's menus and its file handling: the File, Edit, Tools and Help menus, New, Open,
// Save, Save As, Export, the recent files and the question about unsaved changes. The layout, the
// sessions and the tools' actions are in mainwindow.cpp.
#include "hostapp/desktop/mainwindow.h"

#include "hostapp/core/commands/session.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/files/scenefile.h"
#include "hostapp/desktop/addmenu.h"
#include "hostapp/desktop/editactions.h"
#include "hostapp/desktop/modelreadprogressdialog.h"
#include "hostapp/render/exportcommand.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QSettings>
#include <QStatusBar>
#include <QUndoStack>

namespace vantrel::host {

namespace {

const QString RecentFilesKey = QStringLiteral("recentFiles");
const QString GeometryKey = QStringLiteral("window/geometry");
const QString LayoutKey = QStringLiteral("window/layout");
// Bumped when the docks change, so that a layout saved by an older version is not applied.
constexpr int LayoutVersion = 1;
constexpr int MaximumRecentFiles = 8;
const QString SceneFilter = QStringLiteral("Vantrel scenes (*.vscene *.json);;All files (*)");
const QString BinaryGltfFilter = QStringLiteral("glTF binary, textures inside (*.glb)");
const QString TextGltfFilter = QStringLiteral("glTF text, all in one file (*.gltf)");

} // namespace

void MainWindow::buildMenus()
{
    QMenu *file = menuBar()->addMenu(QStringLiteral("&File"));
    QAction *newAction = file->addAction(QStringLiteral("&New"), this, [this] { newDocument(); });
    newAction->setShortcut(QKeySequence::New);
    QAction *openAction = file->addAction(QStringLiteral("&Open..."), this, &MainWindow::open);
    openAction->setShortcut(QKeySequence::Open);
    m_recentMenu = file->addMenu(QStringLiteral("Open &Recent"));
    connect(m_recentMenu, &QMenu::aboutToShow, this, &MainWindow::fillRecentMenu);
    fillRecentMenu(); // so that the menu is greyed out from the start when there is none
    file->addSeparator();
    QAction *saveAction = file->addAction(QStringLiteral("&Save"), this, [this] { save(); });
    saveAction->setShortcut(QKeySequence::Save);
    QAction *saveAsAction
        = file->addAction(QStringLiteral("Save &As..."), this, [this] { saveAs(); });
    saveAsAction->setShortcut(QKeySequence::SaveAs);
    file->addAction(QStringLiteral("&Export..."), this, [this] { exportScene(); });
    file->addSeparator();
    QAction *quitAction = file->addAction(QStringLiteral("&Quit"), this, &QWidget::close);
    quitAction->setShortcut(QKeySequence::Quit);

    QMenu *edit = menuBar()->addMenu(QStringLiteral("&Edit"));
    m_undoAction = edit->addAction(QStringLiteral("&Undo"), this, [this] {
        if (Document *current = document())
            current->undo();
    });
    m_undoAction->setShortcut(QKeySequence::Undo);
    m_redoAction = edit->addAction(QStringLiteral("&Redo"), this, [this] {
        if (Document *current = document())
            current->redo();
    });
    m_redoAction->setShortcut(QKeySequence::Redo);
    m_editActions = new EditActions(edit, m_tree);

    m_toolsMenu = menuBar()->addMenu(QStringLiteral("&Tools"));
    // IsEnabled is asked again whenever the menu opens, whatever changed since.
    connect(m_toolsMenu, &QMenu::aboutToShow, this, &MainWindow::updateToolActions);
    m_addMenu = new AddMenu(this);

    QMenu *help = menuBar()->addMenu(QStringLiteral("&Help"));
    help->addAction(QStringLiteral("&About Vantrel"), this, [this] {
        QMessageBox::about(
            this,
            QStringLiteral("About Vantrel"),
            QStringLiteral("<b>Vantrel %1</b><p>The stand-in host of the vantrel tools plug-in: "
                           "a packaging scene, its undo history, a live view and the tools "
                           "%2.</p><p>Left drag orbits, middle drag or Shift + left drag pans, "
                           "the wheel zooms; a click selects and Ctrl + click adds.</p>")
                .arg(QApplication::applicationVersion(), m_pluginPath.toHtmlEscaped()));
    });
}

bool MainWindow::maybeSave()
{
    if (!isWindowModified())
        return true;
    const QString name = documentName();
    QMessageBox question(
        QMessageBox::Question,
        QStringLiteral("Unsaved Changes"),
        QStringLiteral("The scene \"%1\" has changes that are not saved.").arg(name),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel,
        this);
    question.setInformativeText(QStringLiteral("Do you want to save them?"));
    question.setDefaultButton(QMessageBox::Save);
    switch (question.exec()) {
    case QMessageBox::Save:
        return save();
    case QMessageBox::Discard:
        return true;
    default:
        return false;
    }
}

bool MainWindow::newDocument()
{
    if (!maybeSave())
        return false;
    QString error;
    if (!adopt(std::make_unique<Document>(), QString(), &error)) {
        showFileError(QStringLiteral("New Scene"), error);
        return false;
    }
    return true;
}

void MainWindow::open()
{
    const QString start
        = m_filePath.isEmpty() ? QDir::currentPath() : QFileInfo(m_filePath).absolutePath();
    const QString path
        = QFileDialog::getOpenFileName(this, QStringLiteral("Open Scene"), start, SceneFilter);
    if (!path.isEmpty())
        openFile(path);
}

bool MainWindow::openFile(const QString &path)
{
    // The file is read before the question about unsaved changes: a file that cannot be opened
    // needs no decision about the open one, which stays as it is.
    QString error;
    const int cancels = ModelReadProgressDialog::cancelsSoFar();
    std::unique_ptr<Document> loaded = SceneFile::load(path, &error);
    if (!loaded && ModelReadProgressDialog::cancelsSoFar() != cancels) {
        // The user stopped one of the scene's models from being read: the open scene stays, and
        // the status bar says why the other did not open, with no box to close.
        statusBar()->showMessage(error, ModelReadProgressDialog::CancelMessageMilliseconds);
        return false;
    }
    if (!loaded) {
        showFileError(QStringLiteral("Open Scene"), error);
        // A recent file that is gone is dropped from the list; one that is there but unreadable
        // stays, so that it can be opened again once it is mended.
        if (!QFileInfo::exists(path)) {
            QStringList recent = recentFiles();
            recent.removeAll(QFileInfo(path).absoluteFilePath());
            m_settings->setValue(RecentFilesKey, recent);
        }
        return false;
    }
    if (!maybeSave())
        return false;
    if (!adopt(std::move(loaded), QFileInfo(path).absoluteFilePath(), &error)) {
        showFileError(QStringLiteral("Open Scene"), error);
        return false;
    }
    addRecentFile(m_filePath);
    return true;
}

bool MainWindow::save()
{
    return m_filePath.isEmpty() ? saveAs() : saveFile(m_filePath);
}

bool MainWindow::saveAs()
{
    const QString start = m_filePath.isEmpty()
                              ? QDir::current().filePath(QStringLiteral("Untitled.vscene"))
                              : m_filePath;
    QFileDialog dialog(this, QStringLiteral("Save Scene As"), start, SceneFilter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("vscene"));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return false;
    return saveFile(dialog.selectedFiles().constFirst());
}

bool MainWindow::saveFile(const QString &path)
{
    if (!m_session)
        return false;
    QString error;
    if (!SceneFile::save(path, m_session->document(), &error)) {
        showFileError(QStringLiteral("Save Scene"), error);
        return false;
    }
    m_filePath = QFileInfo(path).absoluteFilePath();
    m_session->document().history().stack()->setClean();
    addRecentFile(m_filePath);
    updateTitle();
    statusBar()->showMessage(QStringLiteral("Saved %1").arg(QDir::toNativeSeparators(m_filePath)),
                             5000);
    return true;
}

bool MainWindow::exportScene()
{
    const QString base = m_filePath.isEmpty()
                             ? QDir::current().filePath(QStringLiteral("Untitled"))
                             : QFileInfo(m_filePath).absolutePath() + QLatin1Char('/')
                                   + QFileInfo(m_filePath).completeBaseName();
    QFileDialog dialog(this,
                       QStringLiteral("Export as glTF"),
                       base + QStringLiteral(".glb"),
                       BinaryGltfFilter + QStringLiteral(";;") + TextGltfFilter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    // A name typed without a suffix takes the one of the chosen kind.
    dialog.setDefaultSuffix(QStringLiteral("glb"));
    connect(&dialog, &QFileDialog::filterSelected, &dialog, [&dialog](const QString &filter) {
        dialog.setDefaultSuffix(filter == TextGltfFilter ? QStringLiteral("gltf")
                                                         : QStringLiteral("glb"));
    });
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return false;
    return exportFile(dialog.selectedFiles().constFirst());
}

bool MainWindow::exportFile(const QString &path)
{
    if (!m_session)
        return false;
    QString error;
    if (!render::writeGltf(m_session->document(), path, &error)) {
        showFileError(QStringLiteral("Export"), error);
        return false;
    }
    statusBar()->showMessage(QStringLiteral("Exported %1")
                                 .arg(QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath())),
                             5000);
    return true;
}

QStringList MainWindow::recentFiles() const
{
    return m_settings->value(RecentFilesKey).toStringList();
}

void MainWindow::addRecentFile(const QString &path)
{
    QStringList recent = recentFiles();
    recent.removeAll(path);
    recent.prepend(path);
    while (recent.size() > MaximumRecentFiles)
        recent.removeLast();
    m_settings->setValue(RecentFilesKey, recent);
    fillRecentMenu();
}

void MainWindow::fillRecentMenu()
{
    m_recentMenu->clear();
    const QStringList recent = recentFiles();
    for (int i = 0; i < recent.size(); ++i) {
        const QString &path = recent.at(i);
        QAction *action = m_recentMenu->addAction(
            QStringLiteral("&%1 %2").arg(i + 1).arg(QDir::toNativeSeparators(path)));
        action->setData(path);
        // Queued: opening replaces the menu's actions, the one triggered among them.
        connect(
            action,
            &QAction::triggered,
            this,
            [this, path] { openFile(path); },
            Qt::QueuedConnection);
    }
    if (!recent.isEmpty()) {
        m_recentMenu->addSeparator();
        m_recentMenu->addAction(QStringLiteral("&Clear Menu"), this, [this] {
            m_settings->remove(RecentFilesKey);
            fillRecentMenu();
        });
    }
    m_recentMenu->setEnabled(!recent.isEmpty());
}

void MainWindow::showFileError(const QString &title, const QString &message)
{
    emit fileErrorShown(message);
    QMessageBox::warning(this, title, message);
}

void MainWindow::restoreLayout()
{
    // A layout that cannot be applied (damaged, or from another version) leaves the defaults.
    restoreGeometry(m_settings->value(GeometryKey).toByteArray());
    restoreState(m_settings->value(LayoutKey).toByteArray(), LayoutVersion);
}

void MainWindow::saveLayout()
{
    m_settings->setValue(GeometryKey, saveGeometry());
    m_settings->setValue(LayoutKey, saveState(LayoutVersion));
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (maybeSave()) {
        saveLayout();
        event->accept();
    } else {
        event->ignore();
    }
}

} // namespace vantrel::host
