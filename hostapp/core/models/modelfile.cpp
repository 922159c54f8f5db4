// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/models/modelfile.h"

#include "hostapp/core/files/filecache.h"
#include "hostapp/core/files/filechecks.h"
#include "hostapp/core/models/modelreaderprocess.h"
#include "hostapp/core/models/modelreadprogress.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

#include <unistd.h>

namespace vantrel::host {

namespace {

FileCache<Mesh> s_cache;

// Problems that need no importer, in the system's own terms (before the importer's less specific
// "Unable to open file"); empty when the file is worth reading.
QString problemBeforeReading(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return QStringLiteral("no such file");
    if (info.isDir())
        return QStringLiteral("is a folder, not a model file");
    if (!info.isFile()) // a device or a pipe, which could block a read for ever
        return QStringLiteral("is not a regular file");
    QFile file;
    QString problem;
    if (!openRegularFile(file, path, &problem)) // a FIFO put in its place since cannot block this
        return problem;
    if (file.size() == 0)
        return QStringLiteral("the file is empty");
    if (file.size() > ModelFile::MaximumFileSize) {
        return QStringLiteral("the file is %1 bytes; model files are limited to %2 MiB")
            .arg(file.size())
            .arg(ModelFile::MaximumFileSize >> 20);
    }
    return QString();
}

} // namespace

qint64 ModelFile::machineMemory()
{
    static const qint64 s_memory = [] {
        const long pages = ::sysconf(_SC_PHYS_PAGES);
        const long pageSize = ::sysconf(_SC_PAGESIZE);
        // A system that will not say is taken as a small machine of 2 GiB.
        return pages > 0 && pageSize > 0 ? qint64(pages) * pageSize : qint64(2) << 30;
    }();
    return s_memory;
}

qint64 ModelFile::readMemory()
{
    return machineMemory() / 2;
}

qint64 ModelFile::vertexLimit()
{
    return std::min(MostVertices, readMemory() / BytesPerVertex);
}

qint64 ModelFile::triangleLimit()
{
    return 2 * vertexLimit();
}

MeshPtr ModelFile::load(const QString &path, QString *errorMessage)
{
    return s_cache.load(path, errorMessage, [](const QString &file, QString *error) {
        Limits limits;
        const qint64 extraSeconds = QFileInfo(file).size() / ReadBytesPerSecond;
        limits.timeMilliseconds
            += int(std::min<qint64>(extraSeconds, MaximumFileSize / ReadBytesPerSecond)) * 1000;
        return read(file, limits, error);
    });
}

MeshPtr ModelFile::read(const QString &path, const Limits &limits, QString *errorMessage)
{
    QString problem = problemBeforeReading(path);
    MeshPtr mesh;
    if (problem.isEmpty()) {
        ModelReadProgress *progress = ModelReadProgress::current();
        if (progress)
            progress->started(path);
        mesh = ModelReaderProcess::read(path, limits, progress, &problem);
        if (progress)
            progress->finished(mesh != nullptr);
    }
    if (!mesh && errorMessage)
        *errorMessage = QStringLiteral("%1: %2").arg(path, problem);
    return mesh;
}

} // namespace vantrel::host
