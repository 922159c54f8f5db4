// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/files/programfolders.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <dlfcn.h>

namespace vantrel::host {

QString programFile(const QString &relativePath)
{
    static const QString s_top = [] {
        Dl_info info = {};
        if (::dladdr(reinterpret_cast<void *>(&programFile), &info) == 0 || !info.dli_fname)
            return QDir::currentPath();
        return QFileInfo(QFile::decodeName(info.dli_fname)).canonicalPath() + QStringLiteral("/..");
    }();
    return QDir::cleanPath(s_top + QLatin1Char('/') + relativePath);
}

} // namespace vantrel::host
