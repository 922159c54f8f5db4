// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/core/scene/mesh.h"

#include <QString>

// A square grid written as a binary little-endian PLY file: float x y z a vertex (and nx ny nz
// with normals), two triangles a cell as "list uchar int" faces. The surface is gently waved,
// not flat, so that a reader computing normals has real work and no two cells are alike.
struct GridFile
{
    QString path;
    QString name; // "grid-1M.ply", "grid-10M-normals.ply"
    long long vertices = 0, triangles = 0, bytes = 0;
};

// About `vertices` vertices (the nearest square), written into folder; stops the program if
// the file cannot be written.
GridFile writeGridPly(const QString &folder, long long vertices, bool normals);

// The same grid as a mesh built here, past any file: normals as in the file with normals, no
// texture coordinates.
vantrel::host::MeshPtr gridMesh(long long vertices);
