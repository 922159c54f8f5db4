// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/core/document/document.h"
#include "hostapp/desktop/desktopexport.h"

#include <QAbstractItemModel>
#include <QIcon>
#include <QPointer>

#include <memory>
#include <unordered_map>
#include <vector>

class INode;
class QMimeData;

namespace vantrel::host {

class BaseNode;

// The document's scene tree as an item model, one column ("Scene"): the root's children are the
// top-level rows. Names, kind icons, tool tips and the visibility flag as a check box, which the
// user may toggle (one undo step, "Show" or "Hide"). Names may be edited (one step, "Rename"; an
// empty name is refused).
//
// The document changes first and tells afterwards (Document::changed()), and by then removed
// nodes may already be gone for good (a cancelled tool group deletes its nodes). So the model
// answers every query from its own copy of the part of the tree a view has asked about (a
// "mirror" per parent: the child pointers, names, visibility flags), never by reading a node
// that might no longer exist, and an index's internal pointer is always one of its mirrors.
//
// The copy is brought up to date synchronously on every change: the child lists of the mirrored
// parents are compared in bulk (memcmp over the pointer arrays) and a contiguous insertion or
// removal becomes one row signal, anything else one layout change of that parent that maps
// persistent indexes (expanded items, the selection) to the same nodes. Names and visibility are
// compared on the first change of an event-loop turn; the rest of a burst of changes (a tool
// cloning 27 000 copies, one change each) is compared once, when the event loop runs again.
// Only parents a view has asked about are mirrored, so a collapsed group of thousands costs
// nothing.
class VANTREL_DESKTOP_EXPORT SceneTreeModel final : public QAbstractItemModel
{
    Q_OBJECT

public:
    explicit SceneTreeModel(QObject *parent = nullptr);
    ~SceneTreeModel() override;

    // Null shows an empty tree. The model follows the document until it is replaced or destroyed.
    void setDocument(Document *document);
    Document *document() const { return m_document; }

    // The node of a row, or null for an invalid index or one from before the last change.
    BaseNode *nodeAt(const QModelIndex &index) const;
    // The row of a node of this document's scene, or an invalid index.
    QModelIndex indexOf(const BaseNode *node) const;
    // While the model updates itself inside a document change (views use it to tell their own
    // reactions to the update from a user's action).
    bool isUpdating() const { return m_updating; }

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    bool hasChildren(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant
    headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    // Dragging rows moves their nodes: between siblings ("Reorder"), or into another group or to
    // the top level ("Move"), each keeping its place in the world, as one undo step. A node
    // cannot go into itself or below itself, and only groups take nodes dropped onto them.
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    bool canDropMimeData(const QMimeData *data,
                         Qt::DropAction action,
                         int row,
                         int column,
                         const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data,
                      Qt::DropAction action,
                      int row,
                      int column,
                      const QModelIndex &parent) override;
    Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
    Qt::DropActions supportedDragActions() const override { return Qt::MoveAction; }

private:
    // What a row shows, copied from its node when the row appears and when the node's data change.
    struct Row
    {
        QString name;
        int type = 0;
        bool visible = true;
        bool hasChildren = false;
    };
    // The copy of one parent's children. `children` has the same layout as the node's own list,
    // so that the two compare with one memcmp.
    struct Mirror
    {
        BaseNode *node = nullptr;
        Mirror *parent = nullptr;
        int row = -1; // of node among its parent's children
        bool dead = false;
        std::vector<INode *> children;
        std::vector<Row> rows;
        std::vector<Mirror *> mirroredChildren;
        std::unordered_map<const INode *, int> rowOf; // built on demand for big parents
        bool rowOfValid = false;
    };

    // The nodes a drag carries that are still in the scene, and the parent it drops them into;
    // empty when the drop cannot be made.
    std::vector<INode *> droppedNodes(const QMimeData *data,
                                      int row,
                                      const QModelIndex &parent,
                                      BaseNode **target) const;

    void onDocumentChanged();
    void onDocumentDestroyed();
    void clearMirrors();

    Mirror *mirrorOf(const QModelIndex &index) const; // the mirror of the index's own node
    Mirror *childMirror(Mirror *parent, int row) const;
    Mirror *createMirror(Mirror *parent, int row) const;
    QModelIndex indexOfMirror(const Mirror *mirror) const;
    int rowIn(Mirror *parent, const INode *node) const;
    static Row rowFor(const INode *node);

    void updateStructure(Mirror *mirror);
    void insertMirrorRows(Mirror *mirror, int first, int count);
    void removeMirrorRows(Mirror *mirror, int first, int count);
    void relayout(Mirror *mirror, int prefix, int suffix);
    void dropMirror(Mirror *mirror);
    void updateData(Mirror *mirror);
    void updateAllData();

    QPointer<Document> m_document;
    mutable std::unique_ptr<Mirror> m_root;
    mutable std::unordered_map<const INode *, std::unique_ptr<Mirror>> m_mirrors;
    // Mirrors of nodes that left the tree, kept until the event loop runs again: a view may still
    // hold a plain index to one until it lays itself out anew.
    std::vector<std::unique_ptr<Mirror>> m_dropped;
    bool m_updating = false;
    bool m_turnStarted = false; // a change already happened in this event-loop turn
    bool m_dataStale = false;
    QIcon m_shapeIcon;
    QIcon m_lightIcon;
    QIcon m_groupIcon;
};

} // namespace vantrel::host
