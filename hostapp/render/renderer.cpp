// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/render/renderer.h"

#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "hostapp/core/document.h"
#include "hostapp/render/drawlist.h"
#include "hostapp/render/framing.h"

#include <QFile>
#include <QGuiApplication>
#include <QMatrix4x4>
#include <QOpenGLBuffer>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QVector2D>
#include <QVector4D>

#include <cmath>
#include <cstddef>
#include <cstdio>
#include <unordered_map>

namespace vantrel::render {

namespace {

// Each light's shadow map is a square tile of this many texels in one atlas texture: a 60 cm
// arrangement gets about a third of a millimetre per texel, well under the smallest blur.
constexpr int ShadowTileSize = 2048;
constexpr int ShadowSamples = 64; // as in floor.frag
// Multisampling smooths the edges; very large pictures go without to keep memory in bounds.
constexpr int Samples = 4;
constexpr int MaximumMultisampledPixels = 2048 * 2048;

const QColor FloorColour(0xeb, 0xe8, 0xe1);

// The host's matrices act on row vectors (p * M) and are stored row by row; GLSL's act on column
// vectors (M * p). QMatrix4x4 reads row-major values, so it holds M, and GLSL needs M transposed.
// Products keep their meaning: toGl(B) * toGl(A) is toGl(A * B), A applied first.
QMatrix4x4 toGl(const Matrix &m)
{
    return QMatrix4x4(m.m).transposed();
}

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

QString noContextMessage()
{
    const QByteArray display = qgetenv("DISPLAY");
    return QStringLiteral("cannot create an OpenGL context: Qt's \"%1\" platform has none to give "
                          "%2; on a machine without a display run it under xvfb-run")
        .arg(QGuiApplication::platformName(),
             display.isEmpty()
                 ? QStringLiteral("(there is no X display: DISPLAY is not set)")
                 : QStringLiteral("on the X display \"%1\"").arg(QString::fromLocal8Bit(display)));
}

// A mesh in GPU buffers: the parts' vertex records as they are (60 bytes each; position at 0,
// normal at 12) and one list of triangles.
struct GpuMesh
{
    QOpenGLBuffer vertices{QOpenGLBuffer::VertexBuffer};
    QOpenGLBuffer indices{QOpenGLBuffer::IndexBuffer};
    QOpenGLVertexArrayObject vertexArray;
    int indexCount = 0;
};

std::unique_ptr<GpuMesh> upload(const host::Mesh &mesh, QOpenGLFunctions &gl)
{
    std::vector<VertexRecord> vertices;
    std::vector<quint32> indices;
    for (const std::unique_ptr<host::MeshPart> &part : mesh.meshParts()) {
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

// The picture's meshes on the GPU. Clones share their mesh, so each mesh goes up once.
class GpuMeshes
{
public:
    GpuMeshes(const DrawList &list, QOpenGLFunctions &gl)
    {
        for (const DrawItem &item : list.items) {
            std::unique_ptr<GpuMesh> &gpu = m_meshes[item.mesh.get()];
            if (!gpu)
                gpu = upload(*item.mesh, gl);
        }
    }

    // Draws every item with the program bound; shade sets the lighting pass's uniforms too.
    void draw(const DrawList &list,
              QOpenGLShaderProgram &program,
              bool shade,
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
            }
            gpu.vertexArray.bind();
            gl.glDrawElements(GL_TRIANGLES, gpu.indexCount, GL_UNSIGNED_INT, nullptr);
            gpu.vertexArray.release();
        }
    }

private:
    std::unordered_map<const host::Mesh *, std::unique_ptr<GpuMesh>> m_meshes;
};

// The shadow maps: one square tile per shadow-casting light in one atlas texture (two tiles a
// row), each holding the light's view depth of the nearest shape.
struct Shadows
{
    std::vector<int> tiles; // per light of the list: its tile, or -1
    std::vector<ShadowFrame> frames;
    std::unique_ptr<QOpenGLFramebufferObject> atlas;

    Shadows(const DrawList &list, bool wanted)
        : tiles(list.lights.size(), -1)
    {
        for (std::size_t i = 0; i < list.lights.size(); ++i) {
            if (wanted && list.lights[i].castsShadows && !list.items.empty()) {
                tiles[i] = int(frames.size());
                frames.push_back(shadowFrame(list.lights[i], list.bounds));
            }
        }
    }

    int columns() const { return frames.size() > 1 ? 2 : 1; }
    int rows() const { return int(frames.size() + 1) / 2; }

    bool draw(const DrawList &list,
              const GpuMeshes &meshes,
              QOpenGLShaderProgram &program,
              QOpenGLFunctions &gl,
              QString *errorMessage)
    {
        if (frames.empty())
            return true;
        atlas = std::make_unique<QOpenGLFramebufferObject>(
            QSize(columns() * ShadowTileSize, rows() * ShadowTileSize),
            QOpenGLFramebufferObject::Depth,
            GL_TEXTURE_2D,
            GL_R32F);
        if (!atlas->isValid() || !atlas->bind()) {
            *errorMessage = QStringLiteral("cannot draw the shadows: the OpenGL driver refused a "
                                           "%1 x %2 shadow map")
                                .arg(atlas->width())
                                .arg(atlas->height());
            return false;
        }
        gl.glClearColor(1.f, 1.f, 1.f, 1.f); // 1: no shape in that direction
        gl.glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        gl.glDepthFunc(GL_LESS);
        program.bind();
        for (std::size_t s = 0; s < frames.size(); ++s) {
            gl.glViewport(int(s % 2) * ShadowTileSize,
                          int(s / 2) * ShadowTileSize,
                          ShadowTileSize,
                          ShadowTileSize);
            program.setUniformValue("lightView", toGl(frames[s].view));
            program.setUniformValue("lightProjection", toGl(frames[s].projection));
            program.setUniformValue("depthScale", frames[s].depthScale);
            meshes.draw(list, program, false, gl);
        }
        program.release();
        atlas->release();
        return true;
    }

    // The floor program's shadow uniforms and the atlas on texture unit 0.
    void bindForFloor(const DrawList &list, QOpenGLShaderProgram &floor, QOpenGLFunctions &gl) const
    {
        if (!atlas)
            return;
        QMatrix4x4 views[MaxShadowLights], projections[MaxShadowLights];
        QVector4D places[MaxShadowLights];
        GLfloat scales[MaxShadowLights] = {}, blurs[MaxShadowLights] = {};
        for (std::size_t s = 0; s < frames.size(); ++s) {
            views[s] = toGl(frames[s].view);
            projections[s] = toGl(frames[s].projection);
            places[s] = QVector4D(float(s % 2) / float(columns()),
                                  float(s / 2) / float(rows()),
                                  1.f / float(columns()),
                                  1.f / float(rows()));
            scales[s] = frames[s].depthScale;
        }
        for (std::size_t i = 0; i < list.lights.size(); ++i) {
            if (tiles[i] >= 0)
                blurs[tiles[i]] = list.lights[i].shadowBlur;
        }
        const int count = int(frames.size());
        floor.setUniformValueArray("shadowView", views, count);
        floor.setUniformValueArray("shadowProjection", projections, count);
        floor.setUniformValueArray("shadowTile", places, count);
        floor.setUniformValueArray("shadowDepthScale", scales, count, 1);
        floor.setUniformValueArray("shadowBlur", blurs, count, 1);
        QVector2D disk[ShadowSamples];
        for (int k = 0; k < ShadowSamples; ++k) {
            // Vogel's spiral: even cover of the disk without rows for the eye to pick out.
            const float r = std::sqrt((float(k) + 0.5f) / float(ShadowSamples));
            const float angle = float(k) * 2.3999632f;
            disk[k] = QVector2D(r * std::cos(angle), r * std::sin(angle));
        }
        floor.setUniformValueArray("shadowDisk", disk, ShadowSamples);
        gl.glActiveTexture(GL_TEXTURE0);
        gl.glBindTexture(GL_TEXTURE_2D, atlas->texture());
        gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        floor.setUniformValue("shadowAtlas", 0);
    }
};

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

Renderer::Renderer() = default;

Renderer::~Renderer()
{
    // The programs and the vertex array belong to the context: free them while it is current.
    if (m_context.isValid() && m_context.makeCurrent(&m_surface)) {
        m_meshProgram.reset();
        m_floorProgram.reset();
        m_shadowProgram.reset();
        m_emptyVertexArray.reset();
        m_context.doneCurrent();
    }
}

bool Renderer::initialize(QString *errorMessage)
{
    if (m_meshProgram)
        return true;
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance())) {
        *errorMessage = QStringLiteral("cannot create an OpenGL context without a QGuiApplication");
        return false;
    }
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setVersion(3, 3);
    format.setProfile(QSurfaceFormat::CoreProfile);
    m_context.setFormat(format);
    if (!m_context.create()) {
        *errorMessage = noContextMessage();
        return false;
    }
    m_surface.setFormat(m_context.format());
    m_surface.create();
    if (!m_surface.isValid() || !m_context.makeCurrent(&m_surface)) {
        *errorMessage = noContextMessage();
        return false;
    }
    // Some platforms hand out an older context than asked for (Qt's offscreen platform always
    // makes a compatibility context): the version string is what the driver really offers.
    const auto *version
        = reinterpret_cast<const char *>(m_context.functions()->glGetString(GL_VERSION));
    int major = 0, minor = 0;
    if (!version || std::sscanf(version, "%d.%d", &major, &minor) != 2 || major * 10 + minor < 33) {
        *errorMessage = QStringLiteral("cannot draw: OpenGL 3.3 is needed, the driver offers %1")
                            .arg(QString::fromLatin1(version ? version : "no version"));
        m_context.doneCurrent();
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
    if (m_shadowProgram) {
        m_emptyVertexArray = std::make_unique<QOpenGLVertexArrayObject>();
        m_emptyVertexArray->create();
    }
    const bool built = m_shadowProgram != nullptr;
    if (!built)
        m_meshProgram.reset(); // initialize() may be called again; it starts over
    m_context.doneCurrent();
    return built;
}

QImage Renderer::render(const host::Document &document,
                        const RenderOptions &options,
                        QString *errorMessage)
{
    if (!m_meshProgram) {
        *errorMessage = QStringLiteral("the renderer has no OpenGL context: initialize() first");
        return QImage();
    }
    if (!m_context.makeCurrent(&m_surface)) {
        *errorMessage = noContextMessage();
        return QImage();
    }
    QImage picture;
    drawPicture(collectDrawList(document), document, options, &picture, errorMessage);
    m_context.doneCurrent();
    return picture;
}

bool Renderer::drawPicture(const DrawList &list,
                           const host::Document &document,
                           const RenderOptions &options,
                           QImage *picture,
                           QString *errorMessage)
{
    QOpenGLFunctions &gl = *m_context.functions();
    const host::Camera &camera = *document.camera();
    const QSize size = pictureSize(options.width, camera.GetAspectRatio());

    Matrix view, projection;
    CalculateViewMatrix(view, camera.GetGlobalMatrix());
    const DepthRange depth = depthRange(list.bounds, view);
    CalculateProjectionMatrix(projection,
                              camera.GetFieldOfView(),
                              camera.GetAspectRatio(),
                              float(size.width()) / float(size.height()),
                              depth.nearPlane,
                              depth.farPlane);
    const QMatrix4x4 viewProjection = toGl(projection) * toGl(view);
    const Vector3 eyePosition = camera.position();
    const QVector3D eye(eyePosition.x, eyePosition.y, eyePosition.z);

    const GpuMeshes meshes(list, gl);
    gl.glEnable(GL_DEPTH_TEST);
    // Only the floor receives shadows: without it there is nothing to draw them for.
    Shadows shadows(list, options.floor);
    if (!shadows.draw(list, meshes, *m_shadowProgram, gl, errorMessage))
        return false;

    QOpenGLFramebufferObjectFormat format;
    format.setAttachment(QOpenGLFramebufferObject::Depth);
    format.setSamples(size.width() * size.height() <= MaximumMultisampledPixels ? Samples : 0);
    QOpenGLFramebufferObject target(size, format);
    if (!target.isValid() || !target.bind()) {
        *errorMessage
            = QStringLiteral("cannot draw a %1 x %2 picture: the OpenGL driver refused the buffer")
                  .arg(size.width())
                  .arg(size.height());
        return false;
    }
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
        setLights(floor, list, shadows.tiles);
        shadows.bindForFloor(list, floor, gl);
        m_emptyVertexArray->bind();
        gl.glDrawArrays(GL_TRIANGLES, 0, 3);
        m_emptyVertexArray->release();
        floor.release();
    }

    gl.glDepthFunc(GL_LESS);
    m_meshProgram->bind();
    m_meshProgram->setUniformValue("viewProjection", viewProjection);
    m_meshProgram->setUniformValue("eye", eye);
    setLights(*m_meshProgram, list, shadows.tiles);
    meshes.draw(list, *m_meshProgram, true, gl);
    m_meshProgram->release();
    target.release();

    *picture = target.toImage().convertToFormat(QImage::Format_RGB32);
    return true;
}

} // namespace vantrel::render
