// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstring>

namespace vantrel::host {

// A generator class that makes several products (the hard cover and the magazine, the disc
// cases, the devices) keeps one style a product in a table whose rows start with
// `const char *typeId`. This finds an identifier's row, matched exactly; any other identifier
// gets the first row, so that a generator made for it still has complete defaults.
template<class Style, std::size_t Count>
const Style &styleFor(const Style (&styles)[Count], const char *typeId)
{
    for (const Style &style : styles) {
        if (std::strcmp(style.typeId, typeId) == 0)
            return style;
    }
    return styles[0];
}

} // namespace vantrel::host
