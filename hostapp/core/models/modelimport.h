// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/models/modelfile.h"
#include "hostapp/core/scene/mesh.h"

#include <QString>

#include <memory>
#include <vector>

namespace vantrel::host {

// The reading of a model file itself: the glTF node graph check, the Open Asset Import Library,
// the checks on what it made, and the conversion into mesh parts (see ModelFile for what the
// mesh holds).
//
// Runs in the reader program that ModelReaderProcess starts, so it may crash, loop or run out
// of memory without harm to the program.
class VANTREL_HOST_EXPORT ModelImport
{
public:
    // The parts of the model at path, or false with *problem set (without the path). The node
    // limits come from limits; the vertex and triangle limits are ModelFile's. A failed
    // allocation is thrown as std::bad_alloc, also when it happens inside the importer.
    static bool read(const QString &path,
                     const ModelFile::Limits &limits,
                     std::vector<std::unique_ptr<MeshPart>> *parts,
                     QString *problem);
};

} // namespace vantrel::host
