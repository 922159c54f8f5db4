// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/types.h"

namespace vantrel::render {
struct DrawList;
}

namespace vantrel::host {

class MeshNode;

// The frontmost shape of the list that a ray meets, or null. The ray starts at origin (the
// camera's eye) and runs along direction (world space, any length); only hits in front of the
// origin count. Shapes are skipped by their world bounding box before their triangles are tried,
// so a scene of tens of thousands of shapes costs little more than a box test each. Triangles
// count from both sides, as the view draws them.
MeshNode *pickShape(const render::DrawList &list, const Vector3 &origin, const Vector3 &direction);

} // namespace vantrel::host
