// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/render/framing.h"
#include "hostapp/render/renderexport.h"

#include <QColor>
#include <QImage>
#include <QOffscreenSurface>
#include <QOpenGLContext>

#include <memory>

namespace vantrel::host {
class Document;
}

namespace vantrel::render {

class SceneDrawer;

struct RenderOptions
{
    int width = DefaultPictureWidth; // pixels; the height follows from the camera's aspect ratio
    bool floor = true;               // the floor with its shadows; off, the background shows
    // The colour behind everything (sRGB). The floor fades into it in the distance.
    QColor background = QColor(0xdc, 0xe0, 0xe6);
};

// Draws a document as its camera sees it into an image, with OpenGL 3.3 (core profile, GLSL
// 3.30) on an offscreen surface: shapes printed with their artwork and shaded by the visible
// lights and the ambient level, and a floor at z = 0, both receiving the shadows of the lights
// that cast them. The view and projection
// are exactly the host's CalculateViewMatrix and CalculateProjectionMatrix, so the picture frames
// what Fit To View fitted. See docs/rendering.md.
//
// Use it on the GUI thread of a QGuiApplication. One renderer can draw any number of pictures.
class VANTREL_RENDER_EXPORT Renderer
{
public:
    Renderer();
    ~Renderer();
    Renderer(const Renderer &) = delete;
    Renderer &operator=(const Renderer &) = delete;

    // Creates the OpenGL context and compiles the shaders. False, with a message that says why,
    // when the platform offers no OpenGL 3.3 (on a machine without a display: no X server).
    bool initialize(QString *errorMessage);

    // The picture, pictureSize(options.width, camera aspect ratio) pixels, opaque; a null image
    // with a message when the driver refuses the buffers. Changes nothing in the document.
    QImage
    render(const host::Document &document, const RenderOptions &options, QString *errorMessage);

private:
    bool drawPicture(const host::Document &document,
                     const RenderOptions &options,
                     QImage *picture,
                     QString *errorMessage);

    QOpenGLContext m_context;
    QOffscreenSurface m_surface;
    std::unique_ptr<SceneDrawer> m_drawer;
};

} // namespace vantrel::render
