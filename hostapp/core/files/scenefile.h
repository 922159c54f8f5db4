// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"

#include <QByteArray>
#include <QString>

#include <memory>

namespace vantrel::host {

class Document;

// Scene files: a document as versioned JSON (docs/scene-format.md describes the format).
//
// Reading never touches an existing document: it builds a new one and hands it over only when
// the whole file was read, so a bad file changes nothing. Each refusal is one message that names
// the file and the place, as "shelf.json:14:9: unterminated object" (JSON syntax, line:column)
// or "shelf.json: root.children[2].rotation: expected 3 numbers, found 2" (a path to the field).
// Files are read and written on the GUI thread; nothing here shows UI.
class VANTREL_HOST_EXPORT SceneFile
{
public:
    // The version this program writes, and the newest it reads.
    static constexpr int CurrentVersion = 1;
    static constexpr const char *FormatName = "vantrel-scene";

    // Limits that keep an absurd file from exhausting memory or the stack. A file beyond any of
    // them is refused; save() refuses to write a scene beyond them. They agree: a scene within
    // the node, depth and text limits always makes a file within the size limit (each node
    // takes at most a few KiB of text), so whatever opens or is built within them can be saved.
    static constexpr qint64 MaximumFileSize = qint64(1) << 30; // bytes (1 GiB)
    static constexpr int MaximumNodeCount = 200000;            // not counting the root
    static constexpr int MaximumDepth = 256;                   // the root's children are at depth 1
    // Names and text parameters (a model's path), in characters; neither may hold a control
    // character (a line break, a tab).
    static constexpr int MaximumNameLength = 256;
    static constexpr int MaximumTextLength = 1024;
    // A shape's artwork path, in characters, no control characters either. Shorter than a text
    // parameter so that a model shape with the longest path and artwork still fits the node
    // budget the file size limit allows.
    static constexpr int MaximumArtworkPathLength = 256;
    // Magnitudes, checked before any value reaches the scene.
    static constexpr double MaximumPosition = 1e7; // position, camera target (cm)
    static constexpr double MaximumRotation = 1e6; // degrees
    static constexpr double MaximumScale = 1e6;
    static constexpr double MaximumOther = 1e9; // every other number

    // Why text cannot be a name (limit MaximumNameLength) or a text parameter (limit
    // MaximumTextLength) in a scene file, or an empty string.
    static QString textProblem(const QString &text, int limit);

    // A new document (no undo steps) with the scene of the file, or null with *errorMessage set.
    // The file name in messages is path as given. Relative model paths in the file start from
    // the folder of fileName, and a model file that cannot be read refuses the whole scene;
    // likewise relative artwork paths and artwork images.
    static std::unique_ptr<Document> load(const QString &path, QString *errorMessage);
    static std::unique_ptr<Document>
    fromJson(const QByteArray &json, const QString &fileName, QString *errorMessage);

    // Writes the document to path through a temporary file renamed over the original, so a
    // failed save leaves the previous file as it was. Refuses a scene that the loader would
    // refuse (such as a position beyond the limits), naming the place, rather than write a file
    // that cannot be opened again. Model and image files are not part of that check: a model or
    // an artwork image that went missing after it was loaded does not stop a save. Messages read
    // "Cannot save <path>: <reason>".
    static bool save(const QString &path, const Document &document, QString *errorMessage);
    // The file contents for the document (UTF-8, indented, keys in alphabetical order).
    static QByteArray toJson(const Document &document);
};

} // namespace vantrel::host
