// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/models/modelreaderchild.h"

#include "hostapp/core/models/modelchannel.h"
#include "hostapp/core/models/modelimport.h"

#include <QByteArray>

#include <algorithm>
#include <cerrno>
#include <exception>
#include <new>

#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace vantrel::host {

namespace {

using modelchannel::Kind;
using modelchannel::MaximumRefusalBytes;
using modelchannel::MessageHeader;
using modelchannel::PartHeader;

// Lowers a limit of the calling process; a limit can only be lowered below its hard limit.
void lowerLimit(int resource, rlim_t soft, rlim_t hard)
{
    rlimit limit = {};
    if (::getrlimit(resource, &limit) != 0)
        return;
    limit.rlim_max = std::min(limit.rlim_max, hard);
    limit.rlim_cur = std::min(limit.rlim_max, soft);
    ::setrlimit(resource, &limit);
}

bool writeAll(int fd, const void *data, std::size_t size)
{
    const char *bytes = static_cast<const char *>(data);
    while (size > 0) {
        const ssize_t written = ::write(fd, bytes, size);
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        bytes += written;
        size -= std::size_t(written);
    }
    return true;
}

bool sendResult(int fd, const QString &path, const ModelFile::Limits &limits)
{
    std::vector<std::unique_ptr<MeshPart>> parts;
    QString problem;
    bool read = false;
    try {
        read = ModelImport::read(path, limits, &parts, &problem);
    } catch (const std::bad_alloc &) {
        throw;
    } catch (const std::exception &error) {
        problem = QString::fromUtf8(error.what());
    }
    if (!read) {
        const QByteArray text = problem.toUtf8().left(MaximumRefusalBytes);
        const MessageHeader header = {quint32(Kind::Refusal), quint32(text.size()), 0, 0};
        return writeAll(fd, &header, sizeof header) && writeAll(fd, text.constData(), text.size());
    }
    MessageHeader header = {quint32(Kind::Mesh), quint32(parts.size()), 0, 0};
    for (const std::unique_ptr<MeshPart> &part : parts) {
        header.vertexCount += part->GetVertices().size();
        header.indexCount += part->indices().size();
    }
    if (!writeAll(fd, &header, sizeof header))
        return false;
    for (const std::unique_ptr<MeshPart> &part : parts) {
        const std::vector<VertexRecord> &vertices = part->GetVertices();
        const std::vector<quint32> &indices = part->indices();
        const PartHeader partHeader = {quint32(vertices.size()), quint32(indices.size())};
        if (!writeAll(fd, &partHeader, sizeof partHeader)
            || !writeAll(fd, vertices.data(), vertices.size() * sizeof(VertexRecord))
            || !writeAll(fd, indices.data(), indices.size() * sizeof(quint32)))
            return false;
    }
    return true;
}

bool sendAnswer(int fd, const QString &path, const ModelFile::Limits &limits)
{
    try {
        return sendResult(fd, path, limits);
    } catch (const std::bad_alloc &) {
        // Everything the reading held is released by now; the header needs no allocation.
        const MessageHeader header = {quint32(Kind::OutOfMemory), 0, 0, 0};
        return writeAll(fd, &header, sizeof header);
    }
}

} // namespace

void runModelReaderChild(
    int fd, pid_t parent, const QString &path, const ModelFile::Limits &limits, rlim_t addressSpace)
{
    // End with the parent, however it ends, instead of reading on for nobody.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent)
        ::_exit(1);
    // A fault ends the child at once with its signal, for the parent to report: no handler that
    // the program installed (a sanitizer's, a crash reporter's) runs here, and no core file is
    // left in the user's folder.
    for (int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGSYS, SIGXCPU, SIGPIPE})
        ::signal(signal, SIG_DFL);
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    lowerLimit(RLIMIT_CORE, 0, 0);
    // Processor time in whole seconds (SIGXCPU at the soft limit, SIGKILL a second later): it
    // also ends a child whose parent could no longer watch the clock.
    const rlim_t seconds = rlim_t(std::max(1, (limits.timeMilliseconds + 999) / 1000));
    lowerLimit(RLIMIT_CPU, seconds, seconds + 1);
    if (addressSpace > 0)
        lowerLimit(RLIMIT_AS, addressSpace, addressSpace);
    ::_exit(sendAnswer(fd, path, limits) ? 0 : 1);
}

} // namespace vantrel::host
