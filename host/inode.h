// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/types.h"

#include <QObject>
#include <QString>

#include <vector>

// A node of a document's scene tree. Nodes belong to their document: the tools never delete
// one (they ask IDocument::DeleteNodes). Facets are reached with qobject_cast by identifier:
// ITransformations (every node but the root), ILightNode (lights), IMeshNode (meshes).
// Every change made through a node is recorded in its document's undo history.
class INode : public QObject
{
public:
    // Node kinds answered by GetNodeType.
    enum NodeType { RootNodeType = 0, MeshNodeType = 1, LightNodeType = 2, GroupNodeType = 3 };

    // Same order as the host's declaration: the vtable layout is part of the boundary.
    virtual int GetNodeType() const = 0;
    virtual const QString &GetName() const = 0;
    virtual const std::vector<INode *> &GetChildren() const = 0; // in scene order
    // Relative to the parent: global = local * parentGlobal.
    virtual const Matrix &GetLocalMatrix() const = 0;
    virtual INode *GetParent() const = 0; // null for the root and for removed nodes
    virtual bool IsVisible() const = 0;   // the node's own flag, not its ancestors'
    virtual void SetVisible(bool visible) = 0;
    virtual void SetName(const QString &name) = 0;
    // Create a new last child and return it; the document owns it.
    virtual INode *CreateChildGroup(const QString &name) = 0;
    virtual INode *CreateChildLight(const QString &name) = 0;

protected:
    explicit INode(QObject *parent = nullptr)
        : QObject(parent)
    {}
};
