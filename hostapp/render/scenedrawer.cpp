// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/render/scenedrawer.h"

#include "geometry/geometry.h"
#include "host/icamera.h"
#include "hostapp/render/framing.h"
#include "hostapp/render/glmatrix.h"
#include "hostapp/render/gpumeshcache.h"

#include <QFile>
#include <QMatrix4x4>
#include <QOpenGLContext>
#include <QOpenGLExtraFunctions>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>
#include <QOpenGLVertexArrayObject>
#include <QVector2D>
#include <QVector4D>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <utility>

namespace vantrel::render {

namespace {

// Each light's shadow map is a square tile of this many texels in one atlas texture: a 60 cm
// arrangement gets about a third of a millimetre per texel, well under the smallest blur.
constexpr int ShadowTileSize = 2048;

const QColor FloorColour(0xeb, 0xe8, 0xe1);

QVector3D linear(const QColor &colour)
{
    return QVector3D(toLinear(float(colour.redF())),
                     toLinear(float(colour.greenF())),
                     toLinear(float(colour.blueF())));
}

QString readShader(const QString &name)
{
    QFile file(QStringLiteral(":/vantrel/render/") + name);
    file.open(QIODevice::ReadOnly); // compiled in: an empty text fails to compile, with a message
    return QString::fromUtf8(file.readAll());
}

std::unique_ptr<QOpenGLShaderProgram>
buildProgram(const QString &vertex, const QString &fragment, QString *errorMessage)
{
    const QString header = QStringLiteral("#version 330 core\n");
    auto program = std::make_unique<QOpenGLShaderProgram>();
    if (!program->addShaderFromSourceCode(QOpenGLShader::Vertex, header + readShader(vertex))
        || !program->addShaderFromSourceCode(QOpenGLShader::Fragment,
                                             header + readShader(QStringLiteral("lighting.glsl"))
                                                 + readShader(fragment))
        || !program->link()) {
        *errorMessage = QStringLiteral("cannot build the renderer's shaders %1 and %2: %3")
                            .arg(vertex, fragment, program->log().trimmed());
        return nullptr;
    }
    return program;
}

bool sameLight(const DrawLight &a, const DrawLight &b)
{
    return a.position.x == b.position.x && a.position.y == b.position.y
           && a.position.z == b.position.z && a.directional == b.directional
           && a.intensity == b.intensity && a.shadowBlur == b.shadowBlur
           && a.castsShadows == b.castsShadows;
}

void setLights(QOpenGLShaderProgram &program, const DrawList &list, const std::vector<int> &tiles)
{
    QVector4D places[MaxLights];
    GLfloat intensities[MaxLights] = {};
    GLint shadows[MaxLights];
    const int count = int(list.lights.size());
    for (int i = 0; i < count; ++i) {
        const DrawLight &light = list.lights[std::size_t(i)];
        places[i] = QVector4D(
            light.position.x, light.position.y, light.position.z, light.directional ? 0.f : 1.f);
        intensities[i] = light.intensity;
        shadows[i] = tiles[std::size_t(i)];
    }
    program.setUniformValue("lightCount", count);
    program.setUniformValue("ambient", list.ambient);
    if (count == 0)
        return;
    program.setUniformValueArray("lights", places, count);
    program.setUniformValueArray("lightIntensity", intensities, count, 1);
    program.setUniformValueArray("lightShadow", shadows, count);
}

} // namespace

// The shadow maps: one square tile per shadow-casting light in one atlas texture (two tiles a
// row), each holding the light's view depth of the nearest shape. What they were drawn from is
// kept, so that a frame that only moved the camera draws none of them again.
struct SceneDrawer::ShadowState
{
    std::vector<int> tiles; // per light of the list: its tile, or -1
    std::vector<ShadowFrame> frames;
    std::unique_ptr<QOpenGLFramebufferObject> atlas;

    // What the maps show: every shape's mesh and place, and the lights. The meshes are held so
    // that a new mesh cannot take an old one's address and pass for it.
    std::vector<std::pair<host::MeshPtr, Matrix>> casters;
    std::vector<DrawLight> lights;
    bool wanted = false;
    bool valid = false;

    int columns() const { return frames.size() > 1 ? 2 : 1; }
    int rows() const { return int(frames.size() + 1) / 2; }

    bool matches(const DrawList &list, bool wantedNow) const
    {
        if (!valid || wanted != wantedNow || casters.size() != list.items.size()
            || lights.size() != list.lights.size())
            return false;
        for (std::size_t i = 0; i < lights.size(); ++i) {
            if (!sameLight(lights[i], list.lights[i]))
                return false;
        }
        for (std::size_t i = 0; i < casters.size(); ++i) {
            const DrawItem &item = list.items[i];
            if (casters[i].first != item.mesh
                || std::memcmp(casters[i].second.m, item.world.m, sizeof item.world.m) != 0)
                return false;
        }
        return true;
    }

    void remember(const DrawList &list, bool wantedNow)
    {
        casters.clear();
        casters.reserve(list.items.size());
        for (const DrawItem &item : list.items)
            casters.emplace_back(item.mesh, item.world);
        lights = list.lights;
        wanted = wantedNow;
        valid = true;
    }
};

SceneDrawer::SceneDrawer() = default;

SceneDrawer::~SceneDrawer() = default;

bool SceneDrawer::initialize(QString *errorMessage)
{
    if (m_meshProgram)
        return true;
    QOpenGLContext *context = QOpenGLContext::currentContext();
    if (!context) {
        *errorMessage = QStringLiteral("cannot draw: no OpenGL context is current");
        return false;
    }
    // Some platforms hand out an older context than asked for (Qt's offscreen platform always
    // makes a compatibility context): the version string is what the driver really offers.
    const auto *version
        = reinterpret_cast<const char *>(context->functions()->glGetString(GL_VERSION));
    int major = 0, minor = 0;
    if (!version || std::sscanf(version, "%d.%d", &major, &minor) != 2 || major * 10 + minor < 33) {
        *errorMessage = QStringLiteral("cannot draw: OpenGL 3.3 is needed, the driver offers %1")
                            .arg(QString::fromLatin1(version ? version : "no version"));
        return false;
    }
    m_meshProgram
        = buildProgram(QStringLiteral("mesh.vert"), QStringLiteral("mesh.frag"), errorMessage);
    if (m_meshProgram)
        m_floorProgram = buildProgram(
            QStringLiteral("floor.vert"), QStringLiteral("floor.frag"), errorMessage);
    if (m_floorProgram)
        m_shadowProgram = buildProgram(
            QStringLiteral("shadow.vert"), QStringLiteral("shadow.frag"), errorMessage);
    if (!m_shadowProgram) {
        releaseResources(); // initialize() may be called again; it starts over
        return false;
    }
    m_emptyVertexArray = std::make_unique<QOpenGLVertexArrayObject>();
    m_emptyVertexArray->create();
    m_meshes = std::make_unique<GpuMeshCache>();
    m_shadows = std::make_unique<ShadowState>();
    return true;
}

void SceneDrawer::releaseResources()
{
    m_shadows.reset();
    if (m_meshes)
        m_meshes->clear();
    m_meshes.reset();
    m_emptyVertexArray.reset();
    m_shadowProgram.reset();
    m_floorProgram.reset();
    m_meshProgram.reset();
}

std::size_t SceneDrawer::cachedMeshCount() const
{
    return m_meshes ? m_meshes->size() : 0;
}

bool SceneDrawer::updateShadows(const DrawList &list, bool wanted, QString *errorMessage)
{
    ShadowState &shadows = *m_shadows;
    if (shadows.matches(list, wanted))
        return true;
    shadows.valid = false;
    shadows.tiles.assign(list.lights.size(), -1);
    shadows.frames.clear();
    for (std::size_t i = 0; i < list.lights.size(); ++i) {
        if (wanted && list.lights[i].castsShadows && !list.items.empty()) {
            shadows.tiles[i] = int(shadows.frames.size());
            shadows.frames.push_back(shadowFrame(list.lights[i], list.bounds));
        }
    }
    if (shadows.frames.empty()) {
        shadows.atlas.reset();
        shadows.remember(list, wanted);
        return true;
    }
    const QSize atlasSize(shadows.columns() * ShadowTileSize, shadows.rows() * ShadowTileSize);
    if (!shadows.atlas || shadows.atlas->size() != atlasSize)
        shadows.atlas = std::make_unique<QOpenGLFramebufferObject>(
            atlasSize, QOpenGLFramebufferObject::Depth, GL_TEXTURE_2D, GL_R32F);
    if (!shadows.atlas->isValid() || !shadows.atlas->bind()) {
        *errorMessage = QStringLiteral("cannot draw the shadows: the OpenGL driver refused a "
                                       "%1 x %2 shadow map")
                            .arg(atlasSize.width())
                            .arg(atlasSize.height());
        shadows.atlas.reset();
        return false;
    }
    QOpenGLFunctions &gl = *QOpenGLContext::currentContext()->functions();
    gl.glClearColor(1.f, 1.f, 1.f, 1.f); // 1: no shape in that direction
    gl.glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    gl.glDepthFunc(GL_LESS);
    QOpenGLShaderProgram &program = *m_shadowProgram;
    program.bind();
    for (std::size_t s = 0; s < shadows.frames.size(); ++s) {
        gl.glViewport(int(s % 2) * ShadowTileSize,
                      int(s / 2) * ShadowTileSize,
                      ShadowTileSize,
                      ShadowTileSize);
        program.setUniformValue("lightView", toGl(shadows.frames[s].view));
        program.setUniformValue("lightProjection", toGl(shadows.frames[s].projection));
        program.setUniformValue("depthScale", shadows.frames[s].depthScale);
        m_meshes->draw(*QOpenGLContext::currentContext()->extraFunctions());
    }
    program.release();
    ++m_shadowPasses;
    shadows.remember(list, wanted);
    return true;
}

void SceneDrawer::bindShadowsForFloor(const DrawList &list,
                                      int samples,
                                      QOpenGLShaderProgram &floor) const
{
    samples = std::clamp(samples, 1, DrawOptions::MaxShadowSamples);
    floor.setUniformValue("shadowSampleCount", samples);
    const ShadowState &shadows = *m_shadows;
    if (!shadows.atlas)
        return;
    QMatrix4x4 views[MaxShadowLights], projections[MaxShadowLights];
    QVector4D places[MaxShadowLights];
    GLfloat scales[MaxShadowLights] = {}, blurs[MaxShadowLights] = {};
    for (std::size_t s = 0; s < shadows.frames.size(); ++s) {
        views[s] = toGl(shadows.frames[s].view);
        projections[s] = toGl(shadows.frames[s].projection);
        places[s] = QVector4D(float(s % 2) / float(shadows.columns()),
                              float(s / 2) / float(shadows.rows()),
                              1.f / float(shadows.columns()),
                              1.f / float(shadows.rows()));
        scales[s] = shadows.frames[s].depthScale;
    }
    for (std::size_t i = 0; i < list.lights.size(); ++i) {
        if (shadows.tiles[i] >= 0)
            blurs[shadows.tiles[i]] = list.lights[i].shadowBlur;
    }
    const int count = int(shadows.frames.size());
    floor.setUniformValueArray("shadowView", views, count);
    floor.setUniformValueArray("shadowProjection", projections, count);
    floor.setUniformValueArray("shadowTile", places, count);
    floor.setUniformValueArray("shadowDepthScale", scales, count, 1);
    floor.setUniformValueArray("shadowBlur", blurs, count, 1);
    // Vogel's spiral of exactly the samples used: even cover of the whole disk without rows for
    // the eye to pick out, so that fewer samples keep the blur's radius.
    QVector2D disk[DrawOptions::MaxShadowSamples];
    for (int k = 0; k < samples; ++k) {
        const float r = std::sqrt((float(k) + 0.5f) / float(samples));
        const float angle = float(k) * 2.3999632f;
        disk[k] = QVector2D(r * std::cos(angle), r * std::sin(angle));
    }
    floor.setUniformValueArray("shadowDisk", disk, samples);
    QOpenGLFunctions &gl = *QOpenGLContext::currentContext()->functions();
    gl.glActiveTexture(GL_TEXTURE0);
    gl.glBindTexture(GL_TEXTURE_2D, shadows.atlas->texture());
    gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    floor.setUniformValue("shadowAtlas", 0);
}

bool SceneDrawer::draw(const DrawList &list,
                       const ICamera &camera,
                       const QSize &size,
                       const DrawOptions &options,
                       QString *errorMessage)
{
    if (!m_meshProgram) {
        *errorMessage = QStringLiteral("cannot draw: the shaders are not built (initialize())");
        return false;
    }
    QOpenGLFunctions &gl = *QOpenGLContext::currentContext()->functions();
    // The shadow maps have a framebuffer of their own; the caller's is bound again after them
    // (a widget's is not the context's default framebuffer 0).
    GLint target = 0;
    gl.glGetIntegerv(GL_FRAMEBUFFER_BINDING, &target);

    const CameraView cameraFrame
        = cameraView(camera, list.bounds, float(size.width()) / float(size.height()));
    const QMatrix4x4 viewProjection = toGl(cameraFrame.projection) * toGl(cameraFrame.view);
    const Matrix &global = camera.GetGlobalMatrix();
    const QVector3D eye(global[12], global[13], global[14]);

    m_meshes->prepare(list, *QOpenGLContext::currentContext()->extraFunctions());
    gl.glEnable(GL_DEPTH_TEST);
    // Only the floor receives shadows: without it there is nothing to draw them for.
    if (!updateShadows(list, options.floor, errorMessage)) {
        gl.glBindFramebuffer(GL_FRAMEBUFFER, GLuint(target));
        return false;
    }
    gl.glBindFramebuffer(GL_FRAMEBUFFER, GLuint(target));

    gl.glViewport(0, 0, size.width(), size.height());
    const QColor background = options.background.toRgb();
    gl.glClearColor(
        float(background.redF()), float(background.greenF()), float(background.blueF()), 1.f);
    gl.glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);

    if (options.floor) {
        // The floor writes its own depth, so the shapes drawn after it hide it or stand behind it.
        gl.glDepthFunc(GL_ALWAYS);
        QOpenGLShaderProgram &floor = *m_floorProgram;
        floor.bind();
        floor.setUniformValue("inverseViewProjection", viewProjection.inverted());
        floor.setUniformValue("viewProjection", viewProjection);
        floor.setUniformValue("eye", eye);
        floor.setUniformValue("floorColour", linear(FloorColour));
        floor.setUniformValue("backgroundColour", linear(background));
        // The floor fades out well beyond the shapes, so that the horizon stays soft.
        float radius = 50.f;
        QVector2D centre(0.f, 0.f);
        if (!IsBoxEmpty(list.bounds)) {
            const TBBox<float> &b = list.bounds;
            centre = QVector2D((b.min[0] + b.max[0]) * 0.5f, (b.min[1] + b.max[1]) * 0.5f);
            radius = std::max(0.5f * std::hypot(b.max[0] - b.min[0], b.max[1] - b.min[1]), 10.f);
        }
        floor.setUniformValue("fadeCentre", centre);
        floor.setUniformValue("fadeRange", QVector2D(3.f * radius, 8.f * radius));
        setLights(floor, list, m_shadows->tiles);
        bindShadowsForFloor(list, options.shadowSamples, floor);
        m_emptyVertexArray->bind();
        gl.glDrawArrays(GL_TRIANGLES, 0, 3);
        m_emptyVertexArray->release();
        floor.release();
    }

    gl.glDepthFunc(GL_LESS);
    m_meshProgram->bind();
    m_meshProgram->setUniformValue("viewProjection", viewProjection);
    m_meshProgram->setUniformValue("eye", eye);
    m_meshProgram->setUniformValue("highlightSelection", options.highlightSelection ? 1.f : 0.f);
    setLights(*m_meshProgram, list, m_shadows->tiles);
    m_meshes->draw(*QOpenGLContext::currentContext()->extraFunctions());
    m_meshProgram->release();
    return true;
}

} // namespace vantrel::render
