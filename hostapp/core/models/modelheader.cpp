// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/models/modelheader.h"

#include <QByteArray>
#include <QFile>
#include <QList>

#include <algorithm>
#include <cstring>
#include <limits>

namespace vantrel::host {

namespace {

// A PLY header is a few lines of text; one longer than this is not a model anyone made.
constexpr qint64 MostPlyHeaderBytes = 64 * 1024;
// The pieces an OBJ file is scanned in.
constexpr qint64 ScanPieceBytes = 1 << 20;

// A count as written in a header: a whole number, or -1 when it is not one. Counts beyond any
// limit read as the largest number, so that they are refused rather than wrapped.
qint64 headerCount(const QByteArray &word)
{
    bool isNumber = false;
    const qint64 value = word.toLongLong(&isNumber);
    if (isNumber)
        return value;
    const bool digits = !word.isEmpty() && std::all_of(word.begin(), word.end(), [](char c) {
        return c >= '0' && c <= '9';
    });
    return digits ? std::numeric_limits<qint64>::max() : -1; // too long for 64 bits, or no count
}

bool checkPly(QFile &file, const ModelFile::Limits &limits, QString *problem)
{
    const QByteArray header = file.peek(MostPlyHeaderBytes);
    const int end = header.indexOf("end_header");
    // A header the importer cannot find the end of is for the importer to refuse in its words.
    const QList<QByteArray> lines = header.left(end < 0 ? header.size() : end).split('\n');
    for (const QByteArray &line : lines) {
        const QList<QByteArray> words = line.simplified().split(' ');
        if (words.size() != 3 || words[0] != "element")
            continue;
        const qint64 count = headerCount(words[2]);
        if (words[1] == "vertex" && count > limits.vertexCount) {
            *problem = ModelHeader::tooManyVertices(count, limits.vertexCount);
            return false;
        }
        // Every face is at least one triangle.
        if (words[1] == "face" && count > limits.triangleCount) {
            *problem = ModelHeader::tooManyFaces(count, limits.triangleCount);
            return false;
        }
    }
    return true;
}

// A binary STL file: 80 bytes of header, the triangle count, and 50 bytes a triangle, which is
// how it is told from a text STL file (whose size never fits that exactly by chance alone is
// not assumed: the size must match the count).
bool checkStl(QFile &file, const ModelFile::Limits &limits, QString *problem)
{
    const QByteArray start = file.peek(84);
    if (start.size() < 84)
        return true;
    quint32 triangles = 0;
    std::memcpy(&triangles, start.constData() + 80, sizeof triangles);
    if (file.size() != 84 + qint64(triangles) * 50)
        return true;
    if (triangles > limits.triangleCount) {
        *problem = ModelHeader::tooManyTriangles(triangles, limits.triangleCount);
        return false;
    }
    if (3 * qint64(triangles) > 3 * limits.vertexCount) {
        *problem = ModelHeader::tooManyCorners(3 * qint64(triangles), limits.vertexCount);
        return false;
    }
    return true;
}

// An OBJ file's "v" and "f" lines, counted a piece at a time.
bool checkObj(QFile &file, const ModelFile::Limits &limits, QString *problem)
{
    qint64 positions = 0, faces = 0;
    enum { LineStart, SawV, SawF, RestOfLine } state = LineStart;
    QByteArray piece;
    while (!(piece = file.read(ScanPieceBytes)).isEmpty()) {
        const char *next = piece.constData();
        const char *const end = next + piece.size();
        while (next < end) {
            if (state == RestOfLine) {
                next = static_cast<const char *>(std::memchr(next, '\n', std::size_t(end - next)));
                if (!next)
                    break;
                ++next;
                state = LineStart;
                continue;
            }
            const char c = *next++;
            if (c == '\n') {
                state = LineStart;
            } else if (state == LineStart) {
                state = c == 'v' ? SawV : c == 'f' ? SawF : RestOfLine;
            } else {
                if (c == ' ' || c == '\t')
                    ++(state == SawV ? positions : faces);
                state = RestOfLine;
            }
        }
    }
    if (positions > limits.vertexCount) {
        *problem = ModelHeader::tooManyVertices(positions, limits.vertexCount);
        return false;
    }
    if (faces > limits.triangleCount) {
        *problem = ModelHeader::tooManyFaces(faces, limits.triangleCount);
        return false;
    }
    return true;
}

} // namespace

bool ModelHeader::check(const QString &path, const ModelFile::Limits &limits, QString *problem)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return true; // the importer says why it cannot be read
    const QByteArray start = file.peek(5);
    if (start.startsWith("ply\n") || start.startsWith("ply\r\n"))
        return checkPly(file, limits, problem);
    const QString suffix = path.section(QLatin1Char('.'), -1).toLower();
    if (suffix == QLatin1String("stl"))
        return checkStl(file, limits, problem);
    if (suffix == QLatin1String("obj"))
        return checkObj(file, limits, problem);
    return true;
}

QString ModelHeader::tooManyVertices(qint64 count, qint64 limit)
{
    return QStringLiteral("%1 vertices; models are limited to %2 vertices").arg(count).arg(limit);
}

QString ModelHeader::tooManyTriangles(qint64 count, qint64 limit)
{
    return QStringLiteral("%1 triangles; models are limited to %2 triangles").arg(count).arg(limit);
}

QString ModelHeader::tooManyFaces(qint64 count, qint64 limit)
{
    return QStringLiteral("%1 faces; models are limited to %2 triangles").arg(count).arg(limit);
}

QString ModelHeader::tooManyCorners(qint64 count, qint64 limit)
{
    return QStringLiteral("%1 vertices before identical ones are joined; models are limited to "
                          "%2 vertices (%3 before joining)")
        .arg(count)
        .arg(limit)
        .arg(3 * limit);
}

} // namespace vantrel::host
