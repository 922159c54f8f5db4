// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/render/shadowatlas.h"

#include "hostapp/render/glmatrix.h"
#include "hostapp/render/gpumeshcache.h"
#include "hostapp/render/scenedrawer.h"

#include <QOpenGLContext>
#include <QOpenGLExtraFunctions>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>
#include <QVector2D>
#include <QVector4D>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace vantrel::render {

namespace {

// Each light's shadow map is a square tile of this many texels in one atlas texture: a 60 cm
// arrangement gets about a third of a millimetre per texel, well under the smallest blur.
constexpr int ShadowTileSize = 2048;

bool sameLight(const DrawLight &a, const DrawLight &b)
{
    return a.position.x == b.position.x && a.position.y == b.position.y
           && a.position.z == b.position.z && a.directional == b.directional
           && a.intensity == b.intensity && a.shadowBlur == b.shadowBlur
           && a.castsShadows == b.castsShadows;
}

} // namespace

ShadowAtlas::ShadowAtlas() = default;

ShadowAtlas::~ShadowAtlas() = default;

bool ShadowAtlas::matches(const DrawList &list) const
{
    if (!m_valid || m_casters.size() != list.items.size() || m_lights.size() != list.lights.size())
        return false;
    for (std::size_t i = 0; i < m_lights.size(); ++i) {
        if (!sameLight(m_lights[i], list.lights[i]))
            return false;
    }
    for (std::size_t i = 0; i < m_casters.size(); ++i) {
        const DrawItem &item = list.items[i];
        if (m_casters[i].first != item.mesh
            || std::memcmp(m_casters[i].second.m, item.world.m, sizeof item.world.m) != 0)
            return false;
    }
    return true;
}

void ShadowAtlas::remember(const DrawList &list)
{
    m_casters.clear();
    m_casters.reserve(list.items.size());
    for (const DrawItem &item : list.items)
        m_casters.emplace_back(item.mesh, item.world);
    m_lights = list.lights;
    m_valid = true;
}

bool ShadowAtlas::update(const DrawList &list,
                         GpuMeshCache &meshes,
                         QOpenGLShaderProgram &depthProgram,
                         QString *errorMessage)
{
    if (matches(list))
        return true;
    m_valid = false;
    m_tiles.assign(list.lights.size(), -1);
    m_frames.clear();
    for (std::size_t i = 0; i < list.lights.size(); ++i) {
        if (list.lights[i].castsShadows && !list.items.empty()) {
            m_tiles[i] = int(m_frames.size());
            m_frames.push_back(shadowFrame(list.lights[i], list.bounds));
        }
    }
    if (m_frames.empty()) {
        m_atlas.reset();
        remember(list);
        return true;
    }
    const QSize atlasSize(columns() * ShadowTileSize, rows() * ShadowTileSize);
    if (!m_atlas || m_atlas->size() != atlasSize)
        m_atlas = std::make_unique<QOpenGLFramebufferObject>(
            atlasSize, QOpenGLFramebufferObject::Depth, GL_TEXTURE_2D, GL_R32F);
    if (!m_atlas->isValid() || !m_atlas->bind()) {
        *errorMessage = QStringLiteral("cannot draw the shadows: the OpenGL driver refused a "
                                       "%1 x %2 shadow map")
                            .arg(atlasSize.width())
                            .arg(atlasSize.height());
        m_atlas.reset();
        return false;
    }
    QOpenGLExtraFunctions &gl = *QOpenGLContext::currentContext()->extraFunctions();
    gl.glClearColor(1.f, 1.f, 1.f, 1.f); // 1: no shape in that direction
    gl.glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    gl.glDepthFunc(GL_LESS);
    depthProgram.bind();
    for (std::size_t s = 0; s < m_frames.size(); ++s) {
        gl.glViewport(int(s % 2) * ShadowTileSize,
                      int(s / 2) * ShadowTileSize,
                      ShadowTileSize,
                      ShadowTileSize);
        depthProgram.setUniformValue("lightView", toGl(m_frames[s].view));
        depthProgram.setUniformValue("lightProjection", toGl(m_frames[s].projection));
        depthProgram.setUniformValue("depthScale", m_frames[s].depthScale);
        meshes.draw(gl, nullptr);
    }
    depthProgram.release();
    ++m_passes;
    remember(list);
    return true;
}

void ShadowAtlas::bind(const DrawList &list, int samples, QOpenGLShaderProgram &receiver) const
{
    samples = std::clamp(samples, 1, DrawOptions::MaxShadowSamples);
    receiver.setUniformValue("shadowSampleCount", samples);
    receiver.setUniformValue("shadowTileTexels", float(ShadowTileSize));
    if (!m_atlas)
        return;
    QMatrix4x4 views[MaxShadowLights], projections[MaxShadowLights];
    QVector4D places[MaxShadowLights];
    GLfloat scales[MaxShadowLights] = {}, blurs[MaxShadowLights] = {};
    for (std::size_t s = 0; s < m_frames.size(); ++s) {
        views[s] = toGl(m_frames[s].view);
        projections[s] = toGl(m_frames[s].projection);
        places[s] = QVector4D(float(s % 2) / float(columns()),
                              float(s / 2) / float(rows()),
                              1.f / float(columns()),
                              1.f / float(rows()));
        scales[s] = m_frames[s].depthScale;
    }
    for (std::size_t i = 0; i < list.lights.size(); ++i) {
        if (m_tiles[i] >= 0)
            blurs[m_tiles[i]] = list.lights[i].shadowBlur;
    }
    const int count = int(m_frames.size());
    receiver.setUniformValueArray("shadowView", views, count);
    receiver.setUniformValueArray("shadowProjection", projections, count);
    receiver.setUniformValueArray("shadowTile", places, count);
    receiver.setUniformValueArray("shadowDepthScale", scales, count, 1);
    receiver.setUniformValueArray("shadowBlur", blurs, count, 1);
    // Vogel's spiral of exactly the samples used: even cover of the whole disk without rows for
    // the eye to pick out, so that fewer samples keep the blur's radius.
    QVector2D disk[DrawOptions::MaxShadowSamples];
    for (int k = 0; k < samples; ++k) {
        const float r = std::sqrt((float(k) + 0.5f) / float(samples));
        const float angle = float(k) * 2.3999632f;
        disk[k] = QVector2D(r * std::cos(angle), r * std::sin(angle));
    }
    receiver.setUniformValueArray("shadowDisk", disk, samples);
    QOpenGLFunctions &gl = *QOpenGLContext::currentContext()->functions();
    gl.glActiveTexture(GL_TEXTURE0);
    gl.glBindTexture(GL_TEXTURE_2D, m_atlas->texture());
    gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    receiver.setUniformValue("shadowAtlas", 0);
}

} // namespace vantrel::render
