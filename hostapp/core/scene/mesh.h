// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "host/imeshpart.h"

#include <QtGlobal>

#include <memory>
#include <vector>

namespace vantrel::host {

// One geometry piece: vertex records and a triangle list (three indices per triangle).
class VANTREL_HOST_EXPORT MeshPart final : public IMeshPart
{
public:
    MeshPart(std::vector<VertexRecord> vertices, std::vector<quint32> indices);

    const std::vector<VertexRecord> &GetVertices() const override { return m_vertices; }
    const std::vector<quint32> &indices() const { return m_indices; }

private:
    std::vector<VertexRecord> m_vertices;
    std::vector<quint32> m_indices;
};

// A mesh is immutable once built. Nodes hold it through MeshPtr, so a node and all its clones
// share one copy of the vertex data; changing a shape parameter builds a new mesh for that node
// only (copy on write).
class VANTREL_HOST_EXPORT Mesh
{
public:
    explicit Mesh(std::vector<std::unique_ptr<MeshPart>> parts);
    Mesh(const Mesh &) = delete;
    Mesh &operator=(const Mesh &) = delete;

    const std::vector<IMeshPart *> &parts() const { return m_partInterfaces; }
    // The same parts with their triangle lists, for drawing.
    const std::vector<std::unique_ptr<MeshPart>> &meshParts() const { return m_parts; }
    const TBBox<float> &localBox() const { return m_localBox; } // empty without vertices
    int vertexCount() const { return m_vertexCount; }
    int triangleCount() const { return m_triangleCount; }

private:
    std::vector<std::unique_ptr<MeshPart>> m_parts;
    std::vector<IMeshPart *> m_partInterfaces;
    TBBox<float> m_localBox;
    int m_vertexCount = 0;
    int m_triangleCount = 0;
};

using MeshPtr = std::shared_ptr<const Mesh>;

} // namespace vantrel::host
