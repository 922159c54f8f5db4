// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/types.h"

#include <vector>

// One geometry piece of a mesh: a triangle list over vertex records.
class IMeshPart
{
public:
    IMeshPart(const IMeshPart &) = delete;
    IMeshPart &operator=(const IMeshPart &) = delete;

    // Contiguous records of 15 floats; floats 0-2 are the position in the node's local space.
    // May be read from worker threads while the GUI thread waits and nothing changes the scene.
    virtual const std::vector<VertexRecord> &GetVertices() const = 0;

protected:
    IMeshPart() = default;
    virtual ~IMeshPart() = default;
};
