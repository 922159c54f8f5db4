// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace vantrel::host {

class Document;

// Writes the contents of a scene file for a document (SceneFile describes the format).
class SceneWriter
{
public:
    // The file contents (UTF-8, indented, keys in alphabetical order). The scene must not lie
    // deeper than SceneFile::MaximumDepth (see tooDeepPlace()): that bounds the recursion.
    static QByteArray write(const Document &document);

    // The place of the first node nested deeper than the files allow, such as
    // "root.children[0].children[3]", or an empty string if there is none. Bounded however deep
    // the scene is.
    static QString tooDeepPlace(const Document &document);
};

} // namespace vantrel::host
