// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/types.h"

#include <QPointF>
#include <QSize>

namespace vantrel::render {
struct DrawList;
}

namespace vantrel::host {

class Document;
class MeshNode;

// The frontmost shape of the list that a ray meets, or null. The ray starts at origin (the
// camera's eye) and runs along direction (world space, any length); only hits in front of the
// origin count. Shapes are skipped by their world bounding box before their triangles are tried,
// so a scene of tens of thousands of shapes costs little more than a box test each. Triangles
// count from both sides, as the view draws them. The hit is at origin + *hitDistance * direction.
MeshNode *pickShape(const render::DrawList &list,
                    const Vector3 &origin,
                    const Vector3 &direction,
                    float *hitDistance = nullptr);

// The frontmost visible shape of the document at a position of a view of that size, or null:
// the ray through that pixel with the very view and projection the view draws with. *hit, when
// given, is set to the world point of the shape there.
MeshNode *pickAt(const Document &document,
                 const QSize &viewSize,
                 const QPointF &position,
                 Vector3 *hit = nullptr);

} // namespace vantrel::host
