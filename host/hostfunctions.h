// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// The free functions of the host's shared library. All run on the GUI thread, except that the
// read-only ones may run on worker threads while the GUI thread waits and nothing changes.

#include "host/hostexport.h"
#include "host/types.h"

#include <vector>

class IDocumentContext;
class INode;
class QScriptEngine;

// The node's index among its parent's children; -1 for a node without a parent.
VANTREL_HOST_EXPORT int GetNodePos(const INode *node);

// The node's box in scene coordinates: exactly the box of the world-space vertices of every mesh
// in its subtree (hidden ones included: the box is geometry, not what is drawn). Empty (min above
// max) for a subtree without vertices.
VANTREL_HOST_EXPORT TBBox<float> ComputeNodeBBox(const INode *node);

// A list holding just the node.
VANTREL_HOST_EXPORT std::vector<INode *> MakeListOfNodes(INode *node);

// The nodes, each followed by everything below it in pre-order. A node that is already in the
// list (listed twice, or below another listed node) is not repeated.
VANTREL_HOST_EXPORT std::vector<INode *> CollectAllChildren(const std::vector<INode *> &nodes);

// Writes the node's world matrix (its local matrix times its parent's global matrix, up to the
// root). A null node gives the identity.
VANTREL_HOST_EXPORT void GetNodeGlobalMatrix(Matrix &result, const INode *node);

// Grows the box by the vertices of the node's subtree. The matrix is the frame the node's parent
// stands in: the node's own local matrix applies first, then the matrix. With the identity the
// subtree is measured in the node's parent's space.
VANTREL_HOST_EXPORT void
UpdateBBoxRecursive(TBBox<float> &box, const INode *node, const Matrix &parentFrame);

// Writes the view matrix of a camera whose world matrix (see ICamera) is given. It maps a world
// point to camera space: x towards the image's right, y towards its top, z the depth in front of
// the camera.
VANTREL_HOST_EXPORT void CalculateViewMatrix(Matrix &view, const Matrix &cameraGlobal);

// Writes a perspective projection for camera-space points (see CalculateViewMatrix).
// fieldOfView is the frame's vertical field in degrees, frameAspect the frame's width over
// height, viewportAspect that of the surface it is drawn on: the frame is fitted inside the
// viewport (a wider viewport shows more at the sides, a narrower one more above and below).
// Elements 0 and 5 are the horizontal and vertical scales, so that after the division by w every
// point inside the frame has x and y in -1..1; z maps nearPlane..farPlane to -1..1.
VANTREL_HOST_EXPORT void CalculateProjectionMatrix(Matrix &projection,
                                                   float fieldOfView,
                                                   float frameAspect,
                                                   float viewportAspect,
                                                   float nearPlane,
                                                   float farPlane);

// The document context whose script engine this is; null for an engine that belongs to no
// document.
VANTREL_HOST_EXPORT IDocumentContext *documentContextFromScriptEngine(QScriptEngine *engine);
