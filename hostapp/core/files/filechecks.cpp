// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/files/filechecks.h"

#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vantrel::host {

namespace {

const char *const NotRegular = "is not a regular file (a device, FIFO or socket)";

} // namespace

QString inputFileProblem(const QString &path)
{
    if (path.isEmpty())
        return QStringLiteral("the file name is empty");
    const QFileInfo info(path); // follows symbolic links: what matters is what would be read
    if (!info.exists())
        return QStringLiteral("no such file");
    if (info.isDir())
        return QStringLiteral("is a folder, not a file");
    if (!info.isFile())
        return QLatin1String(NotRegular);
    return QString();
}

QString outputFileProblem(const QString &path)
{
    if (path.isEmpty())
        return QStringLiteral("the file name is empty");
    const QFileInfo info(path);
    if (info.exists()) {
        if (info.isDir())
            return QStringLiteral("is a folder");
        if (!info.isFile())
            return QLatin1String(NotRegular);
        return QString();
    }
    if (info.isSymLink()) // a link to nothing: the save would replace the link itself
        return QStringLiteral("is a symbolic link to a file that does not exist");
    const QFileInfo folder(info.absolutePath());
    if (!folder.exists())
        return QStringLiteral("no such folder: %1").arg(info.absolutePath());
    if (!folder.isDir())
        return QStringLiteral("%1 is not a folder").arg(info.absolutePath());
    return QString();
}

int openIfRegular(const QString &path, struct stat *info)
{
    const QByteArray name = QFile::encodeName(path);
    *info = {};
    // A FIFO or a device is refused before it is opened (opening a FIFO waits for a writer, and
    // opening a device can act on it) and again after: should the path have been replaced since,
    // O_NONBLOCK keeps the open from waiting, and the look at what was opened refuses it.
    if (::stat(name.constData(), info) != 0) {
        *info = {};
        return -1;
    }
    if (!S_ISREG(info->st_mode))
        return -1;
    const int fd = ::open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (fd < 0 || ::fstat(fd, info) != 0) {
        const int reason = errno;
        if (fd >= 0)
            ::close(fd);
        *info = {};
        errno = reason;
        return -1;
    }
    if (!S_ISREG(info->st_mode) || ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK) != 0) {
        const int reason = errno;
        ::close(fd);
        if (S_ISREG(info->st_mode))
            *info = {};
        errno = reason;
        return -1;
    }
    return fd;
}

bool openRegularFile(QFile &file, const QString &path, QString *problem)
{
    *problem = inputFileProblem(path);
    if (!problem->isEmpty())
        return false;
    struct stat info = {};
    const int fd = openIfRegular(path, &info);
    if (fd < 0) {
        *problem = info.st_mode != 0 ? QLatin1String(NotRegular)
                                     : QStringLiteral("cannot read the file: %1")
                                           .arg(QString::fromLocal8Bit(std::strerror(errno)));
        return false;
    }
    if (!file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        *problem = QStringLiteral("cannot read the file: %1").arg(file.errorString());
        ::close(fd);
        return false;
    }
    return true;
}

bool commitFile(QSaveFile &file, QString *problem)
{
    errno = 0;
    if (!file.flush()) {
        // Qt loses the system's reason for a failed flush ("Unknown error"); errno still has it.
        const int reason = errno;
        *problem = reason != 0 ? QString::fromLocal8Bit(std::strerror(reason)) : file.errorString();
        file.cancelWriting(); // the temporary file goes when file does
        return false;
    }
    if (!file.commit()) {
        *problem = file.errorString();
        return false;
    }
    return true;
}

} // namespace vantrel::host
