// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// The child's half of reading a model file in a process of its own (ModelReaderProcess is the
// parent's): lowering its own limits, reading the file and sending the answer through the pipe.

#include "hostapp/core/models/modelfile.h"

#include <QString>

#include <sys/resource.h>
#include <sys/types.h>

namespace vantrel::host {

// Runs in the forked child, which has only this thread: it calls nothing but the importer, file
// and pipe calls and plain computation, and leaves with _exit, so that no exit handler of the
// program runs twice and no buffered output of the parent's is written again. addressSpace is
// the child's address-space limit, 0 for none; parent is the process that forked it.
[[noreturn]] void runModelReaderChild(int fd,
                                      pid_t parent,
                                      const QString &path,
                                      const ModelFile::Limits &limits,
                                      rlim_t addressSpace);

} // namespace vantrel::host
