// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "host/types.h"
#include "hostapp/core/scene/mesh.h"
#include "hostapp/core/scene/outline.h"
#include "hostapp/core/scene/sheetprint.h"

#include <QtGlobal>

#include <cstddef>
#include <vector>

namespace vantrel::host {

// Collects the triangles of a shape, part by part, and turns them into an immutable Mesh.
//
// All coordinates are in the node's local space: Z up, lengths in centimetres. Every add
// operation emits closed, outward-facing pieces: triangles run counter-clockwise seen from
// outside, each vertex carries its outward unit normal, and texture coordinates lie in 0..1,
// u running left to right and v from the top (0) to the bottom (1) of a face seen from outside.
// With an artwork sheet set, each face's coordinates are placed in the region of the sheet face
// it prints from (setSides), so the coordinates run 0..1 over the whole sheet.
// Tangents, bitangents and their handedness are derived from the texture coordinates in build(),
// so geometry moved by transformSince() gets tangents that match its final place.
//
// Pieces are not merged: two boxes that touch stay two closed shells. That keeps every piece
// watertight on its own, which is what renderers and the volume checks rely on.
class VANTREL_HOST_EXPORT MeshBuilder
{
public:
    // The outlines that addPrism and its kin extrude (outline.h).
    using OutlinePoint = host::OutlinePoint;
    using Outline = host::Outline;
    using CornerRadii = host::CornerRadii;

    // A position in the stream of added vertices, for transformSince().
    struct Mark
    {
        std::size_t part = 0;
        std::size_t vertex = 0;
    };

    // The sheet the shape's artwork is laid out on, and which of its faces each side of the
    // solids added from now on prints from.
    void setSheet(const ArtworkSheet &sheet) { m_print.setSheet(sheet); }
    void setSides(const SheetSides &sides) { m_print.setSides(sides); }

    // Prints the triangles added since the mark that lie in the plane through origin spanned by
    // uAxis and vAxis (centimetres, local space), or at most depth behind it, and face out of
    // it, from the named face by planar projection: origin lands on the region's top-left
    // corner, origin + uAxis on its top-right and origin + vAxis on its bottom-left. For a face
    // made of several pieces or curved (a rounded spine, the side of a stretcher frame) that
    // takes one print.
    void projectSince(const Mark &mark,
                      const QString &face,
                      const Vector3 &origin,
                      const Vector3 &uAxis,
                      const Vector3 &vAxis,
                      float depth = 0.f);

    // Geometry added from now on goes to a new part (a separately textured piece of the mesh).
    // Does nothing while the current part is still empty, so no empty parts are produced.
    void beginPart();

    // Where the next vertex will go.
    Mark mark() const;

    // Flat-shaded faces; the corners run counter-clockwise seen from outside. A quad is
    // p0 bottom-left, p1 bottom-right, p2 top-right, p3 top-left and must be planar. They print
    // from the front side's face.
    void addTriangle(const Vector3 &a, const Vector3 &b, const Vector3 &c);
    void addQuad(const Vector3 &p0, const Vector3 &p1, const Vector3 &p2, const Vector3 &p3);

    // An axis-aligned box. With partPerFace each face becomes its own part, in the order front
    // (-y), back (+y), left (-x), right (+x), top (+z), bottom (-z), so each panel of a printed
    // carton can carry its own artwork.
    void addBox(const Vector3 &min, const Vector3 &max, bool partPerFace = false);

    // A solid whose cross-section is a convex outline in the xz-plane, extruded along y from
    // yMin to yMax. Either winding is accepted. Side walls are shaded smoothly across gentle
    // bends of the outline (rounded corners, circles) and sharply across real corners.
    void addPrism(const Outline &outline, float yMin, float yMax);

    // Like addPrism, with a convex hole through it along y (a hang hole, a screen opening, the
    // centre hole of a disc). The hole must lie strictly inside the outline.
    void addPrismWithHole(const Outline &outline, const Outline &hole, float yMin, float yMax);

    // A cylinder whose axis runs along y through (centreX, centreZ); holeRadius > 0 makes it a
    // ring. segments is the number of sides of the polygon standing for the circle.
    void addCylinder(float centreX,
                     float centreZ,
                     float radius,
                     float holeRadius,
                     float yMin,
                     float yMax,
                     int segments);

    // A thin slab width x height x thickness (x, z, y), centred on x = 0 and y = 0 and standing
    // on z = 0, bent around a vertical axis so that its middle surface follows a circular arc
    // of the given total angle in degrees. 0 gives a flat slab; a positive angle brings the side
    // edges back towards +y, so the front (-y) face becomes convex. The angle is limited to one
    // full turn and to width / thickness radians, so that the inner face never folds over.
    void addCurvedSheet(float width, float height, float thickness, float bendDegrees);

    // Applies a rigid transform (rotation and translation, p' = p * matrix) to every vertex
    // added since the mark, in all parts. Used to swing a hinged cover about its spine.
    void transformSince(const Mark &mark, const Matrix &matrix);

    // The mesh of everything added so far. The builder is empty afterwards.
    MeshPtr build();

    // The rigid transform that turns points about the vertical line through (x, y) by the angle
    // in degrees; a positive angle swings +x towards -y, the way a front cover opens towards the
    // viewer.
    static Matrix hingeRotation(float x, float y, float degrees);

private:
    struct Part
    {
        std::vector<VertexRecord> vertices;
        std::vector<quint32> indices;
    };

    Part &currentPart();
    quint32 addVertex(const Vector3 &position, const Vector3 &normal, float u, float v);
    void addTriangleIndices(quint32 a, quint32 b, quint32 c);
    void addQuadVertices(const Vector3 (&positions)[4],
                         const Vector3 (&normals)[4],
                         const float (&texCoords)[4][2]);
    // addQuad printing from the face in use.
    void emitQuad(const Vector3 &p0, const Vector3 &p1, const Vector3 &p2, const Vector3 &p3);
    void addWall(const Outline &loop, float yMin, float yMax);
    // The face of a prism at y: a fan over outer, or the ring between outer and inner when
    // inner (paired point by point with outer) is not empty.
    void addCap(const Outline &outer, const Outline &inner, float y, bool facesBack);

    std::vector<Part> m_parts;
    SheetPrint m_print;
};

} // namespace vantrel::host
