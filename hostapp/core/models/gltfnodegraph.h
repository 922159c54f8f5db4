// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QtGlobal>

namespace vantrel::host {

// The node graph of a glTF file, checked before the model importer sees the file.
//
// The importer follows a glTF node graph recursively and copies every path through it into a
// tree of its own while it reads the file. A small file whose nodes form a long chain therefore
// overflows its stack, and one of a few dozen nodes that each list the previous one twice grows
// into millions of copies before anything else can be checked. Here the graph is walked without
// recursion, and the paths through it are counted instead of followed, so such a file is refused
// in a fraction of a second.
//
// Reads glTF 2 and glTF 1, as JSON text (.gltf) or binary (.glb, the JSON chunk only). A file
// that is not glTF, or whose JSON or structure this check cannot follow, is left to the
// importer's own checks: only a node graph that was read and found hostile is refused.
class GltfNodeGraph
{
public:
    // False, with *problem set (without the path), when path is a glTF file whose nodes nest
    // more than maximumDepth levels (a scene's own nodes are level 1), form a cycle, list a node
    // that does not exist, or give more than maximumNodes nodes in one scene once every node is
    // counted once for each path that reaches it (a node its parent lists twice counts twice,
    // with everything below it). True otherwise.
    static bool check(const QString &path, int maximumDepth, qint64 maximumNodes, QString *problem);
};

} // namespace vantrel::host
