// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/types.h"

#include <cstddef>
#include <vector>

class INode;

// The world positions of the visible mesh vertices, laid out once over the tree: where each mesh
// part's vertices go in the vertex list (in the list's order, a node before its children), and the
// matrix that takes them there. A job is at most one block of one part.
struct GatherJob
{
    const VertexRecord *records;
    std::size_t count;
    Matrix global;
    std::size_t offset; // of the job's first vertex in the list
};

std::vector<GatherJob> planGathering(INode *node, const Matrix &parentGlobal, std::size_t &total);

// The job's world positions into out[0 .. count), as TransformPoint gives them.
void gatherJob(const GatherJob &job, Vector3 *out);
