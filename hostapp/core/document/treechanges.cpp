// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/document/treechanges.h"

#include "hostapp/core/scene/basenode.h"

#include <utility>

namespace vantrel::host {

InsertChange::InsertChange(BaseNode *parent, BaseNode *node)
    : m_parent(parent)
    , m_node(node)
{}

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

} // namespace vantrel::host
