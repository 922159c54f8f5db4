// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"

#include <QString>

struct stat;
class QFile;
class QSaveFile;

namespace vantrel::host {

// Checks made on a path before the program reads or writes it, in the system's own terms, so
// that a careless or hostile path fails at once with a clear reason rather than half-way.
//
// Only regular files are read and written. A FIFO would block a read for ever, a device could
// yield endless data, and writing "over" either through a temporary file renamed into place
// would replace the device or FIFO with a regular file (as root, /dev/null itself).

// Why path cannot be read as a file ("no such file", "is a folder", "is not a regular file (a
// device, FIFO or socket)", "the file name is empty"), or an empty string.
VANTREL_HOST_EXPORT QString inputFileProblem(const QString &path);

// Opens path read-only if it is a regular file, looking before the open and again at what was
// opened (a FIFO put in the file's place after the first look cannot block the open): the
// descriptor, which the caller closes, with *info describing the file. -1 otherwise: *info then
// describes what the path is instead (a folder, FIFO, device or socket), or is all zero when
// the path could not be looked at or opened, with errno saying why.
VANTREL_HOST_EXPORT int openIfRegular(const QString &path, struct stat *info);

// The same into file, after inputFileProblem()'s checks. False
// with *problem set otherwise: the reasons of inputFileProblem(), or "cannot read the file:
// <the system's reason>".
VANTREL_HOST_EXPORT bool openRegularFile(QFile &file, const QString &path, QString *problem);

// Why path cannot be written as a file: an empty name, an existing folder, device, FIFO or socket,
// or a folder that does not exist. An empty string when it can be tried.
VANTREL_HOST_EXPORT QString outputFileProblem(const QString &path);

// Flushes everything written to file and commits it (renames the temporary file over path). On
// any failure the temporary file goes and the previous file stays: false with *problem set.
// (QSaveFile::commit() alone does not report a failure to write out its last buffered bytes,
// which for a small file are all of them.)
VANTREL_HOST_EXPORT bool commitFile(QSaveFile &file, QString *problem);

} // namespace vantrel::host
