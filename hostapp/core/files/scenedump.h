// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"

#include <QByteArray>

namespace vantrel::host {

class Document;

// The canonical dump of a whole document: the tree with names, kinds, visibility, transforms,
// generator identifiers and parameters, vertex counts and light parameters; the ambient level,
// lighting mode, camera and selection (as child-index paths such as "0/2"). Keys are sorted and
// numbers printed exactly, so two dumps are equal byte for byte exactly when the scenes are.
VANTREL_HOST_EXPORT QByteArray dumpScene(const Document &document);

} // namespace vantrel::host
