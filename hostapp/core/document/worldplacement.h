// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "host/types.h"

#include <QString>

#include <vector>

class INode;

namespace vantrel::host {

class Document;
class SceneNode;

// Tree edits that leave every moved shape where it stands in the world: moving nodes under
// another parent, gathering them into a new group and dissolving a group. A node's place is kept
// by giving it the local position, rotation and scale that, under its new parent, make the same
// world matrix it had before.
//
// The operations record ordinary document changes; the caller wraps them in one undo group with
// the step's name. A world matrix that no local scale-then-rotation can express (a node under a
// parent scaled unevenly and then turned) keeps its position and the nearest rotation and scale.
class VANTREL_HOST_EXPORT WorldPlacement
{
public:
    // A local matrix split into the node's values: scale, then rotation about x, y and z
    // (degrees), then translation, as row vectors (local = S * R * T).
    struct Parts
    {
        Vector3 position;
        Vector3 rotation;
        Vector3 scale{1.f, 1.f, 1.f};
    };
    static Parts decompose(const Matrix &local);

    // The node's world matrix.
    static Matrix worldMatrix(const INode *node);
    // Gives the node the local values that put it at world under its current parent.
    static void placeAt(SceneNode *node, const Matrix &world);

    // Moves the nodes under parent at index (counted after they left their places, as
    // Document::MoveNodes does), each keeping its world matrix. Nodes the document refuses to
    // move (the parent itself or one of its ancestors) stay where they are.
    static void
    moveNodes(Document &document, INode *parent, int index, const std::vector<INode *> &nodes);

    // A new group named name in the first node's parent, where that node was, holding the nodes
    // (topmost ones only, in scene order), which keep their world places. The group stands on
    // the floor point below the centre of their box. Null when no node can be grouped.
    static INode *group(Document &document, const std::vector<INode *> &nodes, const QString &name);

    // Moves the group's children to the group's parent where the group was, keeping their world
    // places, and removes the group. Returns the children.
    static std::vector<INode *> ungroup(Document &document, INode *group);

    // The given nodes less those below another of them, in scene (pre-)order.
    static std::vector<INode *> topmost(const Document &document,
                                        const std::vector<INode *> &nodes);
};

} // namespace vantrel::host
