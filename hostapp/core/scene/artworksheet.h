// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"

#include <QPolygonF>
#include <QRectF>
#include <QString>
#include <QVector>

#include <vector>

namespace vantrel::host {

struct OutlinePoint; // outline.h, kept out of this header, which every generator user sees

// Where a shape's artwork lands: one image covers the whole sheet, and each face of the shape
// prints from its own region of it. Lengths are centimetres (the scene's units) with the origin
// at the sheet's top-left corner and y running down, as in the image. A shape's texture
// coordinates are made from this sheet (MeshBuilder::setSheet), so the dieline drawn from it and
// the print on the rendered shape cannot disagree.
//
// Regions never overlap. Surfaces with no print of their own (the inside of a cover, the thin
// edges of a board) share the small region named "plain", and all take the colour at its middle.
class VANTREL_HOST_EXPORT ArtworkSheet
{
public:
    struct Face
    {
        QString name;
        QRectF region;              // the part of the sheet the face prints from
        QVector<QPolygonF> outline; // closed loops; a second loop is a hole (a disc's centre)
    };

    // A rectangular face at (x, y) of the given size.
    void addRectangle(const QString &name, float x, float y, float width, float height);
    // A face whose outline is a shape's cross-section in the xz-plane (z up), scaled 1:1 into a
    // region of the outline's size at (x, y); mirrored for faces seen from +y, where x runs from
    // right to left. holes are cut out of it.
    void addOutline(const QString &name,
                    float x,
                    float y,
                    const std::vector<OutlinePoint> &outline,
                    bool mirrored = false,
                    const QVector<std::vector<OutlinePoint>> &holes = {});
    // The shared region of the surfaces with no print of their own, a centimetre square.
    void addPlain(float x, float y) { addRectangle(QStringLiteral("plain"), x, y, 1.f, 1.f); }
    // Moves every face added so far down by dy.
    void shiftDown(float dy);

    const QVector<Face> &faces() const { return m_faces; }
    // The face of that name, or null.
    const Face *face(const QString &name) const;
    // The sheet reaches from the origin to the right and bottom edges of its furthest faces.
    float width() const;
    float height() const;
    bool isEmpty() const { return m_faces.isEmpty(); }

private:
    QVector<Face> m_faces;
};

} // namespace vantrel::host
