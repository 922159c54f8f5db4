// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/scene/mesh.h"

#include <QString>

namespace vantrel::host {

// Model files (OBJ, STL, PLY, glTF, FBX, 3DS, Collada and the other formats of the Open Asset
// Import Library) read into a host mesh.
//
// The mesh has one part per mesh of the file (the importer groups triangles by material), with
// the node transforms of the file baked into the vertices. Coordinates are taken as they are:
// one unit of the file is one scene unit (a centimetre), z up, and nothing is rescaled or turned.
// Polygons become triangles; points and lines are dropped. Normals come from the file, or are
// generated where it has none (smooth across edges under 50 degrees, sharp beyond). Texture
// coordinates come from the first channel, with v running down the image as in every host mesh.
//
// Reading is bounded before the heavy work, whatever the file: a glTF file's node graph is
// checked before the importer sees it (see GltfNodeGraph), and the importer runs in a child
// process with limits of its own on memory and time (see ModelReaderProcess), so that a file
// that makes it crash, loop or swallow memory costs a message, never the program and the
// user's unsaved scene.
//
// Call on the GUI thread. Nothing here shows UI: failures come back as messages that name the
// file, as "<path>: no such file" or "<path>: contains no triangles".
class VANTREL_HOST_EXPORT ModelFile
{
public:
    // Limits that keep an absurd or hostile file from exhausting memory. A model beyond them is
    // refused. The counts are those of the finished mesh, with every placement of an instanced
    // piece counted; they are read from the file's header where its format has one (PLY, STL)
    // and otherwise from the importer's first look, before any heavy work.
    static constexpr qint64 MaximumFileSize = qint64(2) << 30; // bytes (2 GiB)
    // The file's node tree: levels below the top (whose own nodes are level 1), and nodes in all
    // with a node counted once for each path that reaches it, as the importer copies it.
    static constexpr int MaximumNodeDepth = 256;
    static constexpr qint64 MaximumNodeCount = 100000;
    // Reading may take a minute, and a second more for every ReadBytesPerSecond of the file: a
    // model at the vertex limit takes longer than a minute to read on a busy machine.
    static constexpr int MaximumReadSeconds = 60;
    static constexpr qint64 ReadBytesPerSecond = qint64(10) << 20;

    // What reading, keeping and drawing one vertex of a model takes at most, in bytes: the
    // importer's copy of the file's vertex and its two triangles while the file is read, the
    // 60-byte vertex record and the triangles' indices kept in the scene, and the copy the
    // graphics driver keeps to draw them.
    static constexpr qint64 BytesPerVertex = 256;
    // The largest vertex count any machine allows: indices and counts stay well inside 32 bits.
    static constexpr qint64 MostVertices = 100000000;

    // The memory the machine has (physical memory), and the share of it model reading may
    // use: half, as one model is read at a time and the program and the system need the rest.
    static qint64 machineMemory();
    static qint64 readMemory();
    // The vertex limit from that share (half the memory at BytesPerVertex a vertex, at most
    // MostVertices): 50 million on a machine with 24 GiB. A closed surface has about two
    // triangles per vertex, so the triangle limit is twice the vertex limit.
    static qint64 vertexLimit();
    static qint64 triangleLimit();

    // The limits of one reading; load() reads with the defaults. Tests narrow them to reach a
    // limit quickly, or widen the node checks to let a hostile graph through to the importer.
    struct Limits
    {
        int nodeDepth = MaximumNodeDepth;
        qint64 nodeCount = MaximumNodeCount;
        qint64 vertexCount = vertexLimit();
        qint64 triangleCount = triangleLimit();
        // What reading one model may take: memory beyond what the reading process itself uses,
        // and time (wall clock, and processor time in the reading process).
        qint64 memoryBytes = readMemory();
        int timeMilliseconds = MaximumReadSeconds * 1000;
    };

    // The model at path (relative paths are taken from the working directory), or null with
    // *errorMessage set. Read with the default limits and the time allowance for the file's
    // size. A file read before and unchanged since (the same file, size and
    // modification time) is not read again while any shape still shows its mesh: every shape
    // of that file then shares one mesh.
    static MeshPtr load(const QString &path, QString *errorMessage);

    // The model at path read now, past the cache, within limits; null with *errorMessage set
    // ("<path>: <problem>").
    static MeshPtr read(const QString &path, const Limits &limits, QString *errorMessage);
};

} // namespace vantrel::host
