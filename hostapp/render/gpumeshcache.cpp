// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/render/gpumeshcache.h"

#include "hostapp/render/drawlist.h"
#include "hostapp/render/glmatrix.h"
#include "hostapp/render/gputexturecache.h"

#include <QMatrix4x4>
#include <QOpenGLExtraFunctions>
#include <QOpenGLShaderProgram>

#include <cstddef>
#include <cstring>
#include <map>
#include <utility>

namespace vantrel::render {

namespace {

// One instance's attributes as mesh.vert reads them (locations 2 to 10): the world matrix's four
// columns, the normal matrix's three, the colour (linear) and the selection mark (0 or 1).
constexpr int WorldLocation = 2;
constexpr int NormalMatrixLocation = 6;
constexpr int AlbedoLocation = 9;
constexpr int SelectedLocation = 10;
constexpr int InstanceFloats = 16 + 9 + 3 + 1;
constexpr int InstanceStride = InstanceFloats * int(sizeof(float));
constexpr int TexCoordLocation = 11; // per vertex, after the instance attributes

void writeInstance(float *out, const DrawItem &item)
{
    const QMatrix4x4 world = toGl(item.world);
    std::memcpy(out, world.constData(), 16 * sizeof(float)); // column by column, as GLSL reads
    // The inverse transpose of the linear part keeps normals normal under any scale.
    std::memcpy(out + 16, world.normalMatrix().constData(), 9 * sizeof(float));
    out[25] = item.albedo.r;
    out[26] = item.albedo.g;
    out[27] = item.albedo.b;
    out[28] = item.selected ? 1.f : 0.f;
}

} // namespace

GpuMeshCache::GpuMeshCache() = default;

GpuMeshCache::~GpuMeshCache() = default;

void GpuMeshCache::clear()
{
    m_batches.clear();
    m_meshes.clear();
    m_instances.destroy();
}

std::unique_ptr<GpuMeshCache::GpuMesh> GpuMeshCache::upload(const host::MeshPtr &mesh,
                                                            QOpenGLExtraFunctions &gl)
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
    gl.glEnableVertexAttribArray(TexCoordLocation);
    gl.glVertexAttribPointer(TexCoordLocation,
                             2,
                             GL_FLOAT,
                             GL_FALSE,
                             sizeof(VertexRecord),
                             reinterpret_cast<const void *>(offsetof(VertexRecord, texCoord)));
    // The instance attributes advance once per instance; where they are read from is set at
    // each draw, since the mesh's run of the instance buffer changes from frame to frame.
    for (int location = WorldLocation; location <= SelectedLocation; ++location) {
        gl.glEnableVertexAttribArray(GLuint(location));
        gl.glVertexAttribDivisor(GLuint(location), 1);
    }
    gpu->vertexArray.release();
    return gpu;
}

void GpuMeshCache::prepare(const DrawList &list,
                           const GpuTextureCache &textures,
                           QOpenGLExtraFunctions &gl)
{
    ++m_frame;
    m_batches.clear();
    // First the meshes and artworks and how many instances each pair has, then every instance in
    // its pair's run.
    std::map<std::pair<const host::Mesh *, GLuint>, std::size_t> batchOf;
    std::vector<std::size_t> itemBatch(list.items.size());
    for (std::size_t i = 0; i < list.items.size(); ++i) {
        const DrawItem &item = list.items[i];
        const GLuint artwork = textures.texture(item.artwork.get());
        auto found = batchOf.find({item.mesh.get(), artwork});
        if (found == batchOf.end()) {
            std::unique_ptr<GpuMesh> &gpu = m_meshes[item.mesh.get()];
            if (!gpu)
                gpu = upload(item.mesh, gl);
            gpu->lastFrame = m_frame;
            found
                = batchOf.emplace(std::make_pair(item.mesh.get(), artwork), m_batches.size()).first;
            m_batches.push_back(Batch{gpu.get(), artwork, 0, 0});
        }
        itemBatch[i] = found->second;
        ++m_batches[found->second].count;
    }
    for (auto entry = m_meshes.begin(); entry != m_meshes.end();) {
        if (entry->second->lastFrame != m_frame)
            entry = m_meshes.erase(entry);
        else
            ++entry;
    }
    int first = 0;
    for (Batch &batch : m_batches) {
        batch.first = first;
        first += batch.count;
        batch.count = 0;
    }
    m_instanceData.resize(list.items.size() * InstanceFloats);
    for (std::size_t i = 0; i < list.items.size(); ++i) {
        Batch &batch = m_batches[itemBatch[i]];
        writeInstance(&m_instanceData[std::size_t(batch.first + batch.count) * InstanceFloats],
                      list.items[i]);
        ++batch.count;
    }
    if (m_instanceData.empty())
        return;
    if (!m_instances.isCreated())
        m_instances.create();
    m_instances.bind();
    m_instances.allocate(m_instanceData.data(), int(m_instanceData.size() * sizeof(float)));
    m_instances.release();
}

void GpuMeshCache::draw(QOpenGLExtraFunctions &gl, QOpenGLShaderProgram *shading)
{
    for (const Batch &batch : m_batches) {
        GpuMesh &gpu = *batch.gpu;
        if (gpu.indexCount == 0)
            continue;
        if (shading) {
            shading->setUniformValue("hasArtwork", batch.artwork ? 1.f : 0.f);
            gl.glActiveTexture(GL_TEXTURE1);
            gl.glBindTexture(GL_TEXTURE_2D, batch.artwork);
            gl.glActiveTexture(GL_TEXTURE0);
        }
        gpu.vertexArray.bind();
        m_instances.bind();
        const std::size_t base = std::size_t(batch.first) * InstanceStride;
        auto at = [base](int floats) {
            return reinterpret_cast<const void *>(base + std::size_t(floats) * sizeof(float));
        };
        for (int column = 0; column < 4; ++column)
            gl.glVertexAttribPointer(GLuint(WorldLocation + column),
                                     4,
                                     GL_FLOAT,
                                     GL_FALSE,
                                     InstanceStride,
                                     at(4 * column));
        for (int column = 0; column < 3; ++column)
            gl.glVertexAttribPointer(GLuint(NormalMatrixLocation + column),
                                     3,
                                     GL_FLOAT,
                                     GL_FALSE,
                                     InstanceStride,
                                     at(16 + 3 * column));
        gl.glVertexAttribPointer(AlbedoLocation, 3, GL_FLOAT, GL_FALSE, InstanceStride, at(25));
        gl.glVertexAttribPointer(SelectedLocation, 1, GL_FLOAT, GL_FALSE, InstanceStride, at(28));
        m_instances.release();
        gl.glDrawElementsInstanced(
            GL_TRIANGLES, gpu.indexCount, GL_UNSIGNED_INT, nullptr, batch.count);
        gpu.vertexArray.release();
    }
}

} // namespace vantrel::render
