// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/core/scene/artworkimage.h"

#include <QtGui/qopengl.h>

#include <memory>
#include <unordered_map>

class QImage;
class QOpenGLExtraFunctions;
class QOpenGLTexture;

namespace vantrel::render {

struct DrawList;

// The artwork images of the frames drawn in one OpenGL context, kept on the GPU from frame to
// frame: copies share their artwork's image, so each image goes up once, with its mipmaps, while
// some shape in the picture prints it. Every call needs the owning context current.
class GpuTextureCache
{
public:
    GpuTextureCache();
    ~GpuTextureCache(); // the owning context must be current
    GpuTextureCache(const GpuTextureCache &) = delete;
    GpuTextureCache &operator=(const GpuTextureCache &) = delete;

    // Uploads the list's images that are not on the GPU yet and frees those it does not use.
    void prepare(const DrawList &list, QOpenGLExtraFunctions &gl);

    // The texture of an image of the prepared list; 0 for none (or an empty image).
    GLuint texture(const QImage *image) const;

    std::size_t size() const { return m_textures.size(); }

private:
    struct GpuTexture
    {
        // Held so that the key's address cannot be taken by a new image while the entry lives.
        host::ArtworkImagePtr image;
        std::unique_ptr<QOpenGLTexture> texture;
        quint64 lastFrame = 0;
    };

    std::unordered_map<const QImage *, GpuTexture> m_textures;
    quint64 m_frame = 0;
};

} // namespace vantrel::render
