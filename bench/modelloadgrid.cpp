// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "modelloadgrid.h"

#include <QDir>
#include <QSaveFile>

#include <cmath>
#include <cstring>

namespace {

// The grid spans 200 x 200 units whatever its vertex count, clear of the floor (z from 1 to 9);
// the wave's height and length keep its slopes gentle (under 30 degrees).
constexpr float Span = 200.f, Height = 4.f, Length = 60.f;

void append(QByteArray &out, const void *data, int size)
{
    out.append(static_cast<const char *>(data), size);
}

// Writes out to file when it has grown past a few MiB, so that the whole file is never in memory.
void flush(QSaveFile &file, QByteArray &out, bool force)
{
    if (out.size() < (8 << 20) && !force)
        return;
    if (file.write(out) != out.size())
        qFatal("cannot write %s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
    out.clear();
}

int sideFor(long long vertices)
{
    return std::max(2, int(std::lround(std::sqrt(double(vertices)))));
}

// The point of the grid at row and column, and its normal: the normal of z = f(x, y) is
// (-df/dx, -df/dy, 1), normalised.
void gridPoint(int side, int row, int column, float p[3], float n[3])
{
    const float step = Span / float(side - 1), k = 2.f * float(M_PI) / Length;
    const float x = float(column) * step - Span / 2, y = float(row) * step - Span / 2;
    p[0] = x;
    p[1] = y;
    p[2] = Height * (1.25f + std::sin(k * x) * std::cos(0.7f * k * y));
    const float dx = Height * k * std::cos(k * x) * std::cos(0.7f * k * y);
    const float dy = -Height * 0.7f * k * std::sin(k * x) * std::sin(0.7f * k * y);
    const float length = std::sqrt(dx * dx + dy * dy + 1.f);
    n[0] = -dx / length;
    n[1] = -dy / length;
    n[2] = 1.f / length;
}

void writeVertices(QSaveFile &file, QByteArray &out, int side, bool normals)
{
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column) {
            float p[3], n[3];
            gridPoint(side, row, column, p, n);
            append(out, p, sizeof p);
            if (normals)
                append(out, n, sizeof n);
            flush(file, out, false);
        }
    }
}

void writeFaces(QSaveFile &file, QByteArray &out, int side)
{
    for (int row = 0; row + 1 < side; ++row) {
        for (int column = 0; column + 1 < side; ++column) {
            const qint32 a = row * side + column, b = a + 1, c = a + side, d = c + 1;
            const qint32 corners[2][3] = {{a, b, d}, {a, d, c}};
            for (const auto &triangle : corners) {
                out.append(char(3));
                append(out, triangle, sizeof triangle);
            }
            flush(file, out, false);
        }
    }
}

} // namespace

GridFile writeGridPly(const QString &folder, long long vertices, bool normals)
{
    static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN, "the grid is written in the machine's order");
    const int side = sideFor(vertices);
    GridFile grid;
    grid.vertices = qint64(side) * side;
    grid.triangles = 2 * qint64(side - 1) * (side - 1);
    const double millions = double(grid.vertices) / 1e6;
    grid.name = QStringLiteral("grid-%1M%2.ply")
                    .arg(QString::number(millions, 'g', 2), normals ? "-normals" : "");
    grid.path = QDir(folder).filePath(grid.name);
    QSaveFile file(grid.path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write %s: %s", qPrintable(grid.path), qPrintable(file.errorString()));
    QByteArray out = "ply\nformat binary_little_endian 1.0\nelement vertex "
                     + QByteArray::number(grid.vertices)
                     + "\nproperty float x\nproperty float y\nproperty float z\n";
    if (normals)
        out += "property float nx\nproperty float ny\nproperty float nz\n";
    out += "element face " + QByteArray::number(grid.triangles)
           + "\nproperty list uchar int vertex_indices\nend_header\n";
    writeVertices(file, out, side, normals);
    writeFaces(file, out, side);
    flush(file, out, true);
    grid.bytes = file.size();
    if (!file.commit())
        qFatal("cannot write %s: %s", qPrintable(grid.path), qPrintable(file.errorString()));
    return grid;
}

vantrel::host::MeshPtr gridMesh(long long vertices)
{
    const int side = sideFor(vertices);
    std::vector<VertexRecord> records(std::size_t(side) * std::size_t(side), VertexRecord{});
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column) {
            VertexRecord &record
                = records[std::size_t(row) * std::size_t(side) + std::size_t(column)];
            gridPoint(side, row, column, record.position, record.normal);
        }
    }
    std::vector<quint32> indices;
    indices.reserve(6 * std::size_t(side - 1) * std::size_t(side - 1));
    for (int row = 0; row + 1 < side; ++row) {
        for (int column = 0; column + 1 < side; ++column) {
            const quint32 a = quint32(row * side + column), b = a + 1, c = a + quint32(side),
                          d = c + 1;
            indices.insert(indices.end(), {a, b, d, a, d, c});
        }
    }
    std::vector<std::unique_ptr<vantrel::host::MeshPart>> parts;
    parts.push_back(
        std::make_unique<vantrel::host::MeshPart>(std::move(records), std::move(indices)));
    return std::make_shared<const vantrel::host::Mesh>(std::move(parts));
}
