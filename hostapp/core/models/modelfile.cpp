// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/models/modelfile.h"

#include "hostapp/core/files/filechecks.h"
#include "hostapp/core/models/modelreaderprocess.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QMutex>
#include <QMutexLocker>

#include <iterator>

namespace vantrel::host {

namespace {

// A file is read again only when one of these changes; the modification time alone misses a
// rewrite within the file system's time resolution.
struct FileStamp
{
    qint64 size = -1;
    QDateTime modified;

    bool operator==(const FileStamp &other) const
    {
        return size == other.size && modified == other.modified;
    }
};

struct CacheEntry
{
    FileStamp stamp;
    std::weak_ptr<const Mesh> mesh; // weak: the cache never keeps a mesh alive on its own
};

// Meshes by canonical file path. Entries whose mesh is gone are dropped on the next load.
QMutex s_cacheMutex;
QHash<QString, CacheEntry> s_cache;

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

MeshPtr ModelFile::load(const QString &path, QString *errorMessage)
{
    const QFileInfo info(path);
    if (!info.isFile())
        return read(path, Limits(), errorMessage); // which names the problem
    const QString key = info.canonicalFilePath();
    const FileStamp stamp = {info.size(), info.lastModified()};
    {
        QMutexLocker locker(&s_cacheMutex);
        const auto found = s_cache.constFind(key);
        if (found != s_cache.constEnd() && found->stamp == stamp) {
            if (MeshPtr mesh = found->mesh.lock())
                return mesh;
        }
    }

    MeshPtr mesh = read(path, Limits(), errorMessage);
    if (!mesh)
        return nullptr;
    QMutexLocker locker(&s_cacheMutex);
    for (auto it = s_cache.begin(); it != s_cache.end();)
        it = it->mesh.expired() ? s_cache.erase(it) : std::next(it);
    s_cache.insert(key, {stamp, mesh});
    return mesh;
}

MeshPtr ModelFile::read(const QString &path, const Limits &limits, QString *errorMessage)
{
    QString problem = problemBeforeReading(path);
    MeshPtr mesh = problem.isEmpty() ? ModelReaderProcess::read(path, limits, &problem) : nullptr;
    if (!mesh && errorMessage)
        *errorMessage = QStringLiteral("%1: %2").arg(path, problem);
    return mesh;
}

} // namespace vantrel::host
