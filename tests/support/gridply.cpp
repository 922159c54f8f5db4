// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tests/support/gridply.h"

#include <QByteArray>
#include <QFile>

namespace vantrel::test {

bool writeGridPly(const QString &path, int side)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    const qint64 cells = qint64(side - 1) * (side - 1);
    file.write("ply\nformat binary_little_endian 1.0\nelement vertex "
               + QByteArray::number(qint64(side) * side)
               + "\nproperty float x\nproperty float y\nproperty float z\nelement face "
               + QByteArray::number(2 * cells)
               + "\nproperty list uchar int vertex_indices\nend_header\n");
    QByteArray row;
    for (int y = 0; y < side; ++y) {
        row.clear();
        for (int x = 0; x < side; ++x) {
            for (float v : {x * 0.1f, y * 0.1f, 0.f})
                row.append(reinterpret_cast<const char *>(&v), 4);
        }
        file.write(row);
    }
    // Each triangle is a count byte and three indices: 13 bytes.
    for (int y = 0; y + 1 < side; ++y) {
        row.clear();
        for (int x = 0; x + 1 < side; ++x) {
            const qint32 a = y * side + x;
            for (qint32 i : {a, a + 1, a + side, a + 1, a + side + 1, a + side}) {
                if (row.size() % 13 == 0)
                    row.append(char(3));
                row.append(reinterpret_cast<const char *>(&i), 4);
            }
        }
        file.write(row);
    }
    return file.flush() && file.error() == QFileDevice::NoError;
}

} // namespace vantrel::test
