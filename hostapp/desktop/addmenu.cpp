// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/desktop/addmenu.h"

#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/basenode.h"
#include "hostapp/core/scene/generatorregistry.h"
#include "hostapp/core/scene/generators/externalmodelgenerator.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/core/scene/scenenode.h"
#include "hostapp/desktop/modelreadprogressdialog.h"
#include "hostapp/desktop/shapenames.h"

#include <assimp/Importer.hpp>

#include <QDir>
#include <QFileDialog>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>

#include <functional>

namespace vantrel::host {

namespace {

// "*.obj *.stl ..." as the importer lists what it reads, for the file dialog.
QString modelFilePatterns()
{
    std::string extensions;
    Assimp::Importer().GetExtensionList(extensions); // "*.3ds;*.obj;..."
    return QString::fromStdString(extensions).replace(QLatin1Char(';'), QLatin1Char(' '));
}

// Adds one node as a single undo step named "Add <what>": the node is made, placed and
// selected inside the step, so that undo takes it away with its selection.
INode *addAsOneStep(Document &document, const QString &what, const std::function<INode *()> &make)
{
    document.history().setNextStepName(QStringLiteral("Add %1").arg(what));
    document.BeginUndoGroup();
    INode *node = make();
    if (!node) {
        document.CancelUndoGroup();
        return nullptr;
    }
    document.SetSelection({node}, Document::ReplaceSelection);
    document.EndUndoGroup();
    return node;
}

// The camera target's floor point.
Vector3 floorPoint(const Document &document)
{
    const Vector3 &target = document.camera()->GetTarget();
    return {target.x, target.y, 0.f};
}

// Moves a top-level node so that its lowest point is on the floor, centred on the point.
void standOnFloor(SceneNode *node, const Vector3 &point)
{
    const TBBox<float> box = ComputeNodeBBox(node);
    if (IsBoxEmpty(box)) {
        node->SetPosition(point, false);
        return;
    }
    const Vector3 &at = node->GetPosition();
    node->SetPosition({at.x + point.x - 0.5f * (box.min[0] + box.max[0]),
                       at.y + point.y - 0.5f * (box.min[1] + box.max[1]),
                       at.z + point.z - box.min[2]},
                      false);
}

} // namespace

AddMenu::AddMenu(QMainWindow *window)
    : QObject(window)
{
    buildMenu(window);
    setDocument(nullptr);
}

void AddMenu::buildMenu(QMainWindow *window)
{
    m_menu = new QMenu(QStringLiteral("&Add"), window);
    m_toolBar = new QToolBar(QStringLiteral("Add"), window);
    // Named, so that the window's saved layout keeps where the user put it.
    m_toolBar->setObjectName(QStringLiteral("add"));
    m_toolBar->setToolButtonStyle(Qt::ToolButtonTextOnly);
    QMenu *group = nullptr;
    QString groupName;
    for (const ShapeName &entry : shapeNames()) {
        if (groupName != QLatin1String(entry.group)) {
            groupName = QString::fromUtf8(entry.group);
            group = m_menu->addMenu(groupName);
            // The tool bar drops the same submenu down from a button of the group's name.
            auto *button = new QToolButton(m_toolBar);
            button->setText(groupName);
            button->setMenu(group);
            button->setPopupMode(QToolButton::InstantPopup);
            m_toolBar->addWidget(button);
        }
        const QByteArray id(entry.generatorId);
        group->addAction(QString::fromUtf8(entry.name), this, [this, id] { addShape(id); });
    }
    m_menu->addSeparator();
    m_toolBar->addSeparator();
    QAction *light = m_menu->addAction(QStringLiteral("&Light"), this, [this] { addLight(); });
    QAction *newGroup = m_menu->addAction(QStringLiteral("&Group"), this, [this] { addGroup(); });
    QAction *import
        = m_menu->addAction(QStringLiteral("&Import Model..."), this, &AddMenu::chooseModelFile);
    m_toolBar->addAction(light);
    m_toolBar->addAction(newGroup);
    m_toolBar->addAction(import);

    // After the Edit menu, where users look for what makes a scene.
    QMenuBar *bar = window->menuBar();
    const QList<QAction *> menus = bar->actions();
    bar->insertMenu(menus.size() > 2 ? menus.at(2) : nullptr, m_menu);
    window->addToolBar(m_toolBar);
}

void AddMenu::setDocument(Document *document)
{
    m_document = document;
    m_menu->setEnabled(document != nullptr);
    m_toolBar->setEnabled(document != nullptr);
}

INode *AddMenu::addShape(const QByteArray &generatorId)
{
    if (!m_document || !createGenerator(generatorId))
        return nullptr;
    Document &document = *m_document;
    const QString what = shapeName(generatorId);
    return addAsOneStep(document, what, [&]() -> INode * {
        MeshNode *node
            = document.root()->createChildShape(generatorId, UniqueNames(document).take(what));
        if (node)
            standOnFloor(node, floorPoint(document));
        return node;
    });
}

INode *AddMenu::addLight()
{
    if (!m_document)
        return nullptr;
    Document &document = *m_document;
    const QString what = QStringLiteral("Light");
    return addAsOneStep(document, what, [&]() -> INode * {
        auto *light = qobject_cast<SceneNode *>(
            document.root()->CreateChildLight(UniqueNames(document).take(what)));
        if (light) {
            Vector3 at = floorPoint(document);
            at.z = LightHeight;
            light->SetPosition(at, false);
        }
        return light;
    });
}

INode *AddMenu::addGroup()
{
    if (!m_document)
        return nullptr;
    Document &document = *m_document;
    const QString what = QStringLiteral("Group");
    return addAsOneStep(document, what, [&]() -> INode * {
        auto *group = qobject_cast<SceneNode *>(
            document.root()->CreateChildGroup(UniqueNames(document).take(what)));
        if (group)
            group->SetPosition(floorPoint(document), false);
        return group;
    });
}

INode *AddMenu::importModel(const QString &path)
{
    if (!m_document)
        return nullptr;
    // The file is read before anything changes: one that cannot be read adds nothing.
    auto generator = createGenerator(ExternalModelGenerator::s_typeId);
    auto *model = static_cast<ExternalModelGenerator *>(generator.get());
    const int cancels = ModelReadProgressDialog::cancelsSoFar();
    model->setPath(QFileInfo(path).absoluteFilePath());
    if (!model->refusal().isEmpty()) {
        const QString message = model->refusal();
        // The user pressed Cancel in the reading's dialog: nothing went wrong that needs a box
        // to be closed; the status bar only confirms that nothing was added.
        auto *window = qobject_cast<QMainWindow *>(m_menu->parentWidget());
        if (ModelReadProgressDialog::cancelsSoFar() != cancels && window) {
            window->statusBar()->showMessage(message,
                                             ModelReadProgressDialog::CancelMessageMilliseconds);
            return nullptr;
        }
        emit importErrorShown(message);
        QMessageBox::warning(m_menu->parentWidget(), QStringLiteral("Import Model"), message);
        return nullptr;
    }
    Document &document = *m_document;
    const QString what = QFileInfo(path).completeBaseName();
    return addAsOneStep(document, what, [&]() -> INode * {
        MeshNode *node = document.root()->createChildMesh(std::move(generator),
                                                          UniqueNames(document).take(what));
        if (node)
            standOnFloor(node, floorPoint(document));
        return node;
    });
}

void AddMenu::chooseModelFile()
{
    const QString path = QFileDialog::getOpenFileName(
        m_menu->parentWidget(),
        QStringLiteral("Import Model"),
        QDir::currentPath(),
        QStringLiteral("Models (%1);;All files (*)").arg(modelFilePatterns()));
    if (!path.isEmpty())
        importModel(path);
}

} // namespace vantrel::host
