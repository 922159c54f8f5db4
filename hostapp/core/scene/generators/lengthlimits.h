// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

namespace vantrel::host {

// The range the generators' WRITE accessors hold every length parameter to, in centimetres.
// The lower limit keeps every mesh valid (no zero-length edges, no faces without area, room for
// the thinnest board inside the thinnest book); the upper one, ten metres, is beyond any package
// or print the program shows and keeps float positions precise to well under a millimetre.
constexpr float MinimumLength = 0.01f;
constexpr float MaximumLength = 1000.f;

} // namespace vantrel::host
