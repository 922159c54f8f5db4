// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/core/files/scenereader.h"

#include <QByteArray>
#include <QString>

#include <functional>

namespace vantrel::host {

class BaseNode;
class Camera;
class Document;
class JsonText;

// Writes the contents of a scene file for a document (SceneFile describes the format), and the
// node tree of the canonical dump.
//
// The text goes out as it is made, one node to a line, so writing a scene of any size or depth
// needs no more memory than the output buffer and a list of the open groups: no tree of JSON
// values, no recursion.
class SceneWriter
{
public:
    // The file contents (UTF-8, keys in alphabetical order, children last).
    static void write(const Document &document, JsonText &out);
    static QByteArray write(const Document &document);

    // The children array of parent and everything below it, as `[` ... `]`. Each node is one
    // line `{<fields>, "children": [...]}`; fields writes a node's fields (without the children)
    // followed by ", ". level is the indentation level of parent's line.
    using NodeFields = std::function<void(const BaseNode &node, JsonText &out)>;
    static void
    writeChildren(const BaseNode &parent, int level, const NodeFields &fields, JsonText &out);

    // A node's fields, keys in alphabetical order, each followed by ", ". The dump shows the
    // kind as a number, and the mesh's vertex count and its artwork's width and height too.
    enum class Style { File, Dump };
    static void nodeFields(const BaseNode &node, Style style, JsonText &out);

    // A node's place as the selection stores it: child indices from the root, such as "0/2".
    static QString selectionPath(const BaseNode *node);
    // {"aspectRatio": ..., ..., "yaw": ...} and ["0/2", ...], as both the file and the dump
    // write them.
    static void cameraObject(const Camera &camera, JsonText &out);
    static void selectionArray(const Document &document, JsonText &out);

    // Why the document cannot be written as a file that opens again, with the place, as the
    // reader would refuse that file ("root.children[0].position[2]: 2e+07 is outside ..."); an
    // empty problem when it can. Checks the file's limits on nodes, nesting and numbers.
    static SceneReader::Refusal check(const Document &document);

    // Deeper lines are indented no further than this many levels, so that the indentation of a
    // deep tree cannot outgrow its contents.
    static constexpr int MaximumIndentLevel = 16;
};

// The indentation of a line at level (4 spaces a level, up to SceneWriter::MaximumIndentLevel).
void indent(JsonText &out, int level);

} // namespace vantrel::host
