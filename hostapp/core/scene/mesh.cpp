// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/mesh.h"

#include "geometry/geometry.h"

namespace vantrel::host {

MeshPart::MeshPart(std::vector<VertexRecord> vertices, std::vector<quint32> indices)
    : m_vertices(std::move(vertices))
    , m_indices(std::move(indices))
{}

Mesh::Mesh(std::vector<std::unique_ptr<MeshPart>> parts)
    : m_parts(std::move(parts))
{
    m_partInterfaces.reserve(m_parts.size());
    for (const std::unique_ptr<MeshPart> &part : m_parts) {
        m_partInterfaces.push_back(part.get());
        for (const VertexRecord &v : part->GetVertices())
            ExtendBox(m_localBox, Vector3(v.position[0], v.position[1], v.position[2]));
        m_vertexCount += int(part->GetVertices().size());
        m_triangleCount += int(part->indices().size() / 3);
    }
}

} // namespace vantrel::host
