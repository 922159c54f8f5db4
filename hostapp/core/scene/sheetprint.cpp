// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/sheetprint.h"

#include "geometry/geometry.h"
#include "hostapp/core/scene/vertexframes.h"

#include <QtGlobal>

#include <array>
#include <cmath>

namespace vantrel::host {

QRectF SheetPrint::region(const QString &face) const
{
    const ArtworkSheet::Face *found = face.isEmpty() ? nullptr : m_sheet.face(face);
    // A generator naming a face its own sheet lacks is a programming error, not user input.
    Q_ASSERT(face.isEmpty() || found);
    if (!found)
        return {0., 0., 1., 1.};
    const qreal width = m_sheet.width(), height = m_sheet.height();
    const QRectF &r = found->region;
    return {r.x() / width, r.y() / height, r.width() / width, r.height() / height};
}

void SheetPrint::map(float &u, float &v) const
{
    if (m_plain) {
        u = float(m_region.center().x());
        v = float(m_region.center().y());
        return;
    }
    // Planar mappings divide by the extent and can land a rounding step outside 0..1.
    u = float(m_region.x() + qBound(0.f, u, 1.f) * m_region.width());
    v = float(m_region.y() + qBound(0.f, v, 1.f) * m_region.height());
}

void projectOntoRegion(std::vector<VertexRecord> &vertices,
                       const std::vector<quint32> &indices,
                       std::size_t first,
                       const QRectF &region,
                       const Vector3 &origin,
                       const Vector3 &uAxis,
                       const Vector3 &vAxis,
                       float depth)
{
    const float uu = DotProduct(uAxis, uAxis), vv = DotProduct(vAxis, vAxis);
    const Vector3 outward = NormaliseVector(CrossProduct(vAxis, uAxis), Vector3(0, 0, 1));
    // Pieces of one face meet the plane to rounding; a tenth of a micrometre per metre of face.
    const float tolerance = 1e-5f * std::sqrt(uu + vv) + 1e-5f;
    const auto place = [&](const Vector3 &p) {
        const Vector3 d = SubtractVectors(p, origin);
        return std::array<float, 3>{
            DotProduct(d, uAxis) / uu, DotProduct(d, vAxis) / vv, DotProduct(d, outward)};
    };
    const auto onFace = [&](const std::array<float, 3> &s) {
        const float slack = 1e-4f;
        return s[2] <= tolerance && s[2] >= -depth - tolerance && s[0] >= -slack
               && s[0] <= 1.f + slack && s[1] >= -slack && s[1] <= 1.f + slack;
    };
    for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
        if (indices[i] < first || indices[i + 1] < first || indices[i + 2] < first)
            continue;
        Vector3 corner[3];
        std::array<float, 3> at[3];
        bool inside = true;
        for (int k = 0; k < 3; ++k) {
            corner[k] = vertexVector(vertices[indices[i + std::size_t(k)]].position);
            at[k] = place(corner[k]);
            inside = inside && onFace(at[k]);
        }
        const Vector3 normal = NormaliseVector(CrossProduct(SubtractVectors(corner[1], corner[0]),
                                                            SubtractVectors(corner[2], corner[0])),
                                               Vector3(0, 0, 0));
        if (!inside || DotProduct(normal, outward) <= 0.2f)
            continue;
        for (int k = 0; k < 3; ++k) {
            VertexRecord &v = vertices[indices[i + std::size_t(k)]];
            v.texCoord[0] = float(region.x() + qBound(0.f, at[k][0], 1.f) * region.width());
            v.texCoord[1] = float(region.y() + qBound(0.f, at[k][1], 1.f) * region.height());
        }
    }
}

} // namespace vantrel::host
