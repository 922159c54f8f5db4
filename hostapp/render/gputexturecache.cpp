// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/render/gputexturecache.h"

#include "hostapp/render/drawlist.h"

#include <QImage>
#include <QOpenGLExtraFunctions>
#include <QOpenGLPixelTransferOptions>
#include <QOpenGLTexture>

#include <algorithm>

namespace vantrel::render {

namespace {

// The image as an sRGB texture, row 0 (the image's top) first: texture coordinate v = 0 is the
// image's top, as the generators make them, and the driver decodes sRGB to linear light when the
// shader samples, after filtering, so mipmaps blend light rather than encoded values.
std::unique_ptr<QOpenGLTexture> upload(const QImage &image, int maximumSide)
{
    QImage rgba = image.format() == QImage::Format_RGBA8888
                      ? image
                      : image.convertToFormat(QImage::Format_RGBA8888);
    // An image larger than the driver takes is drawn from a smaller copy rather than not at all.
    if (rgba.width() > maximumSide || rgba.height() > maximumSide)
        rgba = rgba.scaled(maximumSide, maximumSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    auto texture = std::make_unique<QOpenGLTexture>(QOpenGLTexture::Target2D);
    texture->setFormat(QOpenGLTexture::SRGB8_Alpha8);
    texture->setSize(rgba.width(), rgba.height());
    texture->setMipLevels(texture->maximumMipLevels());
    texture->allocateStorage(QOpenGLTexture::RGBA, QOpenGLTexture::UInt8);
    QOpenGLPixelTransferOptions rows;
    rows.setAlignment(4); // RGBA8888 rows are whole words
    texture->setData(0, QOpenGLTexture::RGBA, QOpenGLTexture::UInt8, rgba.constBits(), &rows);
    texture->generateMipMaps();
    texture->setMinMagFilters(QOpenGLTexture::LinearMipMapLinear, QOpenGLTexture::Linear);
    // Prints seen at a slant stay sharp along the slant, where the driver can.
    if (QOpenGLTexture::hasFeature(QOpenGLTexture::AnisotropicFiltering))
        texture->setMaximumAnisotropy(8.f);
    // A print ends at the sheet's edge: no wrap-around bleeds the opposite edge into a face.
    texture->setWrapMode(QOpenGLTexture::ClampToEdge);
    return texture;
}

} // namespace

GpuTextureCache::GpuTextureCache() = default;

GpuTextureCache::~GpuTextureCache() = default;

void GpuTextureCache::prepare(const DrawList &list, QOpenGLExtraFunctions &gl)
{
    ++m_frame;
    GLint maximumSide = 0;
    gl.glGetIntegerv(GL_MAX_TEXTURE_SIZE, &maximumSide);
    for (const DrawItem &item : list.items) {
        if (!item.artwork || item.artwork->isNull())
            continue;
        GpuTexture &entry = m_textures[item.artwork.get()];
        if (!entry.texture) {
            entry.image = item.artwork;
            entry.texture = upload(*item.artwork, std::max(1, int(maximumSide)));
        }
        entry.lastFrame = m_frame;
    }
    for (auto entry = m_textures.begin(); entry != m_textures.end();) {
        if (entry->second.lastFrame != m_frame)
            entry = m_textures.erase(entry);
        else
            ++entry;
    }
}

GLuint GpuTextureCache::texture(const QImage *image) const
{
    const auto found = m_textures.find(image);
    return found == m_textures.end() ? 0 : found->second.texture->textureId();
}

} // namespace vantrel::render
