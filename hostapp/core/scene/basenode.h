// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "host/inode.h"

#include <QByteArray>

#include <memory>

namespace vantrel::host {

class ChangeRecorder;
class Document;
class MeshNode;
class ShapeGenerator;

// What every node of the stand-in host has: a name, a visibility flag, a place in the tree and a
// local matrix (the identity for the root). A node owns its children; a node taken out of the
// scene (deleted, or its creation undone) is owned by the undo step that took it out.
//
// The INode setters record their change in the document's undo history. The apply* setters
// change the value without recording it; the undo history and the scene loader use them.
class VANTREL_HOST_EXPORT BaseNode : public INode
{
    Q_OBJECT

public:
    ~BaseNode() override;

    int GetNodeType() const override { return m_type; }
    const QString &GetName() const override { return m_name; }
    const std::vector<INode *> &GetChildren() const override { return m_children; }
    const Matrix &GetLocalMatrix() const override { return m_local; }
    INode *GetParent() const override { return m_parent; }
    bool IsVisible() const override { return m_visible; }
    void SetVisible(bool visible) override;
    void SetName(const QString &name) override;
    INode *CreateChildGroup(const QString &name) override;
    INode *CreateChildLight(const QString &name) override;

    // A new mesh node built by the generator of that identifier (default parameters), appended
    // to this node's children; null for an identifier the host does not know.
    MeshNode *createChildShape(const QByteArray &generatorId, const QString &name);
    MeshNode *createChildMesh(std::unique_ptr<ShapeGenerator> generator, const QString &name);

    Document *document() const { return m_document; }
    BaseNode *parentNode() const { return m_parent; }
    BaseNode *childNode(std::size_t i) const { return static_cast<BaseNode *>(m_children[i]); }
    // Whether the node hangs below its document's root (removed nodes do not).
    bool isInScene() const;
    // Whether this node is other or lies below it.
    bool isWithin(const BaseNode *other) const;
    // Levels above the node (0 for a node without a parent), and below it (0 for a leaf).
    int depth() const;
    int height() const;

    // A deep copy of the subtree, not yet in any tree and not recorded. Mesh nodes share their
    // mesh data with the copy.
    std::unique_ptr<BaseNode> cloneTree() const;

    void applyName(QString name) { m_name = std::move(name); }
    void applyVisible(bool visible) { m_visible = visible; }

protected:
    BaseNode(Document *document, int type, QString name);
    // A copy of this node alone (no children); the subclasses copy their own state.
    virtual std::unique_ptr<BaseNode> cloneNode() const = 0;
    void copyBaseState(BaseNode &copy) const;
    // Where the node's setters record their changes: its document's undo history.
    ChangeRecorder &recorder() const;

    Matrix m_local;

private:
    friend class Document;
    friend class TreeSurgery;

    Document *m_document;
    int m_type;
    QString m_name;
    bool m_visible = true;
    BaseNode *m_parent = nullptr;
    std::vector<INode *> m_children; // owned; every entry is a BaseNode
    bool m_marked = false;           // scratch flag of the document's batch operations
};

// The root of a document's scene tree: kind 0, no transformations.
class VANTREL_HOST_EXPORT RootNode final : public BaseNode
{
    Q_OBJECT

public:
    explicit RootNode(Document *document);

protected:
    std::unique_ptr<BaseNode> cloneNode() const override;
};

} // namespace vantrel::host
