// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// What Fit To View's passes over the vertex list share: lanes of four floats and the way work
// items are run.
#include "host/types.h"

#include <QtConcurrent>

#include <cstring>

namespace fittoview {

// Four lanes of floats (or comparison masks), as GCC and Clang lay out vector registers: the
// arithmetic below compiles to SSE instructions on x86-64 without any target-specific code.
using Float4 = float __attribute__((vector_size(16)));
using Int4 = int __attribute__((vector_size(16)));
static_assert(sizeof(Vector3) == 12, "the vertex list is packed x, y, z");

// Splits four packed vertices (48 bytes) into their x, y and z lanes.
inline void load4(const Vector3 *v, Float4 &x, Float4 &y, Float4 &z)
{
    Float4 a, b, c; // x0 y0 z0 x1 | y1 z1 x2 y2 | z2 x3 y3 z3
    std::memcpy(&a, reinterpret_cast<const char *>(v), sizeof a);
    std::memcpy(&b, reinterpret_cast<const char *>(v) + 16, sizeof b);
    std::memcpy(&c, reinterpret_cast<const char *>(v) + 32, sizeof c);
#if defined(__clang__)
    x = __builtin_shufflevector(a, b, 0, 3, 6, -1);  // x0 x1 x2 .
    x = __builtin_shufflevector(x, c, 0, 1, 2, 5);   // x0 x1 x2 x3
    y = __builtin_shufflevector(a, b, 1, 4, 7, -1);  // y0 y1 y2 .
    y = __builtin_shufflevector(y, c, 0, 1, 2, 6);   // y0 y1 y2 y3
    z = __builtin_shufflevector(a, b, 2, 5, -1, -1); // z0 z1 . .
    z = __builtin_shufflevector(z, c, 0, 1, 4, 7);   // z0 z1 z2 z3
#else
    x = __builtin_shuffle(a, b, Int4{0, 3, 6, 0}); // x0 x1 x2 .
    x = __builtin_shuffle(x, c, Int4{0, 1, 2, 5}); // x0 x1 x2 x3
    y = __builtin_shuffle(a, b, Int4{1, 4, 7, 0}); // y0 y1 y2 .
    y = __builtin_shuffle(y, c, Int4{0, 1, 2, 6}); // y0 y1 y2 y3
    z = __builtin_shuffle(a, b, Int4{2, 5, 0, 0}); // z0 z1 . .
    z = __builtin_shuffle(z, c, Int4{0, 1, 4, 7}); // z0 z1 z2 z3
#endif
}

// Runs the work items: inline when there is one, on the global thread pool otherwise.
template<typename Blocks, typename Function>
void runBlocks(Blocks &blocks, Function function)
{
    if (blocks.size() == 1)
        function(blocks.front());
    else if (blocks.size() > 1)
        QtConcurrent::blockingMap(blocks, function);
}

} // namespace fittoview
