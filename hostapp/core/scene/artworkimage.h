// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <memory>

namespace vantrel::host {

// A shape's artwork: the decoded image, shared by every shape that prints it (copies made by
// Stack and Step and Repeat, and shapes that name the same file), never changed once read.
using ArtworkImagePtr = std::shared_ptr<const QImage>;

} // namespace vantrel::host
