// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/desktop/editactions.h"

#include "host/hostfunctions.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/document/worldplacement.h"
#include "hostapp/core/scene/basenode.h"
#include "hostapp/core/scene/scenenode.h"
#include "hostapp/desktop/scenetreemodel.h"
#include "hostapp/desktop/scenetreeview.h"
#include "hostapp/desktop/shapenames.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QTimer>

namespace vantrel::host {

namespace {

// Width given to the copy's offset when the original has no geometry to measure (a light, an
// empty group): far enough to tell the two apart in the tree's and the view's eyes.
constexpr float OffsetWithoutGeometry = 10.f;

QAction *addAction(QMenu *menu, const QString &text, const QKeySequence &shortcut)
{
    QAction *action = menu->addAction(text);
    action->setShortcut(shortcut);
    return action;
}

} // namespace

EditActions::EditActions(QMenu *edit, SceneTreeView *tree)
    : QObject(edit)
    , m_tree(tree)
{
    edit->addSeparator();
    // Del alone: the platform's Delete sequence may also hold Ctrl+D, Duplicate's key.
    m_delete = addAction(edit, QStringLiteral("&Delete"), QKeySequence(Qt::Key_Delete));
    m_duplicate = addAction(edit, QStringLiteral("D&uplicate"), QKeySequence(Qt::CTRL + Qt::Key_D));
    m_rename = addAction(edit, QStringLiteral("Re&name"), QKeySequence(Qt::Key_F2));
    edit->addSeparator();
    m_group = addAction(edit, QStringLiteral("&Group"), QKeySequence(Qt::CTRL + Qt::Key_G));
    m_ungroup = addAction(
        edit, QStringLiteral("Ung&roup"), QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_G));
    edit->addSeparator();
    m_selectAll = addAction(edit, QStringLiteral("Select &All"), QKeySequence::SelectAll);
    connect(m_delete, &QAction::triggered, this, &EditActions::deleteSelection);
    connect(m_duplicate, &QAction::triggered, this, &EditActions::duplicateSelection);
    connect(m_rename, &QAction::triggered, this, &EditActions::renameCurrent);
    connect(m_group, &QAction::triggered, this, &EditActions::groupSelection);
    connect(m_ungroup, &QAction::triggered, this, &EditActions::ungroupSelection);
    connect(m_selectAll, &QAction::triggered, this, &EditActions::selectAll);
    updateActions();
}

void EditActions::setDocument(Document *document)
{
    if (m_document)
        disconnect(m_document, nullptr, this, nullptr);
    m_document = document;
    if (document) {
        // A tool may change the scene thousands of times in one go: the actions follow once,
        // when the event loop gets its turn, which is before any key or click is handled.
        connect(document, &Document::changed, this, [this] {
            QTimer::singleShot(0, this, &EditActions::updateActions);
        });
    }
    updateActions();
}

void EditActions::updateActions()
{
    const bool scene = m_document && !m_document->root()->GetChildren().empty();
    const bool selected = m_document && !m_document->GetSelection().empty();
    bool group = false;
    if (selected) {
        for (INode *node : m_document->GetSelection())
            group = group || node->GetNodeType() == INode::GroupNodeType;
    }
    m_delete->setEnabled(selected);
    m_duplicate->setEnabled(selected);
    m_rename->setEnabled(selected);
    m_group->setEnabled(selected);
    m_ungroup->setEnabled(group);
    m_selectAll->setEnabled(scene);
}

void EditActions::deleteSelection()
{
    if (!m_document || m_document->GetSelection().empty())
        return;
    m_document->history().setNextStepName(QStringLiteral("Delete"));
    // Recorded rather than freed at once: a tool window's preview may still hold the nodes.
    m_document->removeNodes(m_document->GetSelection());
}

void EditActions::duplicateSelection()
{
    if (!m_document)
        return;
    Document &document = *m_document;
    const std::vector<INode *> originals
        = WorldPlacement::topmost(document, document.GetSelection());
    if (originals.empty())
        return;
    document.history().setNextStepName(QStringLiteral("Duplicate"));
    document.BeginUndoGroup();
    std::vector<INode *> copies;
    UniqueNames names(document);
    for (INode *original : originals) {
        const TBBox<float> box = ComputeNodeBBox(original);
        const float width
            = box.max[0] >= box.min[0] ? box.max[0] - box.min[0] : OffsetWithoutGeometry;
        INode *copy = document.CloneNode(original, 0);
        if (!copy)
            continue;
        // Right after its original, numbered as a new one of its kind would be.
        document.MoveNodes(copy->GetParent(), GetNodePos(original) + 1, {copy});
        copy->SetName(names.take(original->GetName()));
        if (auto *placed = qobject_cast<SceneNode *>(copy)) {
            Matrix world = WorldPlacement::worldMatrix(original);
            world[12] += DuplicateOffset * width;
            WorldPlacement::placeAt(placed, world);
        }
        copies.push_back(copy);
    }
    document.SetSelection(copies, Document::ReplaceSelection);
    document.EndUndoGroup();
}

void EditActions::renameCurrent()
{
    if (!m_document || m_document->GetSelection().empty())
        return;
    BaseNode *node = m_document->ownNode(m_document->GetSelection().back());
    const QModelIndex index = m_tree->sceneModel()->indexOf(node);
    if (!index.isValid())
        return;
    // The name is typed in the tree, where the node is; the model records it as "Rename".
    m_tree->setFocus();
    m_tree->scrollTo(index);
    m_tree->edit(index);
}

void EditActions::groupSelection()
{
    if (!m_document || m_document->GetSelection().empty())
        return;
    Document &document = *m_document;
    document.history().setNextStepName(QStringLiteral("Group"));
    document.BeginUndoGroup();
    INode *group = WorldPlacement::group(
        document, document.GetSelection(), UniqueNames(document).take(QStringLiteral("Group")));
    if (!group) {
        document.CancelUndoGroup();
        return;
    }
    document.SetSelection({group}, Document::ReplaceSelection);
    document.EndUndoGroup();
}

void EditActions::ungroupSelection()
{
    if (!m_document)
        return;
    Document &document = *m_document;
    std::vector<INode *> groups;
    for (INode *node : WorldPlacement::topmost(document, document.GetSelection())) {
        if (node->GetNodeType() == INode::GroupNodeType)
            groups.push_back(node);
    }
    if (groups.empty())
        return;
    document.history().setNextStepName(QStringLiteral("Ungroup"));
    document.BeginUndoGroup();
    std::vector<INode *> released;
    for (INode *group : groups) {
        const std::vector<INode *> children = WorldPlacement::ungroup(document, group);
        released.insert(released.end(), children.begin(), children.end());
    }
    document.SetSelection(released, Document::ReplaceSelection);
    document.EndUndoGroup();
}

void EditActions::selectAll()
{
    if (!m_document)
        return;
    // The top-level nodes: what lies below them goes with them in every edit and tool. A
    // selection that is already that makes no step, and must leave no name for the next one.
    const std::vector<INode *> &all = m_document->root()->GetChildren();
    if (m_document->GetSelection() == all)
        return;
    m_document->history().setNextStepName(QStringLiteral("Select"));
    m_document->SetSelection(all, Document::ReplaceSelection);
}

} // namespace vantrel::host
