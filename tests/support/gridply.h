// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// A large model file written by a test, for readings that last long enough to be watched.
#pragma once

#include <QString>

namespace vantrel::test {

// A flat grid of side × side vertices as a binary PLY, two triangles to a cell, written to path;
// false when it cannot be written. 1000 × 1000 is 38 MB and takes about a second to read,
// 1500 × 1500 86 MB.
bool writeGridPly(const QString &path, int side);

} // namespace vantrel::test
