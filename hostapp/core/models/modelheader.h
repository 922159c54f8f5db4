// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/models/modelfile.h"

#include <QString>

namespace vantrel::host {

// The counts a model file states before its data, checked against the limits before the
// importer allocates anything: a PLY file's element counts, a binary STL file's triangle count,
// and an OBJ file's vertex and face lines (counted by a plain scan of its lines, far quicker than
// reading them). Other formats are counted from the importer's first look instead.
class VANTREL_HOST_EXPORT ModelHeader
{
public:
    // False with *problem set (without the path) when the file states more vertices or
    // triangles than the limits allow; true when it states fewer, or states nothing.
    static bool check(const QString &path, const ModelFile::Limits &limits, QString *problem);

    // The messages of a count over its limit, shared with the checks after the importer's look.
    static QString tooManyVertices(qint64 count, qint64 limit);
    static QString tooManyTriangles(qint64 count, qint64 limit);
    static QString tooManyFaces(qint64 count, qint64 limit);
    // A triangle soup: its corners before identical ones are joined, allowed three times the
    // vertex limit (three corners a triangle).
    static QString tooManyCorners(qint64 count, qint64 limit);
};

} // namespace vantrel::host
