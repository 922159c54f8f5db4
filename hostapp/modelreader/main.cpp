// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// vantrel-model-reader: reads one model file for the program that started it
// (ModelReaderProcess) and sends the answer through file descriptor 3. It is a program of its
// own, started afresh for each file, so that whatever the importer does with a hostile or
// damaged file (crash, loop, swallow memory) ends here and not in the user's program, and so
// that it starts with no threads and no locks held by anyone.

#include "hostapp/core/models/modelchannel.h"
#include "hostapp/core/models/modelimport.h"

#include <QByteArray>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

using vantrel::host::ModelFile;
using vantrel::host::ModelImport;
using vantrel::host::modelchannel::ChannelFd;
using vantrel::host::modelchannel::Kind;
using vantrel::host::modelchannel::MaximumRefusalBytes;
using vantrel::host::modelchannel::MessageHeader;
using vantrel::host::modelchannel::OutOfMemoryStatus;
using vantrel::host::modelchannel::PartHeader;
using vantrel::host::modelchannel::ProtocolVersion;

const char Usage[]
    = "Usage: vantrel-model-reader VERSION PARENT-PID NODE-DEPTH NODE-COUNT VERTEX-COUNT "
      "TRIANGLE-COUNT MEMORY-BYTES TIME-MS PATH\n"
      "Reads one model file for the vantrel program that started it and sends the mesh\n"
      "through file descriptor 3. Not meant to be run by hand.\n";

// Lowers a limit of this process; a limit can only be lowered below its hard limit.
void lowerLimit(int resource, rlim_t soft, rlim_t hard)
{
    rlimit limit = {};
    if (::getrlimit(resource, &limit) != 0)
        return;
    limit.rlim_max = std::min(limit.rlim_max, hard);
    limit.rlim_cur = std::min(limit.rlim_max, soft);
    ::setrlimit(resource, &limit);
}

#ifndef VANTREL_SHADOW_MEMORY
// This process's address space in bytes, from /proc; zero when unknown.
long long addressSpace()
{
    const int fd = ::open("/proc/self/statm", O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return 0;
    char text[128] = {};
    const ssize_t length = ::read(fd, text, sizeof text - 1);
    ::close(fd);
    long long pages = 0;
    if (length <= 0 || std::sscanf(text, "%lld", &pages) != 1)
        return 0;
    return pages * ::sysconf(_SC_PAGESIZE);
}
#endif

bool writeAll(const void *data, std::size_t size)
{
    const char *bytes = static_cast<const char *>(data);
    while (size > 0) {
        const ssize_t written = ::write(ChannelFd, bytes, size);
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

bool sendHeader(Kind kind, quint32 count = 0)
{
    const MessageHeader header = {quint32(kind), count, 0, 0};
    return writeAll(&header, sizeof header);
}

// The mesh written to the channel as it is built.
class ChannelSink final : public ModelImport::Sink
{
public:
    void progressed(unsigned int thousandths) override
    {
        if (thousandths != m_progress && !m_begun) {
            m_progress = thousandths;
            sendHeader(Kind::Progress, thousandths);
        }
    }
    bool begin(quint32 partCount, quint64 vertexCount, quint64 indexCount) override
    {
        m_begun = true;
        const MessageHeader header = {quint32(Kind::Mesh), partCount, vertexCount, indexCount};
        return writeAll(&header, sizeof header);
    }
    bool beginPart(quint32 vertexCount, quint32 indexCount) override
    {
        const PartHeader header = {vertexCount, indexCount};
        return writeAll(&header, sizeof header);
    }
    bool vertices(const VertexRecord *records, std::size_t count) override
    {
        return writeAll(records, count * sizeof(VertexRecord));
    }
    bool indices(const quint32 *indices, std::size_t count) override
    {
        return writeAll(indices, count * sizeof(quint32));
    }

    // Whether part of a mesh may have been written: then no other message can follow.
    bool begun() const { return m_begun; }

private:
    unsigned int m_progress = 0;
    bool m_begun = false;
};

bool sendResult(const QString &path, const ModelFile::Limits &limits, ChannelSink &sink)
{
    QString problem;
    ModelImport::Result result = ModelImport::Result::Refused;
    try {
        result = ModelImport::read(path, limits, sink, &problem);
    } catch (const std::bad_alloc &) {
        throw;
    } catch (const std::exception &error) {
        if (sink.begun())
            return false;
        problem = QString::fromUtf8(error.what());
    }
    if (result != ModelImport::Result::Refused)
        return result == ModelImport::Result::Read;
    const QByteArray text = problem.toUtf8().left(MaximumRefusalBytes);
    return sendHeader(Kind::Refusal, quint32(text.size()))
           && writeAll(text.constData(), std::size_t(text.size()));
}

// The exit status: 0 when the whole answer was sent.
int sendAnswer(const QString &path, const ModelFile::Limits &limits)
{
    ChannelSink sink;
    try {
        return sendResult(path, limits, sink) ? 0 : 1;
    } catch (const std::bad_alloc &) {
        if (sink.begun())
            return OutOfMemoryStatus;
        // Everything the reading held is released by now; the header needs no allocation.
        return sendHeader(Kind::OutOfMemory) ? 0 : 1;
    }
}

// A whole decimal number within [minimum, maximum], or false.
bool parseNumber(const char *text, long long minimum, long long maximum, long long *value)
{
    if (*text == '\0')
        return false;
    char *end = nullptr;
    errno = 0;
    const long long parsed = std::strtoll(text, &end, 10);
    if (errno != 0 || *end != '\0' || parsed < minimum || parsed > maximum)
        return false;
    *value = parsed;
    return true;
}

// The limits from the command line, in the order of Usage; false when any is malformed.
bool parseLimits(char **arguments, long long *parent, ModelFile::Limits *limits)
{
    long long nodeDepth = 0, nodeCount = 0, vertices = 0, triangles = 0, memory = 0,
              milliseconds = 0;
    constexpr long long Most = 0x7fffffffffffffffLL;
    if (!parseNumber(arguments[0], 1, Most, parent)
        || !parseNumber(arguments[1], 1, 0x7fffffff, &nodeDepth)
        || !parseNumber(arguments[2], 1, Most, &nodeCount)
        || !parseNumber(arguments[3], 1, ModelFile::MostVertices, &vertices)
        || !parseNumber(arguments[4], 1, 2 * ModelFile::MostVertices, &triangles)
        || !parseNumber(arguments[5], 1, Most, &memory)
        || !parseNumber(arguments[6], 1, 0x7fffffff, &milliseconds))
        return false;
    limits->nodeDepth = int(nodeDepth);
    limits->nodeCount = nodeCount;
    limits->vertexCount = vertices;
    limits->triangleCount = triangles;
    limits->memoryBytes = memory;
    limits->timeMilliseconds = int(milliseconds);
    return true;
}

// Takes this process out of the program's ways of ending before the file is opened.
void confine(const ModelFile::Limits &limits)
{
    // A fault ends the reader at once with its signal, for the parent to report: no handler that
    // a sanitizer installed at start runs, and no core file is left in the user's folder.
    for (int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGSYS, SIGXCPU, SIGPIPE})
        ::signal(signal, SIG_DFL);
    lowerLimit(RLIMIT_CORE, 0, 0);
    // Processor time in whole seconds (SIGXCPU at the soft limit, SIGKILL a second later): it
    // also ends a reader whose parent could no longer watch the clock.
    const rlim_t seconds = rlim_t(std::max(1, (limits.timeMilliseconds + 999) / 1000));
    lowerLimit(RLIMIT_CPU, seconds, seconds + 1);
#ifndef VANTREL_SHADOW_MEMORY
    // The memory budget on top of what the reader itself maps before it reads.
    if (const long long used = addressSpace(); used > 0)
        lowerLimit(RLIMIT_AS, rlim_t(used + limits.memoryBytes), rlim_t(used + limits.memoryBytes));
#endif
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc == 2 && (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0)) {
        std::fputs(Usage, stdout);
        return 0;
    }
    long long parent = 0;
    ModelFile::Limits limits;
    if (argc != 10 || std::strcmp(argv[1], ProtocolVersion) != 0
        || !parseLimits(argv + 2, &parent, &limits)) {
        std::fputs(Usage, stderr);
        return 2;
    }
    // End with the parent, however it ends, instead of reading on for nobody.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != pid_t(parent))
        return 1;
    if (::fcntl(ChannelFd, F_GETFD) < 0) {
        std::fputs("vantrel-model-reader: file descriptor 3 is not open\n", stderr);
        return 2;
    }
    confine(limits);
    // The parent takes this process's memory from here as the reader's own when it has to
    // watch the memory itself.
    if (!sendHeader(Kind::Ready))
        return 1;
    return sendAnswer(QFile::decodeName(argv[9]), limits);
}
