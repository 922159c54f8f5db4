// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/scene/artworksheet.h"
#include "hostapp/core/scene/mesh.h"

#include <QRectF>
#include <QString>
#include <QtGlobal>

#include <cstddef>
#include <vector>

namespace vantrel::host {

// Which face of an artwork sheet each side of the solids a MeshBuilder emits next prints from.
// The sides are those of an axis-aligned box: front (-y), back (+y), left (-x), right (+x),
// top (+z), bottom (-z). Prism caps print from front and back, their walls (and the edges of a
// curved sheet) from wall. An empty name prints from the whole sheet.
struct SheetSides
{
    QString front, back, left, right, top, bottom, wall;

    // Every side from the one face.
    static SheetSides all(const QString &face)
    {
        return {face, face, face, face, face, face, face};
    }
};

// Turns a face's own texture coordinates (0..1 across the face, v from its top) into coordinates
// over the whole sheet, inside the region of the face it prints from. Without a sheet, faces
// keep their own 0..1 coordinates.
class VANTREL_HOST_EXPORT SheetPrint
{
public:
    void setSheet(const ArtworkSheet &sheet) { m_sheet = sheet; }
    const ArtworkSheet &sheet() const { return m_sheet; }
    void setSides(const SheetSides &sides) { m_sides = sides; }
    const SheetSides &sides() const { return m_sides; }

    // Faces emitted from now on print from the named face.
    // Surfaces printing from "plain" all take the colour at its middle: they have no print of
    // their own to orient, and stretching them over the small square would only leave texture
    // directions below the floats' resolution on large shapes.
    void use(const QString &face)
    {
        m_region = region(face);
        m_plain = face == QLatin1String("plain");
    }
    // The region of the named face, as a fraction of the sheet (the whole sheet for an empty
    // name, or when there is no sheet).
    QRectF region(const QString &face) const;
    // A face's own coordinates placed in the region in use.
    void map(float &u, float &v) const;

private:
    ArtworkSheet m_sheet;
    SheetSides m_sides;
    QRectF m_region{0., 0., 1., 1.};
    bool m_plain = false;
};

// MeshBuilder::projectSince for one part: gives the triangles from vertex first on that lie
// within depth behind the plane through origin spanned by uAxis and vAxis, inside the
// parallelogram they span, and face out of it (along vAxis x uAxis), the planar projection into
// region (sheet fractions).
void projectOntoRegion(std::vector<VertexRecord> &vertices,
                       const std::vector<quint32> &indices,
                       std::size_t first,
                       const QRectF &region,
                       const Vector3 &origin,
                       const Vector3 &uAxis,
                       const Vector3 &vAxis,
                       float depth);

} // namespace vantrel::host
