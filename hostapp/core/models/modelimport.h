// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/models/modelfile.h"
#include "hostapp/core/scene/mesh.h"

#include <QString>

#include <cstddef>
#include <memory>
#include <vector>

namespace vantrel::host {

// The reading of a model file itself: the counts in the file's header, the glTF node graph
// check, the Open Asset Import Library, the checks on what it made, and the conversion into the
// host's vertex records (see ModelFile for what the mesh holds).
//
// The importer is asked only for what a mesh needs. A mesh whose triangles share their corners
// (PLY, glTF and the like, and every scan) is taken as it is: triangles are made from polygons,
// normals are computed only where the file has none, and nothing is welded. A triangle soup (STL,
// OBJ as the importer reads it) has its identical corners joined and its normals smoothed across
// edges under 50 degrees. The records are built straight from the importer's arrays, a piece at
// a time, and handed on as they are built, so the finished mesh never exists twice.
//
// Runs in the reader program that ModelReaderProcess starts, so it may crash, loop or run out
// of memory without harm to the program.
class VANTREL_HOST_EXPORT ModelImport
{
public:
    // Where the mesh goes as it is built: the counts of the whole mesh first, then each part's
    // counts, its vertex records (in pieces) and its indices (in pieces). Nothing reaches a sink
    // for a model that is refused. Returning false from any call stops the reading (the other
    // end is gone).
    class Sink
    {
    public:
        virtual ~Sink();
        // How far the reading is, in thousandths, until the mesh starts.
        virtual void progressed(unsigned int thousandths) = 0;
        virtual bool begin(quint32 partCount, quint64 vertexCount, quint64 indexCount) = 0;
        virtual bool beginPart(quint32 vertexCount, quint32 indexCount) = 0;
        virtual bool vertices(const VertexRecord *records, std::size_t count) = 0;
        virtual bool indices(const quint32 *indices, std::size_t count) = 0;
    };

    // A sink that keeps the parts, for reading in this process.
    class Parts final : public Sink
    {
    public:
        void progressed(unsigned int) override {}
        bool begin(quint32 partCount, quint64 vertexCount, quint64 indexCount) override;
        bool beginPart(quint32 vertexCount, quint32 indexCount) override;
        bool vertices(const VertexRecord *records, std::size_t count) override;
        bool indices(const quint32 *indices, std::size_t count) override;
        // The parts read, handed over once.
        std::vector<std::unique_ptr<MeshPart>> take();

    private:
        void finishPart();

        std::vector<std::unique_ptr<MeshPart>> m_parts;
        std::vector<VertexRecord> m_vertices;
        std::vector<quint32> m_indices;
        bool m_inPart = false;
    };

    enum class Result { Read, Refused, SinkGone };

    // Reads the model at path into sink. Refused comes with *problem set (without the path).
    // A failed allocation is thrown as std::bad_alloc, also when it happens inside the importer.
    static Result
    read(const QString &path, const ModelFile::Limits &limits, Sink &sink, QString *problem);
};

} // namespace vantrel::host
