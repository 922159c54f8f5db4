// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <memory>

namespace vantrel::host {

// A shape's artwork: the decoded image, shared by every shape that prints it (copies made by
// Stack and Step and Repeat, and shapes that name the same file), never changed once read.
// Every artwork image is QImage::Format_RGBA8888 (bytes red, green, blue, alpha, alpha not
// premultiplied), its first scanline the top of the picture, whatever format the file had, so
// whoever draws or exports it can take its bytes as they are. ArtworkFile reads them.
using ArtworkImagePtr = std::shared_ptr<const QImage>;

} // namespace vantrel::host
