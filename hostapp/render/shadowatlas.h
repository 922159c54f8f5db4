// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/render/drawlist.h"
#include "hostapp/render/framing.h"

#include <memory>
#include <utility>
#include <vector>

class QOpenGLFramebufferObject;
class QOpenGLShaderProgram;

namespace vantrel::render {

class GpuMeshCache;

// The shadow maps of one OpenGL context: one square tile per shadow-casting light in one atlas
// texture (two tiles a row), each holding the light's view depth of the nearest shape. What they
// were drawn from is kept, so that a frame that only moved the camera draws none of them again.
// The floor and the shapes both read them (lighting.glsl). Every call needs the context current.
class ShadowAtlas
{
public:
    ShadowAtlas();
    ~ShadowAtlas();
    ShadowAtlas(const ShadowAtlas &) = delete;
    ShadowAtlas &operator=(const ShadowAtlas &) = delete;

    // Draws the maps of the list's shadow-casting lights with the depth program, unless they
    // already show this list. The meshes must be prepared for the list.
    // Leaves the atlas's framebuffer bound. False, with a message, when the driver refuses it.
    bool update(const DrawList &list,
                GpuMeshCache &meshes,
                QOpenGLShaderProgram &depthProgram,
                QString *errorMessage);

    // Per light of the list: its tile, or -1 (the shaders' lightShadow).
    const std::vector<int> &tiles() const { return m_tiles; }

    // Hands the maps to a program that includes lighting.glsl: the frames, the blur radii, the
    // sample disk of `samples` points (limited to 1..64) and the atlas on texture unit 0.
    void bind(const DrawList &list, int samples, QOpenGLShaderProgram &receiver) const;

    int passes() const { return m_passes; } // how many times the maps were drawn

private:
    bool matches(const DrawList &list) const;
    void remember(const DrawList &list);
    int columns() const { return m_frames.size() > 1 ? 2 : 1; }
    int rows() const { return int(m_frames.size() + 1) / 2; }

    std::vector<int> m_tiles;
    std::vector<ShadowFrame> m_frames;
    std::unique_ptr<QOpenGLFramebufferObject> m_atlas;
    // What the maps show: every shape's mesh and place, and the lights. The meshes are held so
    // that a new mesh cannot take an old one's address and pass for it.
    std::vector<std::pair<host::MeshPtr, Matrix>> m_casters;
    std::vector<DrawLight> m_lights;
    bool m_valid = false;
    int m_passes = 0;
};

} // namespace vantrel::render
