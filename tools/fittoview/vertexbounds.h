// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/types.h"

#include <atomic>
#include <vector>

class INode;

// The measuring behind Fit To View. The world positions of every visible mesh vertex are
// gathered once per fit; each pass then projects all of them through the camera, cut into blocks
// of 50 000 vertices: one block runs on the calling thread, more run on Qt's global thread pool.
// A fit makes about a hundred passes, so the per-vertex work is written in fixed-width lanes that
// the compiler turns into vector instructions: one 4-vector transform, one reciprocal and two
// multiplies per vertex, nothing allocated per vertex.

constexpr int VerticesPerBlock = 50000;

// One work item of a pass. It owns nothing: it points into the vertex list and at what the
// running pass owns.
struct sBlockOfVertices
{
    const Vector3 *begin;
    const Vector3 *end;
    const Matrix *matrix;         // the pass's view-projection matrix, shared by all blocks
    std::atomic<bool> *allInside; // the containment pass's shared flag; several blocks may clear it
    float minX, minY, maxX, maxY; // the bounds pass's result for this block
};

// Projected bounds in normalised device coordinates (after the division by w).
struct ProjectedBounds
{
    float minX, minY, maxX, maxY;
};

// Appends the world positions of the node's visible mesh vertices, and of its subtree's, in
// pre-order. Visibility is asked node by node: a visible mesh below a hidden node still counts.
void collectVertices(std::vector<Vector3> &out, INode *node, const Matrix &parentGlobal);

std::vector<sBlockOfVertices> makeBlocks(const std::vector<Vector3> &vertices,
                                         const Matrix *viewProjection);

// Without vertices: (FLT_MAX, FLT_MAX, -FLT_MAX, -FLT_MAX).
ProjectedBounds computeProjectedBounds(const std::vector<Vector3> &vertices,
                                       const Matrix &cameraGlobal,
                                       const Matrix &projection);

// Whether every vertex projects to x and y within -1..1 (edges included). Depth is not tested;
// a vertex behind the camera projects mirrored, one in the camera's plane to infinity or NaN
// (NaN counts as inside).
bool allVerticesInside(const std::vector<Vector3> &vertices,
                       const Matrix &cameraGlobal,
                       const Matrix &projection);

void accumulateBlockBounds(sBlockOfVertices &block);
void testBlockInside(const sBlockOfVertices &block);
