// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/core/scene/mesh.h"

#include <QOpenGLBuffer>
#include <QOpenGLVertexArrayObject>

#include <memory>
#include <unordered_map>
#include <vector>

class QOpenGLExtraFunctions;
class QOpenGLShaderProgram;

namespace vantrel::render {

struct DrawList;
class GpuTextureCache;

// The meshes of the frames drawn in one OpenGL context, kept on the GPU from frame to frame: a
// view redraws the same meshes many times a second, and clones share their mesh, so each mesh
// goes up once while it is in use. The shapes that share a mesh and an artwork are drawn
// together, one instanced draw per mesh and artwork, each instance with its own world matrix,
// normal matrix, colour and selection mark: a grid of thousands of copies costs a handful of draw
// calls. Every call needs the owning context current.
class GpuMeshCache
{
public:
    GpuMeshCache();
    ~GpuMeshCache();
    GpuMeshCache(const GpuMeshCache &) = delete;
    GpuMeshCache &operator=(const GpuMeshCache &) = delete;

    // Uploads the list's meshes that are not on the GPU yet, forgets those it does not use (so
    // that a long session does not keep every mesh a shape ever had), and uploads the list's
    // instances. The textures must be prepared for the same list.
    void prepare(const DrawList &list, const GpuTextureCache &textures, QOpenGLExtraFunctions &gl);

    // Draws the prepared list with the bound program: the shaders read the instance attributes
    // (see mesh.vert), and the shadow pass reads only the world matrix. With a shading program,
    // each draw binds its artwork on texture unit 1 and sets the program's hasArtwork (0 or 1).
    void draw(QOpenGLExtraFunctions &gl, QOpenGLShaderProgram *shading);

    // Frees every buffer; the owning context must be current.
    void clear();
    std::size_t size() const { return m_meshes.size(); }

private:
    // A mesh in GPU buffers: the parts' vertex records as they are (position, normal and
    // texture coordinates are read from them) and one list of triangles.
    struct GpuMesh
    {
        // Held so that the key's address cannot be taken by a new mesh while the entry lives.
        host::MeshPtr mesh;
        QOpenGLBuffer vertices{QOpenGLBuffer::VertexBuffer};
        QOpenGLBuffer indices{QOpenGLBuffer::IndexBuffer};
        QOpenGLVertexArrayObject vertexArray;
        int indexCount = 0;
        quint64 lastFrame = 0;
    };
    // The instances of one mesh with one artwork in this frame: a run of the instance buffer.
    struct Batch
    {
        GpuMesh *gpu;
        GLuint artwork; // the texture, 0 for none
        int first;
        int count;
    };

    std::unique_ptr<GpuMesh> upload(const host::MeshPtr &mesh, QOpenGLExtraFunctions &gl);

    std::unordered_map<const host::Mesh *, std::unique_ptr<GpuMesh>> m_meshes;
    quint64 m_frame = 0;
    std::vector<Batch> m_batches;
    std::vector<float> m_instanceData;
    QOpenGLBuffer m_instances{QOpenGLBuffer::VertexBuffer};
};

} // namespace vantrel::render
