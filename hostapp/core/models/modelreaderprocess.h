// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/core/models/modelfile.h"
#include "hostapp/core/scene/mesh.h"

#include <QString>

namespace vantrel::host {

class ModelReadProgress;

// Reads a model file in a process of its own, so that whatever the importer does with a hostile
// or damaged file stays there: a crash, an endless loop, or an appetite for memory ends that
// process, and this one reports it and carries on with the user's scene as it was.
//
// The reader is a program of its own (vantrel-model-reader, in bin/ beside the lib/ folder of
// this library), started for each file with posix_spawn. It is not a fork of this process: a
// fork of a threaded program copies locks that other threads held at that moment (the memory
// allocator's among them), and a child that needs one waits for ever. The reader lowers its own
// limits before it opens the file: address space (its own plus the limits' memory budget; not
// in AddressSanitizer builds, which reserve terabytes of shadow memory up front, so there this
// side watches the reader's resident memory instead), processor time, and no core file. This
// side waits no longer than the limits' time and kills a reader that takes longer.
//
// The reader sends its answer through a pipe: a header with the counts, then the vertex records
// and indices of each part. This side checks every count against ModelFile's limits before it
// allocates anything, and every index against its part, so the channel cannot make it allocate
// without bound or draw outside a part. Progress messages precede the answer while a large model
// is read; the mesh itself streams through the pipe as the reader builds it.
class ModelReaderProcess
{
public:
    // The model at path, or null with *problem set (without the path). The file is not checked
    // here (see ModelFile::read for what is checked first). progress, when not null, hears how
    // far the reading is at least every 100 ms and may cancel it ("reading was cancelled").
    static MeshPtr read(const QString &path,
                        const ModelFile::Limits &limits,
                        ModelReadProgress *progress,
                        QString *problem);
};

} // namespace vantrel::host
