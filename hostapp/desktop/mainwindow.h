// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/desktop/desktopexport.h"

#include <QMainWindow>
#include <QPointer>

#include <memory>
#include <vector>

class ITool;
class QAction;
class QDockWidget;
class QLabel;
class QMenu;
class QSettings;
class QToolBar;

namespace vantrel::host {

class AddMenu;
class DesktopUserInterface;
class EditActions;
class ModelReadProgressDialog;
class Document;
class SceneTreeView;
class SceneView;
class Session;

// The desktop program's window: the scene tree beside the live 3D view, the Tools menu and tool
// bar the plug-in's tools fill, Edit › Undo and Redo, and the File menu.
//
// Each document gets a session of its own (application, tools, context, script engine) and a
// user interface of its own, so that opening a file attaches the tools anew and the tool-bar
// buttons of the previous document go with it. A file that cannot be read or written is reported
// in a message that names it, and the open document stays exactly as it was.
class VANTREL_DESKTOP_EXPORT MainWindow final : public QMainWindow
{
    Q_OBJECT

public:
    // Recent files are kept in the settings file at settingsPath, or in the user's vantrel
    // settings when it is empty.
    explicit MainWindow(QString pluginPath,
                        const QString &settingsPath = QString(),
                        QWidget *parent = nullptr);
    ~MainWindow() override;

    // Loads the tools plug-in on an empty document. False, with the loader's message, when it
    // cannot be loaded; the window is then not usable.
    bool initialize(QString *errorMessage);

    // The File menu's work without its file dialogs. New and a readable file ask first when the
    // open document has unsaved changes; each returns false when the user cancels or the file
    // cannot be used (after a message that names it).
    bool newDocument();
    bool openFile(const QString &path);
    bool saveFile(const QString &path);
    // Writes the scene as glTF (.glb or .gltf, by the suffix); the scene file and its title stay.
    bool exportFile(const QString &path);

    Document *document() const;
    QString filePath() const { return m_filePath; }
    QStringList recentFiles() const;
    SceneView *view() const { return m_view; }
    SceneTreeView *tree() const { return m_tree; }
    QMenu *toolsMenu() const { return m_toolsMenu; }
    QMenu *recentMenu() const { return m_recentMenu; }
    QToolBar *toolBar() const { return m_toolBar; }
    QDockWidget *sceneDock() const { return m_sceneDock; }
    QDockWidget *propertiesDock() const { return m_propertiesDock; }
    QAction *undoAction() const { return m_undoAction; }
    QAction *redoAction() const { return m_redoAction; }
    AddMenu *addMenu() const { return m_addMenu; }
    EditActions *editActions() const { return m_editActions; }

signals:
    // A file could not be opened or saved: the message shown, which names the file.
    void fileErrorShown(const QString &message);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void buildMenus();
    // The window's size and the docks' places and sizes, as the user left them in the last run.
    void restoreLayout();
    void saveLayout();
    // Makes the document the open one with a new session: the tools attach to it and the view,
    // the tree, the menus and the title follow it. False when the tools cannot be loaded.
    bool adopt(std::unique_ptr<Document> document, const QString &path, QString *errorMessage);
    void rebuildToolsMenu();
    void runTool(ITool *tool);
    void updateToolActions();
    void scheduleUpdate();
    void updateUndoActions();
    // The file's name, or "Untitled", for the title and the questions.
    QString documentName() const;
    void updateTitle();
    void updateStatus();
    bool maybeSave();
    bool save();
    bool saveAs();
    bool exportScene();
    void open();
    void addRecentFile(const QString &path);
    void fillRecentMenu();
    void showFileError(const QString &title, const QString &message);

    QString m_pluginPath;
    std::unique_ptr<QSettings> m_settings;
    // The user interface outlives the session that points at it.
    std::unique_ptr<DesktopUserInterface> m_userInterface;
    std::unique_ptr<Session> m_session;
    QString m_filePath;

    SceneView *m_view = nullptr;
    SceneTreeView *m_tree = nullptr;
    QDockWidget *m_sceneDock = nullptr;
    QDockWidget *m_propertiesDock = nullptr;
    QToolBar *m_toolBar = nullptr;
    QMenu *m_toolsMenu = nullptr;
    QMenu *m_recentMenu = nullptr;
    QAction *m_undoAction = nullptr;
    QAction *m_redoAction = nullptr;
    AddMenu *m_addMenu = nullptr;
    EditActions *m_editActions = nullptr;
    QLabel *m_status = nullptr;
    // Reports every model reading started in this window, with Cancel.
    std::unique_ptr<ModelReadProgressDialog> m_readProgress;
    std::vector<std::pair<QAction *, ITool *>> m_toolActions;
    bool m_updatePending = false;
};

} // namespace vantrel::host
