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

// A triangle naming a vertex its part does not have is left out rather than handed to the
// driver, which would read past the buffer.
bool drawable(const std::vector<quint32> &triangles, std::size_t t, std::size_t vertexCount)
{
    return triangles[t] < vertexCount && triangles[t + 1] < vertexCount
           && triangles[t + 2] < vertexCount;
}

// Fills the bound vertex and index buffers, sized for the whole mesh, part by part and a piece
// of indices at a time, so that a model of millions of vertices is never copied whole on its
// way to the driver.
void fillBuffers(const host::Mesh &mesh, QOpenGLExtraFunctions &gl)
{
    constexpr std::size_t PieceIndices = 3 << 18;
    std::vector<quint32> piece;
    piece.reserve(PieceIndices);
    std::size_t vertexOffset = 0, indexOffset = 0;
    const auto writePiece = [&] {
        gl.glBufferSubData(GL_ELEMENT_ARRAY_BUFFER,
                           GLintptr(indexOffset * sizeof(quint32)),
                           GLsizeiptr(piece.size() * sizeof(quint32)),
                           piece.data());
        indexOffset += piece.size();
        piece.clear();
    };
    for (const std::unique_ptr<host::MeshPart> &part : mesh.meshParts()) {
        const std::vector<VertexRecord> &records = part->GetVertices();
        gl.glBufferSubData(GL_ARRAY_BUFFER,
                           GLintptr(vertexOffset * sizeof(VertexRecord)),
                           GLsizeiptr(records.size() * sizeof(VertexRecord)),
                           records.data());
        const std::vector<quint32> &triangles = part->indices();
        for (std::size_t t = 0; t + 2 < triangles.size(); t += 3) {
            if (!drawable(triangles, t, records.size()))
                continue;
            for (std::size_t corner = t; corner < t + 3; ++corner)
                piece.push_back(quint32(vertexOffset) + triangles[corner]);
            if (piece.size() + 3 > PieceIndices)
                writePiece();
        }
        vertexOffset += records.size();
    }
    if (!piece.empty())
        writePiece();
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
    std::size_t vertexCount = 0, indexCount = 0;
    for (const std::unique_ptr<host::MeshPart> &part : mesh->meshParts()) {
        const std::vector<quint32> &triangles = part->indices();
        vertexCount += part->GetVertices().size();
        for (std::size_t t = 0; t + 2 < triangles.size(); t += 3)
            indexCount += drawable(triangles, t, part->GetVertices().size()) ? 3 : 0;
    }
    auto gpu = std::make_unique<GpuMesh>();
    gpu->mesh = mesh;
    gpu->indexCount = int(indexCount);
    if (indexCount == 0)
        return gpu;
    gpu->vertexArray.create();
    gpu->vertexArray.bind();
    gpu->vertices.create();
    gpu->vertices.bind();
    // Sizes and offsets as the driver takes them: a large model's buffer passes 2 GiB.
    gl.glBufferData(
        GL_ARRAY_BUFFER, GLsizeiptr(vertexCount * sizeof(VertexRecord)), nullptr, GL_STATIC_DRAW);
    gpu->indices.create();
    gpu->indices.bind();
    gl.glBufferData(
        GL_ELEMENT_ARRAY_BUFFER, GLsizeiptr(indexCount * sizeof(quint32)), nullptr, GL_STATIC_DRAW);
    fillBuffers(*mesh, gl);
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
