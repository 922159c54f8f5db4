// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The main window's layout and its sessions: the tree beside the view, adopting a document with
// its tools, the tools' actions, the undo actions, the title and the status line. The menus and
// the file handling are in mainwindowmenus.cpp.
#include "hostapp/desktop/mainwindow.h"

#include "host/itool.h"
#include "hostapp/core/commands/session.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/basenode.h"
#include "hostapp/desktop/addmenu.h"
#include "hostapp/desktop/desktopuserinterface.h"
#include "hostapp/desktop/editactions.h"
#include "hostapp/desktop/modelreadprogressdialog.h"
#include "hostapp/desktop/propertiespanel.h"
#include "hostapp/desktop/scenetreeview.h"
#include "hostapp/desktop/sceneview.h"

#include <QAction>
#include <QDockWidget>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QSettings>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QUndoStack>

namespace vantrel::host {

namespace {

struct SceneCounts
{
    int shapes = 0;
    int lights = 0;
};

void count(const BaseNode &node, SceneCounts &counts)
{
    for (std::size_t i = 0; i < node.GetChildren().size(); ++i) {
        const BaseNode &child = *node.childNode(i);
        if (child.GetNodeType() == INode::MeshNodeType)
            ++counts.shapes;
        else if (child.GetNodeType() == INode::LightNodeType)
            ++counts.lights;
        count(child, counts);
    }
}

} // namespace

MainWindow::MainWindow(QString pluginPath, const QString &settingsPath, QWidget *parent)
    : QMainWindow(parent)
    , m_pluginPath(std::move(pluginPath))
    , m_settings(
          settingsPath.isEmpty()
              ? std::make_unique<QSettings>(QStringLiteral("vantrel"), QStringLiteral("vantrel"))
              : std::make_unique<QSettings>(settingsPath, QSettings::IniFormat))
{
    // The view fills the window; the scene tree and the properties of its selection are docks
    // beside it, which the user may resize, stack or float, and which keep their place.
    m_view = new SceneView;
    setCentralWidget(m_view);
    m_tree = new SceneTreeView;
    m_tree->setHeaderHidden(true); // the dock's title names it
    m_sceneDock = new QDockWidget(QStringLiteral("Scene"), this);
    m_sceneDock->setObjectName(QStringLiteral("sceneDock"));
    m_sceneDock->setWidget(m_tree);
    addDockWidget(Qt::LeftDockWidgetArea, m_sceneDock);
    m_propertiesDock = new QDockWidget(QStringLiteral("Properties"), this);
    m_propertiesDock->setObjectName(QStringLiteral("propertiesDock"));
    addDockWidget(Qt::LeftDockWidgetArea, m_propertiesDock);
    resizeDocks({m_sceneDock}, {300}, Qt::Horizontal);
    resizeDocks({m_sceneDock, m_propertiesDock}, {300, 440}, Qt::Vertical);

    m_toolBar = addToolBar(QStringLiteral("Tools"));
    m_toolBar->setObjectName(QStringLiteral("tools"));
    m_toolBar->setToolButtonStyle(Qt::ToolButtonTextOnly);
    m_status = new QLabel;
    statusBar()->addPermanentWidget(m_status);
    // The name a pressed button set is not left for an unrelated change once its tool ran.
    connect(m_toolBar, &QToolBar::actionTriggered, this, [this] {
        if (m_session)
            m_session->document().history().setNextStepName(QString());
    });
    m_readProgress = std::make_unique<ModelReadProgressDialog>(this);
    buildMenus();
    resize(1280, 800);
    restoreLayout();
    // The view has the keyboard when the window opens, so the tools' single-key shortcuts work
    // at once.
    m_view->setFocus();
    updateTitle();
}

MainWindow::~MainWindow()
{
    // The view, the tree and the properties let go of the document before it goes.
    m_view->setDocument(nullptr);
    m_tree->setDocument(nullptr);
    PropertiesPanel::of(m_propertiesDock).setDocument(nullptr);
    m_session.reset();
    m_userInterface.reset();
}

bool MainWindow::initialize(QString *errorMessage)
{
    return adopt(std::make_unique<Document>(), QString(), errorMessage);
}

Document *MainWindow::document() const
{
    return m_session ? &m_session->document() : nullptr;
}

bool MainWindow::adopt(std::unique_ptr<Document> document,
                       const QString &path,
                       QString *errorMessage)
{
    auto userInterface = std::make_unique<DesktopUserInterface>(this, m_toolBar);
    auto session = std::make_unique<Session>(std::move(document), userInterface.get());
    if (!session->loadToolsPlugin(m_pluginPath, errorMessage))
        return false;
    // A tool-bar button names the undo step its tool makes, as the Tools menu does.
    connect(userInterface.get(),
            &DesktopUserInterface::toolbarActionPressed,
            this,
            [this](QAction *action) {
                if (m_session)
                    m_session->document().history().setNextStepName(action->text());
            });

    Document &current = session->document();
    m_view->setDocument(&current);
    m_tree->setDocument(&current);
    PropertiesPanel::of(m_propertiesDock).setDocument(&current);
    // The old document goes after the view and the tree have let go of it, and its tool-bar
    // buttons go with its user interface.
    m_session = std::move(session);
    m_userInterface = std::move(userInterface);
    m_filePath = path;

    m_addMenu->setDocument(&current);
    m_editActions->setDocument(&current);
    connect(&current, &Document::changed, this, &MainWindow::scheduleUpdate);
    QUndoStack *stack = current.history().stack();
    stack->setClean();
    connect(stack, &QUndoStack::cleanChanged, this, &MainWindow::updateTitle);
    connect(stack, &QUndoStack::indexChanged, this, &MainWindow::updateUndoActions);
    rebuildToolsMenu();
    updateUndoActions();
    updateTitle();
    updateStatus();
    return true;
}

void MainWindow::rebuildToolsMenu()
{
    // The previous document's actions run its tools, which are gone with its session.
    for (const auto &entry : m_toolActions)
        delete entry.first;
    m_toolActions.clear();
    for (ITool *tool : m_session->tools().toolsByOrder()) {
        auto *action = new QAction(tool->GetTitle(), this);
        m_toolsMenu->addAction(action);
        addAction(action);
        action->setShortcut(tool->GetShortcut());
        // In the window as well as in the menu, so that the single-key shortcuts work wherever
        // the keyboard is in this window while the menu is closed, the view included; a tool
        // window, being modal, keeps them from firing while it is open.
        action->setShortcutContext(Qt::WindowShortcut);
        connect(action, &QAction::triggered, this, [this, tool] { runTool(tool); });
        m_toolActions.emplace_back(action, tool);
    }
    updateToolActions();
}

void MainWindow::runTool(ITool *tool)
{
    if (!m_session)
        return;
    DocumentContext &context = m_session->context();
    // The menu may be out of date by a change made since it was last brought up to date.
    if (!tool->IsEnabled(context)) {
        updateToolActions();
        return;
    }
    UndoHistory &history = m_session->document().history();
    history.setNextStepName(tool->GetTitle());
    tool->Execute(context);
    history.setNextStepName(QString());
    updateToolActions();
}

void MainWindow::updateToolActions()
{
    m_updatePending = false;
    if (!m_session)
        return;
    for (const auto &[action, tool] : m_toolActions)
        action->setEnabled(tool->IsEnabled(m_session->context()));
    updateUndoActions();
    updateStatus();
}

void MainWindow::scheduleUpdate()
{
    // A tool may change the scene thousands of times in one go: the menus and the status line
    // follow once the event loop gets its turn, which is before any key or click is handled.
    if (std::exchange(m_updatePending, true))
        return;
    QTimer::singleShot(0, this, &MainWindow::updateToolActions);
}

void MainWindow::updateUndoActions()
{
    const UndoHistory *history = m_session ? &m_session->document().history() : nullptr;
    const bool canUndo = history && history->undoCount() > 0;
    const bool canRedo = history && history->redoCount() > 0;
    m_undoAction->setEnabled(canUndo);
    m_redoAction->setEnabled(canRedo);
    m_undoAction->setText(canUndo ? QStringLiteral("&Undo %1").arg(history->undoText())
                                  : QStringLiteral("&Undo"));
    m_redoAction->setText(canRedo ? QStringLiteral("&Redo %1").arg(history->redoText())
                                  : QStringLiteral("&Redo"));
}

QString MainWindow::documentName() const
{
    return m_filePath.isEmpty() ? QStringLiteral("Untitled") : QFileInfo(m_filePath).fileName();
}

void MainWindow::updateTitle()
{
    const QString name = documentName();
    setWindowTitle(QStringLiteral("%1[*] — Vantrel").arg(name));
    setWindowModified(m_session && !m_session->document().history().stack()->isClean());
}

void MainWindow::updateStatus()
{
    if (!m_session)
        return;
    SceneCounts counts;
    const Document &current = m_session->document();
    count(*current.root(), counts);
    m_status->setText(QStringLiteral("%1 shapes, %2 lights, %3 selected")
                          .arg(counts.shapes)
                          .arg(counts.lights)
                          .arg(current.GetSelection().size()));
}

} // namespace vantrel::host
