// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"

#include <QString>

namespace vantrel::host {

// A path among the program's own files, given relative to the folder that holds the host
// library's lib/ folder: "bin/vantrel-model-reader", "share/vantrel/artwork". The build lays its
// output out as an installation does, so the same path serves both. Cleaned, never checked.
VANTREL_HOST_EXPORT QString programFile(const QString &relativePath);

} // namespace vantrel::host
