// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"

#include <QString>

namespace vantrel::host {

// Looks at a library file before the dynamic loader gets it: the file must be a regular file
// holding an ELF shared library for this program (the class, byte order and processor of the
// host's own code), whose header tables, segments and sections all lie within the file.
//
// The dynamic loader maps a library's segments as its program headers describe them, without
// comparing them with the file's size; the first touch of a mapped page past the end of the file
// then kills the whole program with SIGBUS. A download cut short, a copy interrupted half-way or a
// file that is something else under a library's name are ordinary mistakes, and they should end
// in a message rather than a crash. The check reads only the headers, with bounded reads; it never
// maps the file, and never opens a FIFO or a device (opening a FIFO could wait for ever).
//
// True when the file looks sound; otherwise false, with problem set to what is wrong, in words for
// the user, for example "damaged library: segment 2 ends at byte 1048576, past the end of the file
// (20000 bytes)".
VANTREL_HOST_EXPORT bool checkLibraryFile(const QString &path, QString *problem);

} // namespace vantrel::host
