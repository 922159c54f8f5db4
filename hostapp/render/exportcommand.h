// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/core/commands/runcommand.h"
#include "hostapp/render/renderexport.h"

class QTextStream;

namespace vantrel::host {
class Document;
}

namespace vantrel::render {

// The glTF form a file name asks for, by its suffix in any letter case.
enum class GltfForm { None, Binary, Text }; // Binary: .glb, Text: .gltf
VANTREL_RENDER_EXPORT GltfForm gltfForm(const QString &path);

// Writes the document as glTF 2.0 in the form the name's suffix asks for (see GltfExporter). The
// file is replaced only once it is completely written; otherwise it is left as it was and the
// message names the file and the reason.
VANTREL_RENDER_EXPORT bool
writeGltf(const host::Document &document, const QString &path, QString *errorMessage);

struct ExportCommandOptions
{
    host::RunOptions run; // the scene and the scripts, as `vantrel run` takes them (no save)
    QString outPath;      // .glb or .gltf (checked by the caller)
};

// `vantrel export`: checks that the file can be written where asked, runs the scripts as `vantrel
// run` does, then writes the document. Returns the exit status: 0, or 1 when the scene or a
// script fails or the file cannot be written (the message names the file). Needs no OpenGL.
VANTREL_RENDER_EXPORT int
exportCommand(const ExportCommandOptions &options, QTextStream &out, QTextStream &err);

} // namespace vantrel::render
