// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/desktop/scenetreemodel.h"

#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/basenode.h"
#include "hostapp/core/scene/meshnode.h"

#include <QApplication>
#include <QStyle>

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

SceneTreeModel::SceneTreeModel(QObject *parent)
    : QAbstractItemModel(parent)
{
    if (qobject_cast<QApplication *>(QCoreApplication::instance())) {
        QStyle *style = QApplication::style();
        m_shapeIcon = style->standardIcon(QStyle::SP_FileIcon);
        m_lightIcon = style->standardIcon(QStyle::SP_DialogYesButton);
        m_groupIcon = style->standardIcon(QStyle::SP_DirIcon);
    }
}

SceneTreeModel::~SceneTreeModel() = default;

void SceneTreeModel::setDocument(Document *document)
{
    if (document == m_document)
        return;
    if (m_document)
        disconnect(m_document, nullptr, this, nullptr);
    beginResetModel();
    clearMirrors();
    m_document = document;
    if (document) {
        m_root = std::make_unique<Mirror>();
        m_root->node = document->root();
        m_root->children = m_root->node->GetChildren();
        m_root->rows.reserve(m_root->children.size());
        for (const INode *child : m_root->children)
            m_root->rows.push_back(rowFor(child));
        connect(document, &Document::changed, this, &SceneTreeModel::onDocumentChanged);
        connect(document, &QObject::destroyed, this, &SceneTreeModel::onDocumentDestroyed);
    }
    endResetModel();
}

void SceneTreeModel::onDocumentDestroyed()
{
    // The nodes are already gone; the mirrors only hold their addresses, which nothing reads.
    beginResetModel();
    clearMirrors();
    endResetModel();
}

void SceneTreeModel::clearMirrors()
{
    m_mirrors.clear();
    m_dropped.clear();
    m_root.reset();
    m_turnStarted = false;
    m_dataStale = false;
}

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
            insertRows(mirror, int(prefix), int(newCount - oldCount));
        else if (prefix + suffix == newCount)
            removeRows(mirror, int(prefix), int(oldCount - newCount));
        else
            relayout(mirror, int(prefix), int(suffix));
    }
    // A child's update changes only its own list of mirrored children, never this one.
    for (Mirror *child : mirror->mirroredChildren)
        updateStructure(child);
}

void SceneTreeModel::insertRows(Mirror *mirror, int first, int count)
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

void SceneTreeModel::removeRows(Mirror *mirror, int first, int count)
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

SceneTreeModel::Mirror *SceneTreeModel::childMirror(Mirror *parent, int row) const
{
    const auto found = m_mirrors.find(parent->children[std::size_t(row)]);
    if (found == m_mirrors.end())
        return nullptr;
    Mirror *mirror = found->second.get();
    // During an update a node may already sit in a new parent while its old one still lists it.
    return mirror->parent == parent && mirror->row == row ? mirror : nullptr;
}

SceneTreeModel::Mirror *SceneTreeModel::createMirror(Mirror *parent, int row) const
{
    auto mirror = std::make_unique<Mirror>();
    mirror->node = static_cast<BaseNode *>(parent->children[std::size_t(row)]);
    mirror->parent = parent;
    mirror->row = row;
    mirror->children = mirror->node->GetChildren();
    mirror->rows.reserve(mirror->children.size());
    for (const INode *child : mirror->children)
        mirror->rows.push_back(rowFor(child));
    Mirror *raw = mirror.get();
    parent->mirroredChildren.push_back(raw);
    m_mirrors[raw->node] = std::move(mirror);
    return raw;
}

SceneTreeModel::Mirror *SceneTreeModel::mirrorOf(const QModelIndex &index) const
{
    if (!index.isValid())
        return m_root.get();
    auto *parent = static_cast<Mirror *>(index.internalPointer());
    if (parent->dead || index.row() >= int(parent->rows.size()))
        return nullptr;
    if (Mirror *mirror = childMirror(parent, index.row()))
        return mirror;
    // Inside an update a row's node may be gone already: it gets no mirror, so shows no rows.
    return m_updating ? nullptr : createMirror(parent, index.row());
}

QModelIndex SceneTreeModel::indexOfMirror(const Mirror *mirror) const
{
    if (!mirror || mirror == m_root.get())
        return {};
    return createIndex(mirror->row, 0, mirror->parent);
}

int SceneTreeModel::rowIn(Mirror *parent, const INode *node) const
{
    const std::vector<INode *> &children = parent->children;
    if (children.size() <= 32) {
        const auto found = std::find(children.begin(), children.end(), node);
        return found == children.end() ? -1 : int(found - children.begin());
    }
    if (!parent->rowOfValid) {
        parent->rowOf.clear();
        parent->rowOf.reserve(children.size());
        for (std::size_t i = 0; i < children.size(); ++i)
            parent->rowOf.emplace(children[i], int(i));
        parent->rowOfValid = true;
    }
    const auto found = parent->rowOf.find(node);
    return found == parent->rowOf.end() ? -1 : found->second;
}

BaseNode *SceneTreeModel::nodeAt(const QModelIndex &index) const
{
    if (!index.isValid() || index.model() != this)
        return nullptr;
    auto *parent = static_cast<Mirror *>(index.internalPointer());
    if (parent->dead || index.row() >= int(parent->children.size()))
        return nullptr;
    return static_cast<BaseNode *>(parent->children[std::size_t(index.row())]);
}

QModelIndex SceneTreeModel::indexOf(const BaseNode *node) const
{
    if (!m_root || !node || node->document() != m_document || node == m_root->node
        || !node->isInScene())
        return {};
    std::vector<const BaseNode *> path; // from the node up to a child of the root
    for (const BaseNode *n = node; n != m_root->node; n = n->parentNode())
        path.push_back(n);
    Mirror *mirror = m_root.get();
    for (auto step = path.rbegin(); step != path.rend(); ++step) {
        const int row = rowIn(mirror, *step);
        if (row < 0)
            return {};
        if (*step == node)
            return createIndex(row, 0, mirror);
        Mirror *child = childMirror(mirror, row);
        if (!child && !m_updating)
            child = createMirror(mirror, row);
        if (!child)
            return {};
        mirror = child;
    }
    return {};
}

QModelIndex SceneTreeModel::index(int row, int column, const QModelIndex &parent) const
{
    if (row < 0 || column != 0)
        return {};
    Mirror *mirror = mirrorOf(parent);
    if (!mirror || row >= int(mirror->rows.size()))
        return {};
    return createIndex(row, column, mirror);
}

QModelIndex SceneTreeModel::parent(const QModelIndex &child) const
{
    if (!child.isValid())
        return {};
    return indexOfMirror(static_cast<const Mirror *>(child.internalPointer()));
}

int SceneTreeModel::rowCount(const QModelIndex &parent) const
{
    if (parent.column() > 0)
        return 0;
    const Mirror *mirror = mirrorOf(parent);
    return mirror ? int(mirror->rows.size()) : 0;
}

int SceneTreeModel::columnCount(const QModelIndex &) const
{
    return 1;
}

bool SceneTreeModel::hasChildren(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return m_root && !m_root->rows.empty();
    if (parent.column() > 0)
        return false;
    auto *owner = static_cast<Mirror *>(parent.internalPointer());
    if (owner->dead || parent.row() >= int(owner->rows.size()))
        return false;
    if (const Mirror *mirror = childMirror(owner, parent.row()))
        return !mirror->rows.empty();
    if (m_updating)
        return false; // the same answer as rowCount() gives inside an update
    // From the copy: a slot connected to the document before this model may let a view paint
    // before the model has heard of a change, when the node may already be gone.
    return owner->rows[std::size_t(parent.row())].hasChildren;
}

QVariant SceneTreeModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    auto *owner = static_cast<Mirror *>(index.internalPointer());
    if (index.row() >= int(owner->rows.size()))
        return {};
    const Row &row = owner->rows[std::size_t(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return row.name;
    case Qt::DecorationRole:
        if (row.type == INode::MeshNodeType)
            return m_shapeIcon;
        if (row.type == INode::LightNodeType)
            return m_lightIcon;
        return m_groupIcon;
    case Qt::ToolTipRole: {
        if (row.type == INode::LightNodeType)
            return tr("Light");
        if (row.type != INode::MeshNodeType)
            return tr("Group");
        // The generator identifier is read from the node, which exists outside an update.
        const auto *mesh
            = m_updating || owner->dead
                  ? nullptr
                  : qobject_cast<const MeshNode *>(owner->children[std::size_t(index.row())]);
        if (!mesh)
            return tr("Shape");
        return tr("Shape, generator %1").arg(QLatin1String(mesh->generator()->GetTypeId()));
    }
    case Qt::CheckStateRole:
        return row.visible ? Qt::Checked : Qt::Unchecked;
    default:
        return {};
    }
}

bool SceneTreeModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    BaseNode *node = role == Qt::CheckStateRole ? nodeAt(index) : nullptr;
    if (!node || !m_document)
        return false;
    const bool visible = value.toInt() == Qt::Checked;
    if (visible != node->IsVisible()) {
        m_document->history().setNextStepName(visible ? QStringLiteral("Show")
                                                      : QStringLiteral("Hide"));
        node->SetVisible(visible); // the document's change brings the row up to date
    }
    return true;
}

Qt::ItemFlags SceneTreeModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable;
}

QVariant SceneTreeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (section == 0 && orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return tr("Scene");
    return {};
}

} // namespace vantrel::host
