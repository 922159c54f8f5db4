// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/types.h"

#include <QMatrix4x4>

namespace vantrel::render {

// The host's matrices act on row vectors (p * M) and are stored row by row; GLSL's act on column
// vectors (M * p). QMatrix4x4 reads row-major values, so it holds M, and GLSL needs M transposed.
// Products keep their meaning: toGl(B) * toGl(A) is toGl(A * B), A applied first.
inline QMatrix4x4 toGl(const Matrix &m)
{
    return QMatrix4x4(m.m).transposed();
}

} // namespace vantrel::render
