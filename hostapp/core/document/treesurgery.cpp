// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/document/treesurgery.h"

#include "hostapp/core/scene/basenode.h"

#include <algorithm>
#include <unordered_map>

namespace vantrel::host {

std::vector<TreeSurgery::Placement> TreeSurgery::detach(const std::vector<BaseNode *> &nodes)
{
    // One node, the common case of every clone, move and their undo: no batch bookkeeping.
    if (nodes.size() == 1) {
        BaseNode *node = nodes.front();
        BaseNode *parent = node->m_parent;
        if (!parent)
            return {};
        std::vector<INode *> &children = parent->m_children;
        // Searching from the back makes the most common place, the last child, constant time.
        for (auto i = int(children.size()) - 1; i >= 0; --i) {
            if (children[i] == node) {
                children.erase(children.begin() + i);
                node->m_parent = nullptr;
                return {Placement{node, parent, i}};
            }
        }
        return {};
    }
    struct Batch
    {
        int count = 0;
        BaseNode *single = nullptr;
    };
    std::unordered_map<BaseNode *, Batch> batches;
    std::vector<BaseNode *> parents; // in the order they first appear
    for (BaseNode *node : nodes) {
        if (!node->m_parent)
            continue;
        Batch &batch = batches[node->m_parent];
        if (batch.count++ == 0) {
            batch.single = node;
            parents.push_back(node->m_parent);
        }
        node->m_marked = true;
    }

    std::vector<Placement> placements;
    placements.reserve(nodes.size());
    for (BaseNode *parent : parents) {
        std::vector<INode *> &children = parent->m_children;
        const Batch &batch = batches[parent];
        if (batch.count == 1) {
            // Searching from the back makes the common case, the last child, constant time.
            for (auto i = int(children.size()) - 1; i >= 0; --i) {
                if (children[i] == batch.single) {
                    placements.push_back({batch.single, parent, i});
                    children.erase(children.begin() + i);
                    break;
                }
            }
            batch.single->m_marked = false;
            batch.single->m_parent = nullptr;
            continue;
        }
        std::size_t kept = 0;
        for (std::size_t i = 0; i < children.size(); ++i) {
            auto *child = static_cast<BaseNode *>(children[i]);
            if (child->m_marked) {
                placements.push_back({child, parent, int(i)});
                child->m_marked = false;
                child->m_parent = nullptr;
            } else {
                children[kept++] = child;
            }
        }
        children.resize(kept);
    }
    return placements;
}

void TreeSurgery::reattach(const std::vector<Placement> &placements)
{
    std::size_t begin = 0;
    while (begin < placements.size()) {
        BaseNode *parent = placements[begin].parent;
        std::size_t end = begin + 1;
        while (end < placements.size() && placements[end].parent == parent)
            ++end;
        std::vector<INode *> &children = parent->m_children;
        if (end - begin == 1) {
            const Placement &p = placements[begin];
            const int index = std::min(p.index, int(children.size()));
            children.insert(children.begin() + index, p.node);
            p.node->m_parent = parent;
        } else {
            // Merge in one pass: the placements are in ascending index order.
            std::vector<INode *> merged;
            merged.reserve(children.size() + (end - begin));
            std::size_t existing = 0;
            for (std::size_t next = begin; next < end;) {
                if (int(merged.size()) == placements[next].index || existing == children.size()) {
                    merged.push_back(placements[next].node);
                    placements[next].node->m_parent = parent;
                    ++next;
                } else {
                    merged.push_back(children[existing++]);
                }
            }
            merged.insert(
                merged.end(), children.begin() + std::ptrdiff_t(existing), children.end());
            children.swap(merged);
        }
        begin = end;
    }
}

void TreeSurgery::insertChildren(BaseNode *parent, int index, const std::vector<BaseNode *> &nodes)
{
    std::vector<INode *> &children = parent->m_children;
    if (index < 0 || index > int(children.size()))
        index = int(children.size());
    children.insert(children.begin() + index, nodes.begin(), nodes.end());
    for (BaseNode *node : nodes)
        node->m_parent = parent;
}

} // namespace vantrel::host
