// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/meshbuilder.h"

#include "geometry/geometry.h"
#include "hostapp/core/scene/vertexframes.h"

#include <QtGlobal>

#include <algorithm>
#include <cmath>

namespace vantrel::host {

namespace {

// Neighbouring wall faces whose normals differ by less than about 50 degrees share a smoothed
// normal: the facets of a rounded corner or a circle read as one curved surface, while the
// corners of a rectangle stay crisp.
constexpr float SmoothingCosine = 0.64f;

Vector3 normalized(const Vector3 &a, const Vector3 &fallback)
{
    return unitVertexVector(a, fallback);
}

} // namespace

void MeshBuilder::beginPart()
{
    if (m_parts.empty() || !m_parts.back().vertices.empty())
        m_parts.emplace_back();
}

MeshBuilder::Mark MeshBuilder::mark() const
{
    if (m_parts.empty())
        return {};
    return {m_parts.size() - 1, m_parts.back().vertices.size()};
}

MeshBuilder::Part &MeshBuilder::currentPart()
{
    if (m_parts.empty())
        m_parts.emplace_back();
    return m_parts.back();
}

quint32 MeshBuilder::addVertex(const Vector3 &position, const Vector3 &normal, float u, float v)
{
    Part &part = currentPart();
    VertexRecord record = {};
    setVertexVector(record.position, position);
    setVertexVector(record.normal, normal);
    m_print.map(u, v);
    record.texCoord[0] = u;
    record.texCoord[1] = v;
    part.vertices.push_back(record);
    return quint32(part.vertices.size() - 1);
}

void MeshBuilder::addTriangleIndices(quint32 a, quint32 b, quint32 c)
{
    std::vector<quint32> &indices = currentPart().indices;
    indices.push_back(a);
    indices.push_back(b);
    indices.push_back(c);
}

void MeshBuilder::addQuadVertices(const Vector3 (&positions)[4],
                                  const Vector3 (&normals)[4],
                                  const float (&texCoords)[4][2])
{
    quint32 index[4];
    for (int i = 0; i < 4; ++i)
        index[i] = addVertex(positions[i], normals[i], texCoords[i][0], texCoords[i][1]);
    addTriangleIndices(index[0], index[1], index[2]);
    addTriangleIndices(index[0], index[2], index[3]);
}

void MeshBuilder::addTriangle(const Vector3 &a, const Vector3 &b, const Vector3 &c)
{
    const Vector3 normal
        = normalized(CrossProduct(SubtractVectors(b, a), SubtractVectors(c, a)), Vector3(0, 0, 1));
    m_print.use(m_print.sides().front);
    const quint32 ia = addVertex(a, normal, 0.f, 1.f);
    const quint32 ib = addVertex(b, normal, 1.f, 1.f);
    const quint32 ic = addVertex(c, normal, 0.5f, 0.f);
    addTriangleIndices(ia, ib, ic);
}

void MeshBuilder::addQuad(const Vector3 &p0,
                          const Vector3 &p1,
                          const Vector3 &p2,
                          const Vector3 &p3)
{
    m_print.use(m_print.sides().front);
    emitQuad(p0, p1, p2, p3);
}

void MeshBuilder::emitQuad(const Vector3 &p0,
                           const Vector3 &p1,
                           const Vector3 &p2,
                           const Vector3 &p3)
{
    // The cross product of the diagonals is the quad's normal even when one edge is very short.
    const Vector3 normal = normalized(
        CrossProduct(SubtractVectors(p2, p0), SubtractVectors(p3, p1)), Vector3(0, 0, 1));
    const float texCoords[4][2] = {{0.f, 1.f}, {1.f, 1.f}, {1.f, 0.f}, {0.f, 0.f}};
    addQuadVertices({p0, p1, p2, p3}, {normal, normal, normal, normal}, texCoords);
}

void MeshBuilder::addBox(const Vector3 &min, const Vector3 &max, bool partPerFace)
{
    const float x0 = min.x, y0 = min.y, z0 = min.z;
    const float x1 = max.x, y1 = max.y, z1 = max.z;
    // Each face is listed as seen from outside with z (or, for top and bottom, -y) up.
    const Vector3 faces[6][4] = {
        {{x0, y0, z0}, {x1, y0, z0}, {x1, y0, z1}, {x0, y0, z1}}, // front
        {{x1, y1, z0}, {x0, y1, z0}, {x0, y1, z1}, {x1, y1, z1}}, // back
        {{x0, y1, z0}, {x0, y0, z0}, {x0, y0, z1}, {x0, y1, z1}}, // left
        {{x1, y0, z0}, {x1, y1, z0}, {x1, y1, z1}, {x1, y0, z1}}, // right
        {{x0, y0, z1}, {x1, y0, z1}, {x1, y1, z1}, {x0, y1, z1}}, // top
        {{x0, y1, z0}, {x1, y1, z0}, {x1, y0, z0}, {x0, y0, z0}}, // bottom
    };
    const SheetSides &sides = m_print.sides();
    const QString *prints[6]
        = {&sides.front, &sides.back, &sides.left, &sides.right, &sides.top, &sides.bottom};
    for (int i = 0; i < 6; ++i) {
        if (partPerFace)
            beginPart();
        m_print.use(*prints[i]);
        const auto &face = faces[i];
        emitQuad(face[0], face[1], face[2], face[3]);
    }
}

void MeshBuilder::addWall(const Outline &loop, float yMin, float yMax)
{
    // The loop runs so that the outside lies to the right of the direction of travel.
    const std::size_t n = loop.size();
    std::vector<Vector3> edgeNormals(n);
    std::vector<float> distance(n + 1, 0.f);
    for (std::size_t i = 0; i < n; ++i) {
        const OutlinePoint &a = loop[i];
        const OutlinePoint &b = loop[(i + 1) % n];
        const float dx = b.x - a.x, dz = b.z - a.z;
        edgeNormals[i] = normalized(Vector3(dz, 0.f, -dx), Vector3(0, 0, 1));
        distance[i + 1] = distance[i] + std::sqrt(dx * dx + dz * dz);
    }
    const float perimeter = distance[n];
    m_print.use(m_print.sides().wall);
    const auto joined = [&edgeNormals](std::size_t edge, std::size_t neighbour) {
        const Vector3 &own = edgeNormals[edge];
        const Vector3 &other = edgeNormals[neighbour];
        return DotProduct(own, other) > SmoothingCosine ? normalized(AddVectors(own, other), own)
                                                        : own;
    };
    for (std::size_t i = 0; i < n; ++i) {
        const OutlinePoint &a = loop[i];
        const OutlinePoint &b = loop[(i + 1) % n];
        const Vector3 startNormal = joined(i, (i + n - 1) % n);
        const Vector3 endNormal = joined(i, (i + 1) % n);
        const float uA = distance[i] / perimeter, uB = distance[i + 1] / perimeter;
        const float texCoords[4][2] = {{uA, 0.f}, {uA, 1.f}, {uB, 1.f}, {uB, 0.f}};
        addQuadVertices({{a.x, yMin, a.z}, {a.x, yMax, a.z}, {b.x, yMax, b.z}, {b.x, yMin, b.z}},
                        {startNormal, startNormal, endNormal, endNormal},
                        texCoords);
    }
}

void MeshBuilder::addCap(const Outline &outer, const Outline &inner, float y, bool facesBack)
{
    // Planar mapping over the outline's bounds; the back face is seen from +y, where x runs
    // from right to left, so its u is mirrored to keep the picture the right way round.
    const OutlineBounds box = outlineBounds(outer);
    const float width = std::max(box.xMax - box.xMin, 1e-20f);
    const float height = std::max(box.zMax - box.zMin, 1e-20f);
    const Vector3 normal = facesBack ? Vector3(0, 1, 0) : Vector3(0, -1, 0);
    m_print.use(facesBack ? m_print.sides().back : m_print.sides().front);
    const auto vertex = [&](const OutlinePoint &p) {
        const float u = facesBack ? (box.xMax - p.x) / width : (p.x - box.xMin) / width;
        return addVertex(Vector3(p.x, y, p.z), normal, u, (box.zMax - p.z) / height);
    };
    const auto triangle = [&](quint32 a, quint32 b, quint32 c) {
        if (facesBack)
            addTriangleIndices(a, c, b);
        else
            addTriangleIndices(a, b, c);
    };

    const quint32 n = quint32(outer.size());
    if (inner.empty()) {
        // A fan from the centroid covers any convex outline.
        const quint32 centre = vertex(outlineCentroid(outer));
        for (const OutlinePoint &p : outer)
            vertex(p);
        for (quint32 i = 0; i < n; ++i)
            triangle(centre, centre + 1 + i, centre + 1 + (i + 1) % n);
        return;
    }
    // A ring: the loops are paired point by point, so each step is a quad of two triangles.
    const quint32 outerFirst = vertex(outer[0]);
    for (quint32 i = 1; i < n; ++i)
        vertex(outer[i]);
    const quint32 innerFirst = outerFirst + n;
    for (const OutlinePoint &p : inner)
        vertex(p);
    for (quint32 i = 0; i < n; ++i) {
        const quint32 j = (i + 1) % n;
        triangle(innerFirst + i, outerFirst + i, outerFirst + j);
        triangle(innerFirst + i, outerFirst + j, innerFirst + j);
    }
}

void MeshBuilder::addPrism(const Outline &outline, float yMin, float yMax)
{
    const Outline loop = cleanOutline(outline);
    if (loop.empty() || !(yMax > yMin))
        return;
    addWall(loop, yMin, yMax);
    addCap(loop, {}, yMin, false);
    addCap(loop, {}, yMax, true);
}

void MeshBuilder::addPrismWithHole(const Outline &outline,
                                   const Outline &hole,
                                   float yMin,
                                   float yMax)
{
    const Outline outer = cleanOutline(outline);
    const Outline inner = cleanOutline(hole);
    if (outer.empty() || inner.empty() || !(yMax > yMin))
        return;

    // Paired point by point, the ring between the loops falls apart into quads.
    Outline outerLoop, innerLoop;
    pairAlongRays(outer, inner, &outerLoop, &innerLoop);

    addWall(outerLoop, yMin, yMax);
    // Walked backwards, the hole's outside (the empty hole) lies to the right.
    addWall(Outline(innerLoop.rbegin(), innerLoop.rend()), yMin, yMax);

    addCap(outerLoop, innerLoop, yMin, false);
    addCap(outerLoop, innerLoop, yMax, true);
}

void MeshBuilder::addCylinder(float centreX,
                              float centreZ,
                              float radius,
                              float holeRadius,
                              float yMin,
                              float yMax,
                              int segments)
{
    segments = std::max(segments, 3);
    const Outline outline = circleOutline(centreX, centreZ, radius, segments);
    if (holeRadius > DuplicateFraction * radius && holeRadius < radius)
        addPrismWithHole(
            outline, circleOutline(centreX, centreZ, holeRadius, segments), yMin, yMax);
    else
        addPrism(outline, yMin, yMax);
}

void MeshBuilder::addCurvedSheet(float width, float height, float thickness, float bendDegrees)
{
    if (!(width > 0.f && height > 0.f && thickness > 0.f))
        return;
    const float maxAngle = std::min(2 * float(Pi), width / thickness);
    const float angle = qBound(-maxAngle, bendDegrees * DegreesToRadians, maxAngle);
    // One facet per 3 degrees of arc keeps the silhouette smooth at any size.
    const int segments = std::max(1, int(std::ceil(std::abs(angle) * RadiansToDegrees / 3.f)));
    const bool flat = std::abs(angle) < 1e-6f;
    const float radius = flat ? 0.f : width / angle; // signed: the centre lies at (0, radius)
    const float half = 0.5f * thickness;

    // Along the middle surface, s runs from -width / 2 to width / 2; the front normal is the
    // arc's tangent turned a quarter clockwise, seen from above.
    std::vector<Vector3> front(std::size_t(segments) + 1), back(front.size()), normal(front.size());
    for (int i = 0; i <= segments; ++i) {
        const float s = width * (float(i) / float(segments) - 0.5f);
        float mx = s, my = 0.f, tx = 1.f, ty = 0.f;
        if (!flat) {
            const float phi = s / radius;
            mx = radius * std::sin(phi);
            my = radius * (1.f - std::cos(phi));
            tx = std::cos(phi);
            ty = std::sin(phi);
        }
        const std::size_t k = std::size_t(i);
        normal[k] = Vector3(ty, -tx, 0.f);
        front[k] = Vector3(mx + ty * half, my - tx * half, 0.f);
        back[k] = Vector3(mx - ty * half, my + tx * half, 0.f);
    }
    const auto at = [](const Vector3 &p, float z) { return Vector3(p.x, p.y, z); };
    const Vector3 up(0, 0, 1), down(0, 0, -1);
    for (std::size_t i = 0; i < std::size_t(segments); ++i) {
        const std::size_t j = i + 1;
        const float u0 = float(i) / float(segments), u1 = float(j) / float(segments);
        const Vector3 &n0 = normal[i], &n1 = normal[j];
        const Vector3 b0 = ScaleVector(n0, -1.f), b1 = ScaleVector(n1, -1.f);
        const float frontUv[4][2] = {{u0, 1.f}, {u1, 1.f}, {u1, 0.f}, {u0, 0.f}};
        m_print.use(m_print.sides().front);
        addQuadVertices(
            {at(front[i], 0.f), at(front[j], 0.f), at(front[j], height), at(front[i], height)},
            {n0, n1, n1, n0},
            frontUv);
        const float backUv[4][2]
            = {{1.f - u1, 1.f}, {1.f - u0, 1.f}, {1.f - u0, 0.f}, {1.f - u1, 0.f}};
        m_print.use(m_print.sides().back);
        addQuadVertices(
            {at(back[j], 0.f), at(back[i], 0.f), at(back[i], height), at(back[j], height)},
            {b1, b0, b0, b1},
            backUv);
        const float edgeUv[4][2] = {{u0, 1.f}, {u1, 1.f}, {u1, 0.f}, {u0, 0.f}};
        m_print.use(m_print.sides().wall);
        addQuadVertices(
            {at(front[i], height), at(front[j], height), at(back[j], height), at(back[i], height)},
            {up, up, up, up},
            edgeUv);
        addQuadVertices({at(back[i], 0.f), at(back[j], 0.f), at(front[j], 0.f), at(front[i], 0.f)},
                        {down, down, down, down},
                        edgeUv);
    }
    const std::size_t last = std::size_t(segments);
    m_print.use(m_print.sides().wall);
    emitQuad(at(back[0], 0.f), at(front[0], 0.f), at(front[0], height), at(back[0], height));
    emitQuad(
        at(front[last], 0.f), at(back[last], 0.f), at(back[last], height), at(front[last], height));
}

void MeshBuilder::transformSince(const Mark &mark, const Matrix &matrix)
{
    for (std::size_t p = mark.part; p < m_parts.size(); ++p) {
        std::vector<VertexRecord> &vertices = m_parts[p].vertices;
        for (std::size_t i = p == mark.part ? mark.vertex : 0; i < vertices.size(); ++i) {
            VertexRecord &v = vertices[i];
            Vector3 position = vertexVector(v.position);
            Vector3 normal = vertexVector(v.normal);
            TransformPoint(position, matrix);
            TransformDirection(normal, matrix);
            setVertexVector(v.position, position);
            setVertexVector(v.normal, normalized(normal, Vector3(0, 0, 1)));
        }
    }
}

void MeshBuilder::projectSince(const Mark &mark,
                               const QString &face,
                               const Vector3 &origin,
                               const Vector3 &uAxis,
                               const Vector3 &vAxis,
                               float depth)
{
    const QRectF region = m_print.region(face);
    for (std::size_t p = mark.part; p < m_parts.size(); ++p) {
        Part &part = m_parts[p];
        const std::size_t first = p == mark.part ? mark.vertex : 0;
        projectOntoRegion(part.vertices, part.indices, first, region, origin, uAxis, vAxis, depth);
    }
}

MeshPtr MeshBuilder::build()
{
    std::vector<std::unique_ptr<MeshPart>> parts;
    for (Part &part : m_parts) {
        if (part.vertices.empty())
            continue;
        computeTangentFrames(part.vertices, part.indices);
        parts.push_back(
            std::make_unique<MeshPart>(std::move(part.vertices), std::move(part.indices)));
    }
    m_parts.clear();
    return std::make_shared<const Mesh>(std::move(parts));
}

Matrix MeshBuilder::hingeRotation(float x, float y, float degrees)
{
    // p' = (p - hinge) * R + hinge, with R turning (1, 0, 0) into (cos a, -sin a, 0).
    const double a = double(degrees) * Pi / 180.;
    const float c = float(std::cos(a)), s = float(std::sin(a));
    Matrix m;
    m[0] = c;
    m[1] = -s;
    m[4] = s;
    m[5] = c;
    m[12] = x - (x * c + y * s);
    m[13] = y - (-x * s + y * c);
    return m;
}

} // namespace vantrel::host
