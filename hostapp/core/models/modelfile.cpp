// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/models/modelfile.h"

#include "hostapp/core/files/filecache.h"
#include "hostapp/core/files/filechecks.h"
#include "hostapp/core/models/modelreaderprocess.h"

#include <QFile>
#include <QFileInfo>

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

MeshPtr ModelFile::load(const QString &path, QString *errorMessage)
{
    return s_cache.load(path, errorMessage, [](const QString &file, QString *error) {
        return read(file, Limits(), error);
    });
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
