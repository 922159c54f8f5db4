// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// vantrel-save-with-file-limit <bytes> <scene to load> <path to save to>
//
// Loads a scene and saves it while the process may write at most <bytes> bytes to any file, so
// that the write fails half-way with EFBIG, the way a full disk fails. Running as root, the
// tests cannot make a write fail through permissions. Prints the save's message and exits 1
// when the save fails, 2 on wrong use.

#include "hostapp/core/document/document.h"
#include "hostapp/core/files/scenefile.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>

#include <sys/resource.h>

using vantrel::host::SceneFile;

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    bool isNumber = false;
    const rlim_t bytes = arguments.value(1).toULongLong(&isNumber);
    if (arguments.size() != 4 || !isNumber) {
        std::fprintf(stderr, "Usage: vantrel-save-with-file-limit <bytes> <scene> <target>\n");
        return 2;
    }
    QString error;
    const auto document = SceneFile::load(arguments.at(2), &error);
    if (!document) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 2;
    }
    // Beyond the limit a write fails with EFBIG instead of the default SIGXFSZ ending the process.
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{bytes, bytes};
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0) {
        std::perror("setrlimit");
        return 2;
    }
    if (!SceneFile::save(arguments.at(3), *document, &error)) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 1;
    }
    return 0;
}
