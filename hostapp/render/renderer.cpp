// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/render/renderer.h"

#include "hostapp/core/document/document.h"
#include "hostapp/render/drawlist.h"
#include "hostapp/render/framing.h"
#include "hostapp/render/scenedrawer.h"

#include <QGuiApplication>
#include <QOpenGLFramebufferObject>

namespace vantrel::render {

namespace {

// Multisampling smooths the edges; very large pictures go without to keep memory in bounds.
constexpr int Samples = 4;
constexpr int MaximumMultisampledPixels = 2048 * 2048;

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

} // namespace

Renderer::Renderer() = default;

Renderer::~Renderer()
{
    // The drawer's programs and buffers belong to the context: free them while it is current.
    if (m_drawer && m_context.isValid() && m_context.makeCurrent(&m_surface)) {
        m_drawer->releaseResources();
        m_context.doneCurrent();
    }
}

bool Renderer::initialize(QString *errorMessage)
{
    if (m_drawer && m_drawer->isInitialized())
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
    if (!m_drawer)
        m_drawer = std::make_unique<SceneDrawer>();
    const bool built = m_drawer->initialize(errorMessage);
    m_context.doneCurrent();
    return built;
}

QImage Renderer::render(const host::Document &document,
                        const RenderOptions &options,
                        QString *errorMessage)
{
    if (!m_drawer || !m_drawer->isInitialized()) {
        *errorMessage = QStringLiteral("the renderer has no OpenGL context: initialize() first");
        return QImage();
    }
    if (!m_context.makeCurrent(&m_surface)) {
        *errorMessage = noContextMessage();
        return QImage();
    }
    QImage picture;
    drawPicture(document, options, &picture, errorMessage);
    m_context.doneCurrent();
    return picture;
}

bool Renderer::drawPicture(const host::Document &document,
                           const RenderOptions &options,
                           QImage *picture,
                           QString *errorMessage)
{
    const QSize size = pictureSize(options.width, document.camera()->GetAspectRatio());
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
    DrawOptions drawOptions;
    drawOptions.floor = options.floor;
    drawOptions.background = options.background;
    if (!m_drawer->draw(
            collectDrawList(document), *document.camera(), size, drawOptions, errorMessage)) {
        target.release();
        return false;
    }
    target.release();
    *picture = target.toImage().convertToFormat(QImage::Format_RGB32);
    return true;
}

} // namespace vantrel::render
