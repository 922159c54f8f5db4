// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/putonthefloor/floorplacement.h"

#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "host/idocument.h"
#include "host/inode.h"
#include "host/itransformations.h"

namespace {

bool IsZeroMatrix(const Matrix &m)
{
    for (float e : m.m) {
        if (e != 0.f)
            return false;
    }
    return true;
}

} // namespace

void PlaceSelectionOnTheFloor(IDocument &document)
{
    const std::vector<INode *> &selection = document.GetSelection();
    if (selection.empty())
        return;

    TBBox<float> box; // starts empty: min +FLT_MAX, max -FLT_MAX
    for (INode *node : selection)
        MergeBoxes(box, ComputeNodeBBox(node));
    if (IsBoxEmpty(box))
        return;
    const float lift = box.min[2]; // negative when the selection is below the floor

    document.BeginUndoGroup();
    const std::vector<INode *> nodes = document.GetSelection();
    for (INode *node : nodes) {
        if (!node)
            continue;
        auto *transformations = qobject_cast<ITransformations *>(node);
        if (!transformations)
            continue;
        Matrix global;
        GetNodeGlobalMatrix(global, node);
        global[14] -= lift;
        // Each node is converted with its parent's matrix as it stands now, after the nodes
        // handled before it moved.
        Matrix parentGlobal;
        GetNodeGlobalMatrix(parentGlobal, node->GetParent());
        // The inverse of a matrix is never the zero matrix, so a zero result means the parent's
        // matrix was singular and InvertMatrix wrote nothing.
        Matrix inverse;
        for (float &e : inverse.m)
            e = 0.f;
        InvertMatrix(inverse, parentGlobal);
        if (IsZeroMatrix(inverse))
            continue;
        Matrix local;
        MultiplyMatrices(local, global, inverse);
        transformations->SetPosition(Vector3(local[12], local[13], local[14]), true);
    }
    document.EndUndoGroup();
}
