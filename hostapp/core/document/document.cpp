// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/document/document.h"

#include "hostapp/core/document/ingroupdeletion.h"
#include "hostapp/core/document/treechanges.h"
#include "hostapp/core/scene/basenode.h"

#include <cmath>

namespace vantrel::host {

namespace {

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
    takeOut(nodes, true);
}

void Document::removeNodes(const std::vector<INode *> &nodes)
{
    takeOut(nodes, false);
}

void Document::takeOut(const std::vector<INode *> &nodes, bool mayForget)
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
    // A preview that rebuilds its copies deletes what its own group created: those may go at
    // once, unless the selection still lists one of them.
    if (mayForget && selection.size() == m_selection.size() && forgetCreatedNodes(topmost))
        return;

    m_history.beginGroup();
    if (selection.size() != m_selection.size())
        apply(std::make_unique<SelectionChange>(
            this, &Document::applySelection, m_selection, selection));
    apply(std::unique_ptr<Change>(new RemoveChange(std::move(topmost))));
    m_history.endGroup();
}

bool Document::forgetCreatedNodes(const std::vector<BaseNode *> &topmost)
{
    const std::vector<std::unique_ptr<Change>> *changes = m_history.openGroupChanges();
    if (!changes)
        return false;
    std::vector<BaseNode *> deleted = topmost;
    for (std::size_t i = 0; i < deleted.size(); ++i) {
        BaseNode *node = deleted[i];
        node->m_marked = true;
        for (INode *child : node->m_children)
            deleted.push_back(static_cast<BaseNode *>(child));
    }
    // Every node a recorded change refers to is alive and one of this document's.
    const std::vector<std::size_t> positions
        = InGroupDeletion::plan(*changes, deleted.size(), [](INode *node) {
              return static_cast<BaseNode *>(node)->m_marked;
          });
    for (BaseNode *node : deleted)
        node->m_marked = false;
    if (positions.empty())
        return false;
    m_history.forget(positions);
    emit changed();
    return true;
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
        apply(std::unique_ptr<Change>(new MoveChange(target, index, std::move(moved))));
}

INode *Document::CloneNode(INode *node, int)
{
    BaseNode *own = ownNode(node);
    if (!own || own == m_root.get() || !own->isInScene())
        return nullptr;
    return addNode(own->m_parent, own->cloneTree());
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

BaseNode *Document::addNode(BaseNode *parent, std::unique_ptr<BaseNode> node)
{
    if (node && node->m_parent) {
        node.release(); // already in a tree, whose parent owns it: it stays where it is
        return nullptr;
    }
    // A node or a parent of another document would tie two documents' trees together.
    if (!parent || parent->document() != this || !node || node->document() != this)
        return nullptr;
    BaseNode *raw = node.release();
    apply(std::unique_ptr<Change>(new InsertChange(parent, raw)));
    return raw;
}

} // namespace vantrel::host
