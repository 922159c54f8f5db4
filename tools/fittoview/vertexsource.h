// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tools/fittoview/gathering.h"

#include <cstddef>
#include <vector>

// Where the hull filter reads the world positions: a gathered vertex list, or the meshes' own
// records through their nodes' matrices, a block at a time. Read from the records, a fit needs no
// list of every vertex unless a question has to be answered over all of them: on large scenes
// that list is many megabytes of fresh memory, which costs more to clear than the filter's work.
class VertexSource
{
public:
    explicit VertexSource(const std::vector<Vector3> &list);
    VertexSource(std::vector<GatherJob> jobs, std::size_t total);

    std::size_t size() const { return m_total; }
    std::size_t pieceCount() const;
    // Piece i's world positions (count of them, the first at index first of the list). They are
    // in the list itself, or gathered into scratch.
    const Vector3 *piece(std::size_t i,
                         std::vector<Vector3> &scratch,
                         std::size_t &first,
                         std::size_t &count) const;
    // One vertex's world position, as the list holds it.
    Vector3 at(std::size_t index) const;
    // Every stride-th vertex's world position (those whose index is a multiple of stride), as
    // the list holds them.
    std::vector<Vector3> sample(std::size_t stride) const;

private:
    const std::vector<Vector3> *m_list = nullptr;
    std::vector<GatherJob> m_jobs;
    // Read from the records, a piece is a run of consecutive jobs of at most one block in all:
    // a scene of many small shapes is read in blocks, not shape by shape. Each entry is the
    // piece's first job; the last entry is the number of jobs.
    std::vector<std::size_t> m_pieceStarts;
    std::size_t m_total = 0;
};
