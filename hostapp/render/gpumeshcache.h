// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/core/mesh.h"

#include <QOpenGLBuffer>
#include <QOpenGLVertexArrayObject>

#include <memory>
#include <unordered_map>

class QOpenGLFunctions;
class QOpenGLShaderProgram;

namespace vantrel::render {

struct DrawList;

// The meshes of the frames drawn in one OpenGL context, kept on the GPU from frame to frame: a
// view redraws the same meshes many times a second, and clones share their mesh, so each mesh
// goes up once while it is in use. Every call needs the owning context current.
class GpuMeshCache
{
public:
    GpuMeshCache() = default;
    ~GpuMeshCache();
    GpuMeshCache(const GpuMeshCache &) = delete;
    GpuMeshCache &operator=(const GpuMeshCache &) = delete;

    // Uploads the list's meshes that are not on the GPU yet and forgets those it does not use,
    // so that a long session does not keep every mesh a shape ever had.
    void prepare(const DrawList &list, QOpenGLFunctions &gl);

    // Draws every item of the list (prepared) with the bound program. shade sets the lighting
    // pass's uniforms too; highlight marks the selected shapes for that pass.
    void draw(const DrawList &list,
              QOpenGLShaderProgram &program,
              bool shade,
              bool highlight,
              QOpenGLFunctions &gl) const;

    // Frees every buffer; the owning context must be current.
    void clear() { m_meshes.clear(); }
    std::size_t size() const { return m_meshes.size(); }

private:
    // A mesh in GPU buffers: the parts' vertex records as they are (position and normal are
    // read from them) and one list of triangles.
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

    static std::unique_ptr<GpuMesh> upload(const host::MeshPtr &mesh, QOpenGLFunctions &gl);

    std::unordered_map<const host::Mesh *, std::unique_ptr<GpuMesh>> m_meshes;
    quint64 m_frame = 0;
};

} // namespace vantrel::render
