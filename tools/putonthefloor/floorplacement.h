// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

class IDocument;

// Moves every selected node straight up or down by the same distance, so that the lowest point
// of the whole selection lies on the floor (z = 0). Only positions change; the arrangement of the
// selected nodes among each other is kept.
//
// The selection's box is the union of ComputeNodeBBox over all selected nodes, including nodes
// that cannot move (they have no ITransformations): those count but stay where they are.
// An empty selection, or one without any vertices, changes nothing and opens no undo group;
// otherwise the move is one undo group, even when nothing actually moves.
//
// A node whose parent's global matrix cannot be inverted (a zero scale somewhere above it) has
// no local position that would put it at the lowered place; it is left where it is.
void PlaceSelectionOnTheFloor(IDocument &document);
