// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The scene tree model's item-model interface and its mirrors of the tree: which rows there are,
// what they show and how an index maps to a node. Following the document's changes is in
// scenetreemodelupdate.cpp.
#include "hostapp/desktop/scenetreemodel.h"

#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/basenode.h"
#include "hostapp/core/scene/meshnode.h"

#include <QApplication>
#include <QStyle>

#include <algorithm>

namespace vantrel::host {

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
    case Qt::EditRole:
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
    BaseNode *node = role == Qt::CheckStateRole || role == Qt::EditRole ? nodeAt(index) : nullptr;
    if (!node || !m_document)
        return false;
    if (role == Qt::EditRole) {
        // A row without a name could not be told apart or found again: the old name stays.
        const QString name = value.toString().trimmed();
        if (name.isEmpty())
            return false;
        if (name != node->GetName()) {
            m_document->history().setNextStepName(QStringLiteral("Rename"));
            node->SetName(name);
        }
        return true;
    }
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
    // The top level takes dropped rows too.
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemIsEditable
           | Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled;
}

QVariant SceneTreeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (section == 0 && orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return tr("Scene");
    return {};
}

} // namespace vantrel::host
