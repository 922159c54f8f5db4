// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/core/models/modelfile.h"
#include "hostapp/core/scene/mesh.h"

#include <QString>

#include <sys/types.h>

namespace vantrel::host {

class ModelReadProgress;

// The model reader's answer as ModelReaderProcess receives it through the pipe: its progress
// passed on to the observer, then a refusal, a mesh, or word that memory ran out. Every count is
// checked against the limits before anything is allocated for it, and every index against its
// part before the part is kept. The receiving stops at the limits' time, at the memory budget in
// builds where the system cannot hold the reader to it, and when the observer cancels.
struct ReaderAnswer
{
    enum Kind { None, Refusal, OutOfMemory, Mesh, Malformed };
    enum class Stop { None, Closed, TimedOut, OutOfMemory, Cancelled, Failed };

    ReaderAnswer(Kind answerKind = None, QString text = QString(), MeshPtr answerMesh = nullptr);

    // Reads the answer of the reader child from fd.
    static ReaderAnswer
    receive(int fd, pid_t child, const ModelFile::Limits &limits, ModelReadProgress *progress);

    Kind kind;              // None when the reader ended or was stopped before a whole answer came
    QString refusal;        // the reader's reason, for Refusal
    MeshPtr mesh;           // for Mesh
    Stop stop = Stop::None; // why the receiving stopped early, if it did
};

} // namespace vantrel::host
