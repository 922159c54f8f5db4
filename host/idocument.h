// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

class ICamera;
class INode;

// One document: the scene tree, its selection, the view camera, the lighting and the undo
// history. Every operation runs on the GUI thread. Nothing here shows any user interface.
//
// Undo: every change of the scene is recorded as a reversible step. BeginUndoGroup starts
// collecting changes; EndUndoGroup keeps them as one undo step (or, inside an outer group, hands
// them to that group); CancelUndoGroup reverts exactly the changes collected since the matching
// BeginUndoGroup. Groups nest. The camera is view state and is never recorded.
class IDocument
{
public:
    IDocument(const IDocument &) = delete;
    IDocument &operator=(const IDocument &) = delete;

    // Same order as the host's declaration: the vtable layout is part of the boundary.
    virtual INode *GetRootNode() const = 0; // parent of top-level nodes; never null
    virtual ICamera *GetCamera() const = 0; // never null
    // The selected nodes, in selection order. The reference is valid until the next change.
    virtual const std::vector<INode *> &GetSelection() const = 0;
    // mode: 0 adds the nodes to the selection, 1 removes them, 2 replaces the selection.
    virtual void SetSelection(const std::vector<INode *> &nodes, int mode) = 0;
    // Removes the nodes, with everything below them, from the scene (recorded for undo).
    virtual void DeleteNodes(const std::vector<INode *> &nodes) = 0;
    // Re-parents the nodes under parent, inserted at child position index in list order. An
    // index past the end (or negative) appends. The nodes keep their local transforms.
    virtual void MoveNodes(INode *parent, int index, const std::vector<INode *> &nodes) = 0;
    // Copies the node with everything below it and appends the copy to the node's parent.
    // The copy shares mesh data with the original until either changes. flag: 0 for a single
    // copy, 1 for one of a batch of copies; the document treats both alike.
    virtual INode *CloneNode(INode *node, int flag) = 0;
    virtual float GetAmbientIntensity() const = 0;
    virtual void SetAmbientIntensity(float intensity) = 0;
    // mode: 0 lights the scene with its own lights, 1 with the viewer's head light.
    virtual void SetLightingMode(int mode) = 0;
    virtual void BeginUndoGroup() = 0;
    virtual void EndUndoGroup() = 0;
    virtual void CancelUndoGroup() = 0;

protected:
    IDocument() = default;
    virtual ~IDocument() = default;
};
