// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/artworksheet.h"

#include "hostapp/core/scene/outline.h"

#include <algorithm>

namespace vantrel::host {

void ArtworkSheet::addRectangle(const QString &name, float x, float y, float width, float height)
{
    const QRectF region(x, y, width, height);
    Face face;
    face.name = name;
    face.region = region;
    face.outline.push_back(QPolygonF(region));
    m_faces.push_back(face);
}

void ArtworkSheet::addOutline(const QString &name,
                              float x,
                              float y,
                              const Outline &outline,
                              bool mirrored,
                              const QVector<Outline> &holes)
{
    const OutlineBounds bounds = outlineBounds(outline);
    const auto loop = [&](const Outline &points) {
        QPolygonF polygon;
        for (const OutlinePoint &p : points) {
            const float u = mirrored ? bounds.xMax - p.x : p.x - bounds.xMin;
            polygon << QPointF(x + u, y + (bounds.zMax - p.z));
        }
        polygon << polygon.first(); // closed
        return polygon;
    };
    Face face;
    face.name = name;
    face.region = QRectF(x, y, bounds.xMax - bounds.xMin, bounds.zMax - bounds.zMin);
    face.outline.push_back(loop(outline));
    for (const Outline &hole : holes)
        face.outline.push_back(loop(hole));
    m_faces.push_back(face);
}

void ArtworkSheet::shiftDown(float dy)
{
    for (Face &face : m_faces) {
        face.region.translate(0., dy);
        for (QPolygonF &loop : face.outline)
            loop.translate(0., dy);
    }
}

const ArtworkSheet::Face *ArtworkSheet::face(const QString &name) const
{
    for (const Face &f : m_faces) {
        if (f.name == name)
            return &f;
    }
    return nullptr;
}

float ArtworkSheet::width() const
{
    qreal right = 0.;
    for (const Face &f : m_faces)
        right = std::max(right, f.region.right());
    return float(right);
}

float ArtworkSheet::height() const
{
    qreal bottom = 0.;
    for (const Face &f : m_faces)
        bottom = std::max(bottom, f.region.bottom());
    return float(bottom);
}

} // namespace vantrel::host
