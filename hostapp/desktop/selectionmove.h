// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/types.h"

#include <QPointer>

#include <vector>

class ICamera;
class INode;
class QPainter;
class QSize;

namespace vantrel::host {

class Document;
class SceneNode;

// The nodes that moving the selection takes along, and where each of them started. Moving is
// done in world space: a node under a turned or scaled group goes where the pointer or the arrow
// key says in the scene, not along its parent's axes.
//
// Of a group and a node inside it that are both selected only the group is taken, or the node
// would move twice. Nodes without a place of their own (the root) stay.
class SelectionMove
{
public:
    explicit SelectionMove(const Document &document);

    bool isEmpty() const { return m_nodes.empty(); }

    // Places every node this far (world space) from where it started; an offset of zero puts
    // them back. A node that has left the scene meanwhile is skipped.
    void moveBy(const Vector3 &worldOffset);

    // The landing marks over a frame of the view: each moved node's world box outlined on the
    // floor, and a line down to it from the middle of the box's underside.
    void paintLanding(QPainter &painter, const ICamera &camera, const QSize &viewSize) const;

private:
    struct Entry
    {
        QPointer<SceneNode> node;
        Vector3 start;
        // World directions into the parent's frame: the inverse of the parent's world matrix.
        Matrix worldToParent;
    };
    std::vector<Entry> m_nodes;
};

// Whether the shape is selected as the view marks it: itself, or a group above it.
bool isShownSelected(const Document &document, const INode *node);

} // namespace vantrel::host
