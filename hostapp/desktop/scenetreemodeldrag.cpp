// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The scene tree model's drag and drop: rows dragged to another place move their nodes there,
// keeping each one where it stands in the world. The rows and their data are in
// scenetreemodel.cpp.
#include "hostapp/desktop/scenetreemodel.h"

#include "host/hostfunctions.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/document/worldplacement.h"
#include "hostapp/core/scene/basenode.h"

#include <QDataStream>
#include <QMimeData>

#include <unordered_set>

namespace vantrel::host {

namespace {

// The dragged nodes' addresses with their document's, readable only by a model of the same
// program: a drag never leaves this tree with a meaning elsewhere.
const QString NodesMimeType = QStringLiteral("application/x-vantrel-scene-nodes");

void collectScene(INode *node, std::unordered_set<const INode *> &nodes)
{
    for (INode *child : node->GetChildren()) {
        nodes.insert(child);
        collectScene(child, nodes);
    }
}

} // namespace

QStringList SceneTreeModel::mimeTypes() const
{
    return {NodesMimeType};
}

QMimeData *SceneTreeModel::mimeData(const QModelIndexList &indexes) const
{
    if (!m_document)
        return nullptr;
    QByteArray encoded;
    QDataStream stream(&encoded, QIODevice::WriteOnly);
    stream << quintptr(m_document.data());
    for (const QModelIndex &index : indexes) {
        if (BaseNode *node = nodeAt(index))
            stream << quintptr(node);
    }
    auto *data = new QMimeData;
    data->setData(NodesMimeType, encoded);
    return data;
}

std::vector<INode *> SceneTreeModel::droppedNodes(const QMimeData *data,
                                                  int row,
                                                  const QModelIndex &parent,
                                                  BaseNode **target) const
{
    if (!m_document || !data || !data->hasFormat(NodesMimeType))
        return {};
    BaseNode *into = parent.isValid() ? nodeAt(parent) : m_document->root();
    // Dropped onto a row rather than between rows: only a group takes nodes in.
    if (!into
        || (row < 0 && into != m_document->root() && into->GetNodeType() != INode::GroupNodeType))
        return {};
    QDataStream stream(data->data(NodesMimeType));
    quintptr document = 0;
    stream >> document;
    if (document != quintptr(m_document.data()))
        return {};
    // The addresses are only trusted once found in the scene: the drag may have started before
    // a change took some of the nodes away.
    std::unordered_set<const INode *> scene;
    collectScene(m_document->root(), scene);
    std::vector<INode *> nodes;
    while (!stream.atEnd()) {
        quintptr address = 0;
        stream >> address;
        auto *node = reinterpret_cast<INode *>(address);
        if (stream.status() != QDataStream::Ok || !scene.count(node))
            return {};
        // Not into itself nor below itself, which would cut its subtree out of the scene.
        if (into->isWithin(static_cast<BaseNode *>(node)))
            return {};
        nodes.push_back(node);
    }
    *target = into;
    return WorldPlacement::topmost(*m_document, nodes);
}

bool SceneTreeModel::canDropMimeData(const QMimeData *data,
                                     Qt::DropAction action,
                                     int row,
                                     int column,
                                     const QModelIndex &parent) const
{
    BaseNode *target = nullptr;
    return action == Qt::MoveAction && column <= 0
           && !droppedNodes(data, row, parent, &target).empty();
}

bool SceneTreeModel::dropMimeData(
    const QMimeData *data, Qt::DropAction action, int row, int column, const QModelIndex &parent)
{
    BaseNode *target = nullptr;
    const std::vector<INode *> nodes = action == Qt::MoveAction && column <= 0
                                           ? droppedNodes(data, row, parent, &target)
                                           : std::vector<INode *>();
    if (nodes.empty())
        return false;
    // The row counts the dragged nodes still in their places; the move counts without them.
    int index = row < 0 ? int(target->GetChildren().size()) : row;
    bool sameParent = true;
    for (INode *node : nodes) {
        const bool sibling = node->GetParent() == target;
        sameParent = sameParent && sibling;
        if (row >= 0 && sibling && GetNodePos(node) < row)
            --index;
    }
    Document &document = *m_document;
    document.history().setNextStepName(sameParent ? QStringLiteral("Reorder")
                                                  : QStringLiteral("Move"));
    document.BeginUndoGroup();
    WorldPlacement::moveNodes(document, target, index, nodes);
    document.history().endGroup(UndoHistory::EmptyGroup::Drop);
    // The model has already followed the document: the view has nothing left to remove.
    return false;
}

} // namespace vantrel::host
