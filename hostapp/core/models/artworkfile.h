// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/scene/artworkimage.h"

#include <QString>

namespace vantrel::host {

// Artwork image files (PNG and JPEG, told apart by their contents, not their names) read through
// Qt's image readers into the one pixel format every artwork has (see artworkimage.h).
//
// Reading is bounded before the heavy work: the file's size is checked before it is read, and
// the picture's width and height, which the image's header states, before it is decoded, so a
// small file that claims a huge picture costs a message, not the memory of its pixels. Only
// regular files are read: a folder, a FIFO or a device is refused without waiting on it.
//
// Safe to call from any thread (the cache is guarded). Nothing here shows UI: failures come
// back as messages that name the file, as "<path>: no such file" or "<path>: not a PNG or JPEG
// image".
class VANTREL_HOST_EXPORT ArtworkFile
{
public:
    // What one artwork may be. A print-resolution sheet of a pack (a 45 x 30 cm book jacket at
    // 300 pixels an inch is 5300 x 3550 pixels) fits well within them; beyond them the decoded
    // picture alone would take more than 256 MiB.
    static constexpr qint64 MaximumFileSize = qint64(256) << 20;     // bytes (256 MiB)
    static constexpr int MaximumSide = 16384;                        // pixels, width or height
    static constexpr qint64 MaximumPixelCount = qint64(8192) * 8192; // width x height

    // The image at path (relative paths are taken from the working directory), or null with
    // *errorMessage set. A file read before and unchanged since (the same file, size and
    // modification time) is not read again while any shape still shows its image: every shape
    // of that file then shares one image. An edited file is read again.
    static ArtworkImagePtr load(const QString &path, QString *errorMessage);

    // The image at path read now, past the cache; null with *errorMessage set
    // ("<path>: <problem>").
    static ArtworkImagePtr read(const QString &path, QString *errorMessage);

    // How many images have been decoded since the program started: tests count the reads that a
    // shared image saves.
    static int decodeCount();
};

} // namespace vantrel::host
