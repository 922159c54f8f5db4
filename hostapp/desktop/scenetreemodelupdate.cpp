// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// How the scene tree model follows its document: after every change it compares its mirrors
// with the live tree and turns the differences into row insertions, removals, layout changes
// and data changes. The item-model interface itself is in scenetreemodel.cpp.
#include "hostapp/desktop/scenetreemodel.h"

#include "hostapp/core/scene/basenode.h"

#include <algorithm>
#include <cstring>

namespace vantrel::host {

namespace {

// Pointer arrays compare a block at a time with memcmp, then element by element inside the
// block that differs: a group of 27 000 children compares in microseconds.
constexpr std::size_t s_block = 256;

std::size_t commonPrefix(const INode *const *a, const INode *const *b, std::size_t n)
{
    std::size_t i = 0;
    while (i + s_block <= n && std::memcmp(a + i, b + i, s_block * sizeof(*a)) == 0)
        i += s_block;
    while (i < n && a[i] == b[i])
        ++i;
    return i;
}

// Of the last `limit` entries of a and b.
std::size_t commonSuffix(const INode *const *aEnd, const INode *const *bEnd, std::size_t limit)
{
    std::size_t i = 0;
    while (i + s_block <= limit
           && std::memcmp(aEnd - i - s_block, bEnd - i - s_block, s_block * sizeof(*aEnd)) == 0)
        i += s_block;
    while (i < limit && aEnd[-1 - std::ptrdiff_t(i)] == bEnd[-1 - std::ptrdiff_t(i)])
        ++i;
    return i;
}

bool sameChildren(const std::vector<INode *> &a, const std::vector<INode *> &b)
{
    return a.size() == b.size()
           && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(INode *)) == 0);
}

// Above this many mirrored rows, the names and flags of a burst of changes are compared once
// per event-loop turn instead of after every change.
constexpr std::size_t s_immediateDataRows = 4096;

} // namespace

void SceneTreeModel::onDocumentChanged()
{
    if (!m_root)
        return;
    m_updating = true;
    updateStructure(m_root.get());
    m_updating = false;

    std::size_t mirroredRows = m_root->rows.size();
    for (const auto &entry : m_mirrors)
        mirroredRows += entry.second->rows.size();
    if (!m_turnStarted || mirroredRows <= s_immediateDataRows) {
        updateAllData();
    } else {
        m_dataStale = true;
    }
    if (!m_turnStarted) {
        m_turnStarted = true;
        QMetaObject::invokeMethod(
            this,
            [this] {
                m_turnStarted = false;
                m_dropped.clear(); // views have laid themselves out anew by now
                if (m_dataStale && m_root)
                    updateAllData();
            },
            Qt::QueuedConnection);
    }
}

void SceneTreeModel::updateStructure(Mirror *mirror)
{
    // The mirror's node is in the tree: it was reached from the root through the tree itself.
    const std::vector<INode *> &live = mirror->node->GetChildren();
    std::vector<INode *> &old = mirror->children;
    if (!sameChildren(old, live)) {
        const std::size_t oldCount = old.size();
        const std::size_t newCount = live.size();
        const std::size_t common = std::min(oldCount, newCount);
        const std::size_t prefix = commonPrefix(old.data(), live.data(), common);
        const std::size_t suffix
            = commonSuffix(old.data() + oldCount, live.data() + newCount, common - prefix);
        if (prefix + suffix == oldCount)
            insertMirrorRows(mirror, int(prefix), int(newCount - oldCount));
        else if (prefix + suffix == newCount)
            removeMirrorRows(mirror, int(prefix), int(oldCount - newCount));
        else
            relayout(mirror, int(prefix), int(suffix));
    }
    // A child's update changes only its own list of mirrored children, never this one.
    for (Mirror *child : mirror->mirroredChildren)
        updateStructure(child);
}

void SceneTreeModel::insertMirrorRows(Mirror *mirror, int first, int count)
{
    const std::vector<INode *> &live = mirror->node->GetChildren();
    beginInsertRows(indexOfMirror(mirror), first, first + count - 1);
    mirror->children.insert(
        mirror->children.begin() + first, live.begin() + first, live.begin() + first + count);
    mirror->rows.insert(mirror->rows.begin() + first, std::size_t(count), Row());
    for (int i = first; i < first + count; ++i)
        mirror->rows[std::size_t(i)] = rowFor(live[std::size_t(i)]);
    for (Mirror *child : mirror->mirroredChildren) {
        if (child->row >= first)
            child->row += count;
    }
    mirror->rowOfValid = false;
    endInsertRows();
}

void SceneTreeModel::removeMirrorRows(Mirror *mirror, int first, int count)
{
    const int last = first + count - 1;
    beginRemoveRows(indexOfMirror(mirror), first, last);
    mirror->children.erase(mirror->children.begin() + first,
                           mirror->children.begin() + first + count);
    mirror->rows.erase(mirror->rows.begin() + first, mirror->rows.begin() + first + count);
    std::vector<Mirror *> kept;
    for (Mirror *child : mirror->mirroredChildren) {
        if (child->row > last) {
            child->row -= count;
            kept.push_back(child);
        } else if (child->row >= first) {
            dropMirror(child);
        } else {
            kept.push_back(child);
        }
    }
    mirror->mirroredChildren.swap(kept);
    mirror->rowOfValid = false;
    endRemoveRows();
}

void SceneTreeModel::relayout(Mirror *mirror, int prefix, int suffix)
{
    // Rows were removed, added and reordered together (a batch removal of scattered rows, a
    // move within the parent, an undone group): one layout change that follows every node that
    // stays to its new row, so that the view keeps it expanded and selected.
    const QModelIndex parentIndex = indexOfMirror(mirror);
    QList<QPersistentModelIndex> parents;
    if (parentIndex.isValid())
        parents.append(parentIndex);
    emit layoutAboutToBeChanged(parents);

    const std::vector<INode *> old = std::move(mirror->children);
    std::vector<Row> oldRows = std::move(mirror->rows);
    mirror->children = mirror->node->GetChildren();
    const std::vector<INode *> &now = mirror->children;
    const int oldCount = int(old.size());
    const int newCount = int(now.size());
    std::unordered_map<const INode *, int> middle; // node -> new row, in the changed span
    for (int i = prefix; i < newCount - suffix; ++i)
        middle.emplace(now[std::size_t(i)], i);
    auto newRow = [&](int oldRow) {
        if (oldRow < prefix)
            return oldRow;
        if (oldRow >= oldCount - suffix)
            return oldRow + newCount - oldCount;
        const auto found = middle.find(old[std::size_t(oldRow)]);
        return found == middle.end() ? -1 : found->second;
    };

    mirror->rows.reserve(now.size());
    for (int i = 0; i < newCount; ++i) {
        if (i < prefix)
            mirror->rows.push_back(std::move(oldRows[std::size_t(i)]));
        else if (i >= newCount - suffix)
            mirror->rows.push_back(std::move(oldRows[std::size_t(i - newCount + oldCount)]));
        else
            mirror->rows.push_back(rowFor(now[std::size_t(i)]));
    }
    std::vector<Mirror *> kept;
    for (Mirror *child : mirror->mirroredChildren) {
        const int row = newRow(child->row);
        if (row < 0) {
            dropMirror(child);
        } else {
            child->row = row;
            kept.push_back(child);
        }
    }
    mirror->mirroredChildren.swap(kept);
    mirror->rowOfValid = false;

    const QModelIndexList from = persistentIndexList();
    QModelIndexList to;
    to.reserve(from.size());
    for (const QModelIndex &index : from) {
        auto *owner = static_cast<Mirror *>(index.internalPointer());
        if (owner->dead) {
            to.append(QModelIndex());
        } else if (owner == mirror) {
            const int row = index.row() < oldCount ? newRow(index.row()) : -1;
            to.append(row < 0 ? QModelIndex() : createIndex(row, index.column(), mirror));
        } else {
            to.append(index);
        }
    }
    changePersistentIndexList(from, to);
    emit layoutChanged(parents);
}

void SceneTreeModel::dropMirror(Mirror *mirror)
{
    // The node left the tree and may already be deleted: only its address is used, as a key.
    mirror->dead = true;
    for (Mirror *child : mirror->mirroredChildren)
        dropMirror(child);
    const auto found = m_mirrors.find(mirror->node);
    if (found != m_mirrors.end() && found->second.get() == mirror) {
        m_dropped.push_back(std::move(found->second));
        m_mirrors.erase(found);
    }
}

void SceneTreeModel::updateAllData()
{
    m_dataStale = false;
    updateData(m_root.get());
}

void SceneTreeModel::updateData(Mirror *mirror)
{
    int first = -1;
    const int count = int(mirror->rows.size());
    for (int i = 0; i <= count; ++i) {
        bool changed = false;
        if (i < count) {
            const INode *node = mirror->children[std::size_t(i)];
            Row &row = mirror->rows[std::size_t(i)];
            const QString &name = node->GetName();
            // A new name is a new string: comparing the shared data first skips the characters.
            if (name.constData() != row.name.constData()) {
                changed = name != row.name;
                row.name = name;
            }
            const bool visible = node->IsVisible();
            const bool hasChildren = !node->GetChildren().empty();
            if (visible != row.visible || hasChildren != row.hasChildren) {
                row.visible = visible;
                row.hasChildren = hasChildren;
                changed = true;
            }
        }
        if (changed && first < 0) {
            first = i;
        } else if (!changed && first >= 0) {
            emit dataChanged(createIndex(first, 0, mirror), createIndex(i - 1, 0, mirror));
            first = -1;
        }
    }
    for (Mirror *child : mirror->mirroredChildren)
        updateData(child);
}

SceneTreeModel::Row SceneTreeModel::rowFor(const INode *node)
{
    Row row;
    row.name = node->GetName();
    row.type = node->GetNodeType();
    row.visible = node->IsVisible();
    row.hasChildren = !node->GetChildren().empty();
    return row;
}

} // namespace vantrel::host
