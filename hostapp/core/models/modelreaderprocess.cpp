// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/models/modelreaderprocess.h"

#include "hostapp/core/files/programfolders.h"

#include "hostapp/core/models/modelchannel.h"
#include "hostapp/core/models/readeranswer.h"

#include <QByteArray>
#include <QFile>
#include <QList>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vantrel::host {

namespace {

using modelchannel::ChannelFd;
using modelchannel::ProtocolVersion;

bool waitForExit(pid_t child, int *status)
{
    for (;;) {
        const pid_t ended = ::waitpid(child, status, 0);
        if (ended == child)
            return true;
        if (ended < 0 && errno == EINTR)
            continue;
        return false; // for example when the program ignores SIGCHLD and children vanish
    }
}

QString tookTooLong(const ModelFile::Limits &limits)
{
    return QStringLiteral("reading the model took more than %1 s")
        .arg(limits.timeMilliseconds / 1000.);
}

// The reader program: bin/vantrel-model-reader beside the lib/ folder of this library, where
// the build puts it and the program files are laid out alike (as the plug-in is found in
// plugins/ beside bin/).
const QByteArray &readerProgram()
{
    static const QByteArray s_program
        = QFile::encodeName(programFile(QStringLiteral("bin/vantrel-model-reader")));
    return s_program;
}

// Starts the reader on path with its end of the pipe as descriptor 3, its output to /dev/null,
// every signal at its default and none blocked; nothing else of this process is passed on.
// Returns 0 or the error number.
int startReader(const QString &path, const ModelFile::Limits &limits, int channel, pid_t *child)
{
    QList<QByteArray> words = {readerProgram(),
                               QByteArray(ProtocolVersion),
                               QByteArray::number(qint64(::getpid())),
                               QByteArray::number(limits.nodeDepth),
                               QByteArray::number(limits.nodeCount),
                               QByteArray::number(limits.vertexCount),
                               QByteArray::number(limits.triangleCount),
                               QByteArray::number(limits.memoryBytes),
                               QByteArray::number(limits.timeMilliseconds),
                               QFile::encodeName(path)};
    std::vector<char *> arguments;
    for (QByteArray &word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawnattr_init(&attributes);
    ::posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    ::posix_spawn_file_actions_adddup2(&actions, channel, ChannelFd);
    ::posix_spawn_file_actions_addclosefrom_np(&actions, ChannelFd + 1);
    sigset_t mask;
    ::sigemptyset(&mask);
    ::posix_spawnattr_setsigmask(&attributes, &mask);
    ::sigfillset(&mask);
    ::posix_spawnattr_setsigdefault(&attributes, &mask);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    const int error
        = ::posix_spawn(child, arguments[0], &actions, &attributes, arguments.data(), environ);
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&actions);
    return error;
}

QString cannotStart(int error)
{
    return QStringLiteral("cannot start the model importer %1: %2")
        .arg(QFile::decodeName(readerProgram()), QString::fromLocal8Bit(std::strerror(error)));
}

} // namespace

MeshPtr ModelReaderProcess::read(const QString &path,
                                 const ModelFile::Limits &limits,
                                 ModelReadProgress *progress,
                                 QString *problem)
{
    // The reader's end is moved above the descriptors the reader is given, so that making it
    // descriptor 3 is always a real copy, which clears its close-on-exec flag.
    int pipe[2];
    if (::pipe2(pipe, O_CLOEXEC) != 0) {
        *problem = cannotStart(errno);
        return nullptr;
    }
    const int channel = ::fcntl(pipe[1], F_DUPFD_CLOEXEC, ChannelFd + 1);
    const int pipeError = errno;
    ::close(pipe[1]);
    if (channel < 0) {
        ::close(pipe[0]);
        *problem = cannotStart(pipeError);
        return nullptr;
    }
    pid_t child = 0;
    const int error = startReader(path, limits, channel, &child);
    ::close(channel); // so that this end sees the end of the pipe when the reader is gone
    if (error != 0) {
        ::close(pipe[0]);
        *problem = cannotStart(error);
        return nullptr;
    }

    const ReaderAnswer answer = ReaderAnswer::receive(pipe[0], child, limits, progress);
    const bool complete = answer.kind == ReaderAnswer::Refusal
                          || answer.kind == ReaderAnswer::OutOfMemory
                          || answer.kind == ReaderAnswer::Mesh;
    if (!complete)
        ::kill(child, SIGKILL); // past a limit, or talking nonsense; a reader already gone
                                // keeps the status it ended with
    ::close(pipe[0]);
    int status = 0;
    const bool ended = waitForExit(child, &status);

    if (answer.stop == ReaderAnswer::Stop::Cancelled) {
        *problem = QStringLiteral("reading was cancelled");
        return nullptr;
    }
    if (answer.stop == ReaderAnswer::Stop::TimedOut) {
        *problem = tookTooLong(limits);
        return nullptr;
    }
    const bool exitedOutOfMemory
        = ended && WIFEXITED(status) && WEXITSTATUS(status) == modelchannel::OutOfMemoryStatus;
    if (answer.stop == ReaderAnswer::Stop::OutOfMemory || answer.kind == ReaderAnswer::OutOfMemory
        || (answer.kind == ReaderAnswer::None && exitedOutOfMemory)) {
        *problem = QStringLiteral("reading the model needed more than %1 MiB")
                       .arg(limits.memoryBytes >> 20);
        return nullptr;
    }
    if (answer.kind == ReaderAnswer::Mesh)
        return answer.mesh;
    if (answer.kind == ReaderAnswer::Refusal) {
        *problem = answer.refusal;
        return nullptr;
    }
    if (answer.kind == ReaderAnswer::Malformed) {
        *problem = QStringLiteral("the model importer sent an answer that cannot be read");
    } else if (ended && WIFSIGNALED(status)) {
        const int signal = WTERMSIG(status);
        *problem = signal == SIGXCPU
                       ? tookTooLong(limits)
                       : QStringLiteral("the model importer failed (killed by signal %1: %2)")
                             .arg(signal)
                             .arg(QString::fromLocal8Bit(::strsignal(signal)));
    } else if (ended && WIFEXITED(status) && WEXITSTATUS(status) != 0) {
        *problem
            = QStringLiteral("the model importer failed (exit status %1)").arg(WEXITSTATUS(status));
    } else {
        *problem = QStringLiteral("the model importer ended without an answer");
    }
    return nullptr;
}

} // namespace vantrel::host
