// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>

namespace vantrel::host {

// The thickness of the soft-cover books' cover card (the paperbacks, round corners or not), in
// centimetres: 300 g/m² card, thinner only where the book is too small to hold it.
inline float softCoverCard(float width, float thickness)
{
    return std::min({0.03f, 0.25f * thickness, 0.25f * width});
}

} // namespace vantrel::host
