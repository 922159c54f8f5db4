// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/document/treechanges.h"

#include "hostapp/core/scene/basenode.h"

#include <utility>

namespace vantrel::host {

namespace {

// The parents whose children a tree change took nodes from.
void visitPlacements(const std::vector<TreeSurgery::Placement> &placements,
                     const NodeVisitor &visit)
{
    for (const TreeSurgery::Placement &placement : placements)
        visit(placement.parent, NodeRole::ParentAtIndex);
}

} // namespace

InsertChange::InsertChange(BaseNode *parent, BaseNode *node)
    : m_parent(parent)
    , m_node(node)
{
    // A node comes in new, with whatever subtree it was built with; nothing below it was in the
    // scene before.
    for (std::size_t i = 0; i < m_createdBelow.size() + 1; ++i) {
        const INode *below = i == 0 ? m_node : m_createdBelow[i - 1];
        const std::vector<INode *> &children = below->GetChildren();
        m_createdBelow.insert(m_createdBelow.end(), children.begin(), children.end());
    }
}

InsertChange::~InsertChange()
{
    if (m_owned)
        delete m_node;
}

void InsertChange::redo()
{
    if (m_index < 0)
        m_index = int(m_parent->GetChildren().size());
    TreeSurgery::insertChildren(m_parent, m_index, {m_node});
    m_owned = false;
}

void InsertChange::undo()
{
    TreeSurgery::detach({m_node});
    m_owned = true;
}

bool InsertChange::visitNodes(const NodeVisitor &visit) const
{
    // The index is taken at the first redo as the end of the parent's children.
    visit(m_parent, NodeRole::ParentAtEnd);
    visit(m_node, NodeRole::Created);
    for (INode *node : m_createdBelow)
        visit(node, NodeRole::Created);
    return true;
}

RemoveChange::RemoveChange(std::vector<BaseNode *> nodes)
    : m_nodes(std::move(nodes))
{}

RemoveChange::~RemoveChange()
{
    if (m_owned) {
        for (BaseNode *node : m_nodes)
            delete node;
    }
}

void RemoveChange::redo()
{
    m_from = TreeSurgery::detach(m_nodes);
    m_owned = true;
}

void RemoveChange::undo()
{
    TreeSurgery::reattach(m_from);
    m_owned = false;
}

bool RemoveChange::visitNodes(const NodeVisitor &visit) const
{
    for (BaseNode *node : m_nodes)
        visit(node, NodeRole::Edited);
    visitPlacements(m_from, visit);
    return true;
}

MoveChange::MoveChange(BaseNode *parent, int index, std::vector<BaseNode *> nodes)
    : m_parent(parent)
    , m_index(index)
    , m_nodes(std::move(nodes))
{}

void MoveChange::redo()
{
    m_from = TreeSurgery::detach(m_nodes);
    TreeSurgery::insertChildren(m_parent, m_index, m_nodes);
}

void MoveChange::undo()
{
    TreeSurgery::detach(m_nodes);
    TreeSurgery::reattach(m_from);
}

bool MoveChange::visitNodes(const NodeVisitor &visit) const
{
    visit(m_parent, NodeRole::ParentAtIndex);
    for (BaseNode *node : m_nodes)
        visit(node, NodeRole::Edited);
    visitPlacements(m_from, visit);
    return true;
}

} // namespace vantrel::host
