// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/render/scenedrawer.h"

#include "geometry/geometry.h"
#include "host/icamera.h"
#include "hostapp/render/framing.h"
#include "hostapp/render/glmatrix.h"
#include "hostapp/render/gpumeshcache.h"
#include "hostapp/render/gputexturecache.h"
#include "hostapp/render/shadowatlas.h"

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

const QColor FloorColour(0xeb, 0xe8, 0xe1);

// From this many shadow samples on, the shapes' depth is drawn before their shading.
constexpr int DepthFirstSamples = 32;

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
    if (m_shadowProgram)
        m_depthProgram = buildProgram(
            QStringLiteral("depth.vert"), QStringLiteral("depth.frag"), errorMessage);
    if (!m_depthProgram) {
        releaseResources(); // initialize() may be called again; it starts over
        return false;
    }
    m_emptyVertexArray = std::make_unique<QOpenGLVertexArrayObject>();
    m_emptyVertexArray->create();
    m_meshes = std::make_unique<GpuMeshCache>();
    m_shadows = std::make_unique<ShadowAtlas>();
    m_textures = std::make_unique<GpuTextureCache>();
    return true;
}

void SceneDrawer::releaseResources()
{
    m_shadows.reset();
    if (m_meshes)
        m_meshes->clear();
    m_meshes.reset();
    m_textures.reset();
    m_emptyVertexArray.reset();
    m_depthProgram.reset();
    m_shadowProgram.reset();
    m_floorProgram.reset();
    m_meshProgram.reset();
}

std::size_t SceneDrawer::cachedMeshCount() const
{
    return m_meshes ? m_meshes->size() : 0;
}

std::size_t SceneDrawer::cachedTextureCount() const
{
    return m_textures ? m_textures->size() : 0;
}

int SceneDrawer::shadowPasses() const
{
    return m_shadows ? m_shadows->passes() : 0;
}

void SceneDrawer::drawFloor(const DrawList &list,
                            const QMatrix4x4 &viewProjection,
                            const QVector3D &eye,
                            const DrawOptions &options)
{
    QOpenGLFunctions &gl = *QOpenGLContext::currentContext()->functions();
    // The floor writes its own depth, so the shapes drawn after it hide it or stand behind it.
    gl.glDepthFunc(GL_ALWAYS);
    QOpenGLShaderProgram &floor = *m_floorProgram;
    floor.bind();
    floor.setUniformValue("inverseViewProjection", viewProjection.inverted());
    floor.setUniformValue("viewProjection", viewProjection);
    floor.setUniformValue("eye", eye);
    floor.setUniformValue("floorColour", linear(FloorColour));
    floor.setUniformValue("backgroundColour", linear(options.background.toRgb()));
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
    setLights(floor, list, m_shadows->tiles());
    m_shadows->bind(list, options.shadowSamples, floor);
    m_emptyVertexArray->bind();
    gl.glDrawArrays(GL_TRIANGLES, 0, 3);
    m_emptyVertexArray->release();
    floor.release();
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
    QOpenGLContext &context = *QOpenGLContext::currentContext();
    QOpenGLFunctions &gl = *context.functions();
    // The shadow maps have a framebuffer of their own; the caller's is bound again after them
    // (a widget's is not the context's default framebuffer 0).
    GLint target = 0;
    gl.glGetIntegerv(GL_FRAMEBUFFER_BINDING, &target);

    const CameraView cameraFrame
        = cameraView(camera, list.bounds, float(size.width()) / float(size.height()));
    const QMatrix4x4 viewProjection = toGl(cameraFrame.projection) * toGl(cameraFrame.view);
    const Matrix &global = camera.GetGlobalMatrix();
    const QVector3D eye(global[12], global[13], global[14]);

    m_textures->prepare(list, *context.extraFunctions());
    m_meshes->prepare(list, *m_textures, *context.extraFunctions());
    gl.glEnable(GL_DEPTH_TEST);
    // The shapes receive shadows as well as the floor, so the maps are drawn whenever a light
    // casts them, floor or not.
    const bool drawn = m_shadows->update(list, *m_meshes, *m_shadowProgram, errorMessage);
    gl.glBindFramebuffer(GL_FRAMEBUFFER, GLuint(target));
    if (!drawn)
        return false;

    gl.glViewport(0, 0, size.width(), size.height());
    const QColor background = options.background.toRgb();
    gl.glClearColor(
        float(background.redF()), float(background.greenF()), float(background.blueF()), 1.f);
    gl.glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    if (options.floor)
        drawFloor(list, viewProjection, eye, options);

    // Depth first, then the shading of only the front-most shape at each pixel: shading reads
    // the shadow maps dozens of times, and large arrangements draw many shapes over one another.
    // Without shadows, or with the few samples of a moving view, shading costs less than
    // transforming every vertex twice, and the shapes are shaded as they come.
    const bool shadowed = std::any_of(
        m_shadows->tiles().begin(), m_shadows->tiles().end(), [](int tile) { return tile >= 0; });
    gl.glDepthFunc(GL_LESS);
    if (shadowed && options.shadowSamples >= DepthFirstSamples) {
        gl.glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
        m_depthProgram->bind();
        m_depthProgram->setUniformValue("viewProjection", viewProjection);
        m_meshes->draw(*context.extraFunctions(), nullptr);
        m_depthProgram->release();
        gl.glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
        gl.glDepthFunc(GL_LEQUAL);
    }
    QOpenGLShaderProgram &meshProgram = *m_meshProgram;
    meshProgram.bind();
    meshProgram.setUniformValue("viewProjection", viewProjection);
    meshProgram.setUniformValue("eye", eye);
    meshProgram.setUniformValue("highlightSelection", options.highlightSelection ? 1.f : 0.f);
    meshProgram.setUniformValue("artwork", 1); // texture unit 1; the atlas has unit 0
    setLights(meshProgram, list, m_shadows->tiles());
    m_shadows->bind(list, options.shadowSamples, meshProgram);
    m_meshes->draw(*context.extraFunctions(), &meshProgram);
    meshProgram.release();
    gl.glDepthFunc(GL_LESS);
    return true;
}

} // namespace vantrel::render
