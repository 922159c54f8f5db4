// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/render/gpumeshcache.h"

#include "hostapp/render/drawlist.h"

#include <QMatrix4x4>
#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>
#include <QVector3D>

#include <cstddef>

namespace vantrel::render {

namespace {

// The host's matrices act on row vectors and are stored row by row; GLSL's act on column vectors.
QMatrix4x4 toGl(const Matrix &m)
{
    return QMatrix4x4(m.m).transposed();
}

} // namespace

GpuMeshCache::~GpuMeshCache() = default;

std::unique_ptr<GpuMeshCache::GpuMesh> GpuMeshCache::upload(const host::MeshPtr &mesh,
                                                            QOpenGLFunctions &gl)
{
    std::vector<VertexRecord> vertices;
    std::vector<quint32> indices;
    for (const std::unique_ptr<host::MeshPart> &part : mesh->meshParts()) {
        const auto base = quint32(vertices.size());
        const std::vector<VertexRecord> &records = part->GetVertices();
        vertices.insert(vertices.end(), records.begin(), records.end());
        const std::vector<quint32> &triangles = part->indices();
        // A triangle naming a vertex the part does not have is left out rather than handed to
        // the driver, which would read past the buffer.
        for (std::size_t t = 0; t + 2 < triangles.size(); t += 3) {
            if (triangles[t] >= records.size() || triangles[t + 1] >= records.size()
                || triangles[t + 2] >= records.size())
                continue;
            for (std::size_t corner = t; corner < t + 3; ++corner)
                indices.push_back(base + triangles[corner]);
        }
    }
    auto gpu = std::make_unique<GpuMesh>();
    gpu->mesh = mesh;
    gpu->indexCount = int(indices.size());
    if (indices.empty())
        return gpu;
    gpu->vertexArray.create();
    gpu->vertexArray.bind();
    gpu->vertices.create();
    gpu->vertices.bind();
    gpu->vertices.allocate(vertices.data(), int(vertices.size() * sizeof(VertexRecord)));
    gpu->indices.create();
    gpu->indices.bind();
    gpu->indices.allocate(indices.data(), int(indices.size() * sizeof(quint32)));
    gl.glEnableVertexAttribArray(0);
    gl.glVertexAttribPointer(0,
                             3,
                             GL_FLOAT,
                             GL_FALSE,
                             sizeof(VertexRecord),
                             reinterpret_cast<const void *>(offsetof(VertexRecord, position)));
    gl.glEnableVertexAttribArray(1);
    gl.glVertexAttribPointer(1,
                             3,
                             GL_FLOAT,
                             GL_FALSE,
                             sizeof(VertexRecord),
                             reinterpret_cast<const void *>(offsetof(VertexRecord, normal)));
    gpu->vertexArray.release();
    return gpu;
}

void GpuMeshCache::prepare(const DrawList &list, QOpenGLFunctions &gl)
{
    ++m_frame;
    for (const DrawItem &item : list.items) {
        std::unique_ptr<GpuMesh> &gpu = m_meshes[item.mesh.get()];
        if (!gpu)
            gpu = upload(item.mesh, gl);
        gpu->lastFrame = m_frame;
    }
    for (auto entry = m_meshes.begin(); entry != m_meshes.end();) {
        if (entry->second->lastFrame != m_frame)
            entry = m_meshes.erase(entry);
        else
            ++entry;
    }
}

void GpuMeshCache::draw(const DrawList &list,
                        QOpenGLShaderProgram &program,
                        bool shade,
                        bool highlight,
                        QOpenGLFunctions &gl) const
{
    for (const DrawItem &item : list.items) {
        GpuMesh &gpu = *m_meshes.at(item.mesh.get());
        if (gpu.indexCount == 0)
            continue;
        const QMatrix4x4 world = toGl(item.world);
        program.setUniformValue("world", world);
        if (shade) {
            program.setUniformValue("normalMatrix", world.normalMatrix());
            program.setUniformValue("albedo",
                                    QVector3D(item.albedo.r, item.albedo.g, item.albedo.b));
            program.setUniformValue("selected", highlight && item.selected ? 1.f : 0.f);
        }
        gpu.vertexArray.bind();
        gl.glDrawElements(GL_TRIANGLES, gpu.indexCount, GL_UNSIGNED_INT, nullptr);
        gpu.vertexArray.release();
    }
}

} // namespace vantrel::render
