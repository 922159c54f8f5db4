// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/core/document/treesurgery.h"
#include "hostapp/core/undo/change.h"

#include <vector>

namespace vantrel::host {

class BaseNode;
class Document;

// The recorded changes of the scene tree's shape: a node added, subtrees removed, nodes moved.
// Only the document creates them (its insertion, DeleteNodes, MoveNodes and CloneNode), and only
// they reach the raw tree edits of TreeSurgery. Each is created already applied; the undo history
// owns it, and with it whatever part of the tree it holds out of the scene.

// A node appended to a parent. Undone, the node is out of the tree and this change owns it.
class InsertChange final : public Change
{
public:
    ~InsertChange() override;
    void redo() override;
    void undo() override;
    bool visitNodes(const NodeVisitor &visit) const override;

private:
    friend class Document;
    InsertChange(BaseNode *parent, BaseNode *node);

    BaseNode *m_parent;
    BaseNode *m_node;
    std::vector<INode *> m_createdBelow; // the subtree the node came with (a clone's children)
    int m_index = -1;
    bool m_owned = true;
};

// Subtrees taken out of the scene. Done, this change owns them.
class RemoveChange final : public Change
{
public:
    ~RemoveChange() override;
    void redo() override;
    void undo() override;
    bool visitNodes(const NodeVisitor &visit) const override;

private:
    friend class Document;
    explicit RemoveChange(std::vector<BaseNode *> nodes);

    std::vector<BaseNode *> m_nodes;
    std::vector<TreeSurgery::Placement> m_from;
    bool m_owned = false;
};

// Nodes re-parented under one parent, inserted together at an index.
class MoveChange final : public Change
{
public:
    void redo() override;
    void undo() override;
    bool visitNodes(const NodeVisitor &visit) const override;

private:
    friend class Document;
    MoveChange(BaseNode *parent, int index, std::vector<BaseNode *> nodes);

    BaseNode *m_parent;
    int m_index;
    std::vector<BaseNode *> m_nodes;
    std::vector<TreeSurgery::Placement> m_from;
};

} // namespace vantrel::host
