// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/document/document.h"

#include "hostapp/core/scene/basenode.h"

#include <cmath>
#include <unordered_map>

namespace vantrel::host {

namespace {

// A node appended to a parent. Undone, the node is out of the tree and this change owns it.
class InsertChange final : public Change
{
public:
    InsertChange(Document *document, BaseNode *parent, BaseNode *node)
        : m_document(document)
        , m_parent(parent)
        , m_node(node)
    {}
    ~InsertChange() override
    {
        if (m_owned)
            delete m_node;
    }
    void redo() override
    {
        if (m_index < 0)
            m_index = int(m_parent->GetChildren().size());
        m_document->insertChildren(m_parent, m_index, {m_node});
        m_owned = false;
    }
    void undo() override
    {
        m_document->detach({m_node});
        m_owned = true;
    }

private:
    Document *m_document;
    BaseNode *m_parent;
    BaseNode *m_node;
    int m_index = -1;
    bool m_owned = true;
};

// Subtrees taken out of the scene. Done, this change owns them.
class RemoveChange final : public Change
{
public:
    RemoveChange(Document *document, std::vector<BaseNode *> nodes)
        : m_document(document)
        , m_nodes(std::move(nodes))
    {}
    ~RemoveChange() override
    {
        if (m_owned) {
            for (BaseNode *node : m_nodes)
                delete node;
        }
    }
    void redo() override
    {
        m_from = m_document->detach(m_nodes);
        m_owned = true;
    }
    void undo() override
    {
        m_document->reattach(m_from);
        m_owned = false;
    }

private:
    Document *m_document;
    std::vector<BaseNode *> m_nodes;
    std::vector<Document::Placement> m_from;
    bool m_owned = false;
};

// Nodes re-parented under one parent, inserted together at an index.
class MoveChange final : public Change
{
public:
    MoveChange(Document *document, BaseNode *parent, int index, std::vector<BaseNode *> nodes)
        : m_document(document)
        , m_parent(parent)
        , m_index(index)
        , m_nodes(std::move(nodes))
    {}
    void redo() override
    {
        m_from = m_document->detach(m_nodes);
        m_document->insertChildren(m_parent, m_index, m_nodes);
    }
    void undo() override
    {
        m_document->detach(m_nodes);
        m_document->reattach(m_from);
    }

private:
    Document *m_document;
    BaseNode *m_parent;
    int m_index;
    std::vector<BaseNode *> m_nodes;
    std::vector<Document::Placement> m_from;
};

using SelectionChange = ValueChange<Document, std::vector<INode *>>;

} // namespace

Document::Document(QObject *parent)
    : QObject(parent)
    , m_root(std::make_unique<RootNode>(this))
    , m_camera(std::make_unique<Camera>())
{
    m_camera->setChangeListener([this] { emit cameraChanged(); });
}

Document::~Document()
{
    // Removed subtrees are owned by the history; free them before the tree they came from.
    m_history.clear();
    m_selection.clear();
    m_root.reset();
}

INode *Document::GetRootNode() const
{
    return m_root.get();
}

BaseNode *Document::ownNode(INode *node) const
{
    auto *own = qobject_cast<BaseNode *>(node);
    return own && own->document() == this ? own : nullptr;
}

void Document::SetSelection(const std::vector<INode *> &nodes, int mode)
{
    if (mode != AddToSelection && mode != RemoveFromSelection && mode != ReplaceSelection)
        return;
    // Marks stand for "in the result so far", so every node appears at most once.
    std::vector<INode *> next;
    if (mode != ReplaceSelection) {
        for (INode *node : m_selection)
            static_cast<BaseNode *>(node)->m_marked = true;
    }
    if (mode == RemoveFromSelection) {
        for (INode *node : nodes) {
            if (BaseNode *own = ownNode(node))
                own->m_marked = false;
        }
        for (INode *node : m_selection) {
            if (static_cast<BaseNode *>(node)->m_marked)
                next.push_back(node);
        }
    } else {
        if (mode == AddToSelection)
            next = m_selection;
        for (INode *node : nodes) {
            BaseNode *own = ownNode(node);
            if (!own || own == m_root.get() || own->m_marked || !own->isInScene())
                continue;
            own->m_marked = true;
            next.push_back(own);
        }
    }
    for (INode *node : m_selection)
        static_cast<BaseNode *>(node)->m_marked = false;
    for (INode *node : next)
        static_cast<BaseNode *>(node)->m_marked = false;
    if (next != m_selection)
        apply(
            std::make_unique<SelectionChange>(this, &Document::applySelection, m_selection, next));
}

void Document::applySelection(std::vector<INode *> selection)
{
    m_selection = std::move(selection);
}

void Document::DeleteNodes(const std::vector<INode *> &nodes)
{
    // Only the topmost of the given nodes are taken out: the others go with them.
    std::vector<BaseNode *> candidates;
    candidates.reserve(nodes.size());
    for (INode *node : nodes) {
        BaseNode *own = ownNode(node);
        if (own && own != m_root.get() && !own->m_marked && own->isInScene()) {
            own->m_marked = true;
            candidates.push_back(own);
        }
    }
    auto hasMarkedAncestor = [](const BaseNode *node) {
        for (const BaseNode *p = node->m_parent; p; p = p->m_parent) {
            if (p->m_marked)
                return true;
        }
        return false;
    };
    std::vector<BaseNode *> topmost;
    for (BaseNode *node : candidates) {
        if (!hasMarkedAncestor(node))
            topmost.push_back(node);
    }
    // Selected nodes inside the removed subtrees leave the selection in the same step.
    std::vector<INode *> selection;
    for (INode *node : m_selection) {
        auto *own = static_cast<BaseNode *>(node);
        if (!own->m_marked && !hasMarkedAncestor(own))
            selection.push_back(node);
    }
    for (BaseNode *node : candidates)
        node->m_marked = false;
    if (topmost.empty())
        return;

    m_history.beginGroup();
    if (selection.size() != m_selection.size())
        apply(std::make_unique<SelectionChange>(
            this, &Document::applySelection, m_selection, selection));
    apply(std::make_unique<RemoveChange>(this, std::move(topmost)));
    m_history.endGroup();
}

void Document::MoveNodes(INode *parent, int index, const std::vector<INode *> &nodes)
{
    BaseNode *target = ownNode(parent);
    if (!target || !target->isInScene())
        return;
    std::vector<BaseNode *> moved;
    moved.reserve(nodes.size());
    const int depth = target->depth() + 1; // the moved nodes' new depth
    for (INode *node : nodes) {
        BaseNode *own = ownNode(node);
        // A node cannot go below itself: that would cut its subtree out of the scene.
        if (own && own != m_root.get() && !own->m_marked && own->isInScene()
            && !target->isWithin(own)
            && (depth <= own->depth() || depth + own->height() <= MaximumTreeDepth)) {
            own->m_marked = true;
            moved.push_back(own);
        }
    }
    for (BaseNode *node : moved)
        node->m_marked = false;
    if (!moved.empty())
        apply(std::make_unique<MoveChange>(this, target, index, std::move(moved)));
}

INode *Document::CloneNode(INode *node, int)
{
    BaseNode *own = ownNode(node);
    if (!own || own == m_root.get() || !own->isInScene())
        return nullptr;
    return insertNode(own->m_parent, own->cloneTree());
}

void Document::SetAmbientIntensity(float intensity)
{
    if (std::isfinite(intensity) && intensity != m_ambient)
        apply(std::make_unique<ValueChange<Document, float>>(
            this, &Document::applyAmbient, m_ambient, intensity));
}

void Document::SetLightingMode(int mode)
{
    if (mode != m_lightingMode)
        apply(std::make_unique<ValueChange<Document, int>>(
            this, &Document::applyLightingMode, m_lightingMode, mode));
}

void Document::BeginUndoGroup()
{
    m_history.beginGroup();
}

void Document::EndUndoGroup()
{
    m_history.endGroup();
}

void Document::CancelUndoGroup()
{
    m_history.cancelGroup();
    emit changed();
}

bool Document::undo()
{
    const bool done = m_history.undo();
    if (done)
        emit changed();
    return done;
}

bool Document::redo()
{
    const bool done = m_history.redo();
    if (done)
        emit changed();
    return done;
}

void Document::apply(std::unique_ptr<Change> change)
{
    m_history.apply(std::move(change));
    emit changed();
}

BaseNode *Document::insertNode(BaseNode *parent, std::unique_ptr<BaseNode> node)
{
    BaseNode *raw = node.release();
    apply(std::make_unique<InsertChange>(this, parent, raw));
    return raw;
}

std::vector<Document::Placement> Document::detach(const std::vector<BaseNode *> &nodes)
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

void Document::reattach(const std::vector<Placement> &placements)
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

void Document::insertChildren(BaseNode *parent, int index, const std::vector<BaseNode *> &nodes)
{
    std::vector<INode *> &children = parent->m_children;
    if (index < 0 || index > int(children.size()))
        index = int(children.size());
    children.insert(children.begin() + index, nodes.begin(), nodes.end());
    for (BaseNode *node : nodes)
        node->m_parent = parent;
}

} // namespace vantrel::host
