// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/render/drawlist.h"
#include "hostapp/render/renderexport.h"

#include <QColor>
#include <QSize>

#include <memory>
#include <vector>

class ICamera;
class QMatrix4x4;
class QOpenGLFramebufferObject;
class QOpenGLShaderProgram;
class QOpenGLVertexArrayObject;
class QVector3D;

namespace vantrel::render {

class GpuMeshCache;
class GpuTextureCache;
class ShadowAtlas;

struct DrawOptions
{
    bool floor = true; // the floor with its shadows; off, the background shows
    // The colour behind everything (sRGB). The floor fades into it in the distance.
    QColor background = QColor(0xdc, 0xe0, 0xe6);
    // Selected shapes tinted and rimmed, so that a user sees what a tool will act on. Pictures
    // leave it off: they show the shot, not the editing state.
    bool highlightSelection = false;
    // Shadow-map lookups per pixel (floor or shape) and shadow-casting light, spread evenly over
    // the light's blur radius: fewer draw faster with grainier shadow edges of the same width.
    // Limited to 1 to MaxShadowSamples; pictures keep the default.
    static constexpr int MaxShadowSamples = 64; // as in lighting.glsl
    int shadowSamples = MaxShadowSamples;
};

// Draws a draw list as a camera sees it into the framebuffer bound in the current OpenGL context:
// shapes printed with their artwork and shaded by the list's lights and ambient level, and the
// floor at z = 0, both receiving the shadows of the lights that cast them (see
// docs/rendering.md). The picture renderer draws into its offscreen buffer with it, and the
// desktop view into its widget's buffer.
//
// It belongs to one context: initialize() and every later call need that context current on the
// GUI thread, and releaseResources() must run while it still is. Between frames it keeps the
// meshes and artwork textures on the GPU, and the shadow maps while no shape and no light
// changed, since they do not depend on the camera.
class VANTREL_RENDER_EXPORT SceneDrawer
{
public:
    SceneDrawer();
    ~SceneDrawer(); // releaseResources() first, while the context is current
    SceneDrawer(const SceneDrawer &) = delete;
    SceneDrawer &operator=(const SceneDrawer &) = delete;

    // Compiles the shaders in the current context. False, with a message that says why, when
    // the context offers no OpenGL 3.3.
    bool initialize(QString *errorMessage);
    bool isInitialized() const { return m_meshProgram != nullptr; }

    // Clears the bound framebuffer's size.width() x size.height() pixels and draws the list as
    // the camera sees it; the camera's frame is fitted inside that size (the picture's aspect may
    // differ from the frame's). False, with a message, when the driver refuses the shadow maps.
    bool draw(const DrawList &list,
              const ICamera &camera,
              const QSize &size,
              const DrawOptions &options,
              QString *errorMessage);

    // Frees every OpenGL object; the context must be current. initialize() starts over.
    void releaseResources();

    // How many meshes are on the GPU, and how many times the shadow maps were drawn: what the
    // caches save shows here.
    std::size_t cachedMeshCount() const;
    std::size_t cachedTextureCount() const; // artwork images on the GPU
    int shadowPasses() const;

private:
    void drawFloor(const DrawList &list,
                   const QMatrix4x4 &viewProjection,
                   const QVector3D &eye,
                   const DrawOptions &options);

    std::unique_ptr<QOpenGLShaderProgram> m_meshProgram;
    std::unique_ptr<QOpenGLShaderProgram> m_floorProgram;
    std::unique_ptr<QOpenGLShaderProgram> m_shadowProgram;
    std::unique_ptr<QOpenGLShaderProgram> m_depthProgram;
    std::unique_ptr<QOpenGLVertexArrayObject> m_emptyVertexArray; // for the floor's triangle
    std::unique_ptr<GpuMeshCache> m_meshes;
    std::unique_ptr<GpuTextureCache> m_textures;
    std::unique_ptr<ShadowAtlas> m_shadows;
};

} // namespace vantrel::render
