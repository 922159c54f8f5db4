// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/core/models/modelimport.h"

#include <QString>

struct aiMesh;
struct aiScene;

namespace vantrel::host::meshsending {

// Smooth normals for a mesh whose file has none and whose triangles share their corners: each
// vertex gets the sum of its triangles' normals weighted by their areas (in one pass over the
// triangles, where the importer's own step sorts the vertices by position first). Stored in the
// mesh's own normal array, which the importer frees with the mesh.
void addNormals(aiMesh &mesh);

// The scene's triangle meshes as host vertex records and indices, checked first (finite
// coordinates, the vertex and triangle limits) and then handed to sink a piece at a time.
// Triangles that repeat a corner are dropped: they cover nothing. A mesh with texture
// coordinates gets tangent frames along them, which needs all of its records at once; any
// other mesh streams, with frames that only need the normal.
ModelImport::Result send(const aiScene &scene,
                         const ModelFile::Limits &limits,
                         ModelImport::Sink &sink,
                         QString *problem);

} // namespace vantrel::host::meshsending
