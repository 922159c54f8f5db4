// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/filechecks.h"

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

bool openRegularFile(QFile &file, const QString &path, QString *problem)
{
    *problem = inputFileProblem(path);
    if (!problem->isEmpty())
        return false;
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    struct stat info = {};
    if (fd < 0 || ::fstat(fd, &info) != 0) {
        *problem = QStringLiteral("cannot read the file: %1")
                       .arg(QString::fromLocal8Bit(std::strerror(errno)));
    } else if (!S_ISREG(info.st_mode)) {
        *problem = QLatin1String(NotRegular);
    } else if (::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK) != 0
               || !file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        *problem = QStringLiteral("cannot read the file: %1").arg(file.errorString());
    } else {
        return true;
    }
    if (fd >= 0)
        ::close(fd);
    return false;
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
