// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/models/modelreaderprocess.h"

#include "hostapp/core/models/modelchannel.h"
#include "hostapp/core/models/modelreaderchild.h"

#include <QByteArray>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <exception>
#include <new>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

// Sanitizers that keep shadow memory reserve terabytes of address space when the program
// starts, so an address-space limit would stop the child before it reads a byte.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define VANTREL_SHADOW_MEMORY 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)                            \
    || __has_feature(memory_sanitizer)
#define VANTREL_SHADOW_MEMORY 1
#endif
#endif

namespace vantrel::host {

namespace {

using modelchannel::Kind;
using modelchannel::MaximumRefusalBytes;
using modelchannel::MessageHeader;
using modelchannel::PartHeader;
using Clock = std::chrono::steady_clock;

// How often the parent looks at the child's memory where no address-space limit can be set.
constexpr int MemoryWatchMilliseconds = 20;

// A process's address space and resident memory in bytes, from /proc; zero when unknown.
struct MemoryUse
{
    qint64 addressSpace = 0;
    qint64 resident = 0;
};

MemoryUse memoryOf(pid_t pid)
{
    char name[48];
    std::snprintf(name, sizeof name, "/proc/%d/statm", int(pid));
    const int fd = ::open(name, O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return {};
    char text[128] = {};
    const ssize_t length = ::read(fd, text, sizeof text - 1);
    ::close(fd);
    long long pages = 0, residentPages = 0;
    if (length <= 0 || std::sscanf(text, "%lld %lld", &pages, &residentPages) != 2)
        return {};
    const qint64 pageSize = ::sysconf(_SC_PAGESIZE);
    return {pages * pageSize, residentPages * pageSize};
}

// The child's address-space limit: what the program maps already (the child starts as a copy of
// it) plus the budget; zero for none.
rlim_t addressSpaceLimit(qint64 budget)
{
#ifdef VANTREL_SHADOW_MEMORY
    Q_UNUSED(budget)
    return 0;
#else
    const qint64 used = memoryOf(::getpid()).addressSpace;
    return used > 0 ? rlim_t(used + budget) : 0;
#endif
}

// The parent's half -------------------------------------------------------------------------------

// Reads the child's answer from the pipe within the time limit, and where the child's memory
// cannot be limited by the system, within the memory budget too.
class Receiver
{
public:
    enum class Stop { None, Closed, TimedOut, OutOfMemory, Failed };

    Receiver(int fd, pid_t child, const ModelFile::Limits &limits, bool watchMemory)
        : m_fd(fd)
        , m_child(child)
        , m_deadline(Clock::now() + std::chrono::milliseconds(limits.timeMilliseconds))
        , m_memoryBudget(limits.memoryBytes)
        , m_residentAtStart(watchMemory ? memoryOf(::getpid()).resident : 0)
    {}

    // Exactly size bytes into data, or false with stop() saying why.
    bool read(void *data, std::size_t size)
    {
        char *bytes = static_cast<char *>(data);
        while (size > 0) {
            if (!waitForData())
                return false;
            const ssize_t got = ::read(m_fd, bytes, size);
            if (got < 0) {
                if (errno == EINTR || errno == EAGAIN)
                    continue;
                m_stop = Stop::Failed;
                return false;
            }
            if (got == 0) {
                m_stop = Stop::Closed;
                return false;
            }
            bytes += got;
            size -= std::size_t(got);
        }
        return true;
    }

    Stop stop() const { return m_stop; }

private:
    bool waitForData()
    {
        for (;;) {
            const auto left
                = std::chrono::duration_cast<std::chrono::milliseconds>(m_deadline - Clock::now());
            if (left.count() <= 0) {
                m_stop = Stop::TimedOut;
                return false;
            }
            if (m_residentAtStart > 0
                && memoryOf(m_child).resident - m_residentAtStart > m_memoryBudget) {
                m_stop = Stop::OutOfMemory;
                return false;
            }
            pollfd pipe = {m_fd, POLLIN, 0};
            const int wait = m_residentAtStart > 0
                                 ? int(std::min<qint64>(left.count(), MemoryWatchMilliseconds))
                                 : int(std::min<qint64>(left.count(), 60000));
            const int ready = ::poll(&pipe, 1, wait);
            if (ready > 0)
                return true; // data, or the end of the pipe: the read tells which
            if (ready < 0 && errno != EINTR) {
                m_stop = Stop::Failed;
                return false;
            }
        }
    }

    const int m_fd;
    const pid_t m_child;
    const Clock::time_point m_deadline;
    const qint64 m_memoryBudget;
    const qint64 m_residentAtStart; // zero: the system limits the child's memory
    Stop m_stop = Stop::None;
};

struct Answer
{
    enum Kind { None, Refusal, OutOfMemory, Mesh, Malformed };

    Answer(Kind answerKind = None, QString text = QString(), MeshPtr answerMesh = nullptr)
        : kind(answerKind)
        , refusal(std::move(text))
        , mesh(std::move(answerMesh))
    {}

    Kind kind; // None when the child ended or was stopped before a whole answer came
    QString refusal;
    MeshPtr mesh;
};

// The counts are checked against the limits before anything is allocated, and every index
// against its part before the part is kept.
Answer receiveMesh(Receiver &in, const MessageHeader &header)
{
    if (header.vertexCount > quint64(ModelFile::MaximumVertexCount)
        || header.indexCount > 3 * quint64(ModelFile::MaximumTriangleCount) || header.count == 0
        || header.count > header.indexCount / 3)
        return {Answer::Malformed};
    std::vector<std::unique_ptr<MeshPart>> parts;
    parts.reserve(header.count);
    quint64 vertexCount = 0;
    quint64 indexCount = 0;
    for (quint32 p = 0; p < header.count; ++p) {
        PartHeader part;
        if (!in.read(&part, sizeof part))
            return {};
        vertexCount += part.vertexCount;
        indexCount += part.indexCount;
        if (part.vertexCount == 0 || part.indexCount == 0 || part.indexCount % 3 != 0
            || vertexCount > header.vertexCount || indexCount > header.indexCount)
            return {Answer::Malformed};
        std::vector<VertexRecord> vertices(part.vertexCount);
        std::vector<quint32> indices(part.indexCount);
        if (!in.read(vertices.data(), vertices.size() * sizeof(VertexRecord))
            || !in.read(indices.data(), indices.size() * sizeof(quint32)))
            return {};
        const auto outside = [&part](quint32 index) { return index >= part.vertexCount; };
        const auto notFinite = [](const VertexRecord &v) {
            return !std::isfinite(v.position[0]) || !std::isfinite(v.position[1])
                   || !std::isfinite(v.position[2]);
        };
        if (std::any_of(indices.begin(), indices.end(), outside)
            || std::any_of(vertices.begin(), vertices.end(), notFinite))
            return {Answer::Malformed};
        parts.push_back(std::make_unique<MeshPart>(std::move(vertices), std::move(indices)));
    }
    if (vertexCount != header.vertexCount || indexCount != header.indexCount)
        return {Answer::Malformed};
    return {Answer::Mesh, QString(), std::make_shared<const Mesh>(std::move(parts))};
}

Answer receiveAnswer(Receiver &in)
{
    MessageHeader header;
    if (!in.read(&header, sizeof header))
        return {};
    switch (Kind(header.kind)) {
    case Kind::Refusal: {
        if (header.count > quint32(MaximumRefusalBytes))
            return {Answer::Malformed};
        QByteArray text(int(header.count), Qt::Uninitialized);
        if (!in.read(text.data(), std::size_t(text.size())))
            return {};
        return {Answer::Refusal, QString::fromUtf8(text)};
    }
    case Kind::OutOfMemory:
        return {Answer::OutOfMemory};
    case Kind::Mesh:
        return receiveMesh(in, header);
    }
    return {Answer::Malformed};
}

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

} // namespace

MeshPtr
ModelReaderProcess::read(const QString &path, const ModelFile::Limits &limits, QString *problem)
{
    int pipe[2];
    if (::pipe2(pipe, O_CLOEXEC) != 0) {
        *problem = QStringLiteral("cannot start the model importer: %1")
                       .arg(QString::fromLocal8Bit(std::strerror(errno)));
        return nullptr;
    }
    const rlim_t addressSpace = addressSpaceLimit(limits.memoryBytes);
    const pid_t parent = ::getpid();
    const pid_t child = ::fork();
    if (child < 0) {
        const int error = errno;
        ::close(pipe[0]);
        ::close(pipe[1]);
        *problem = QStringLiteral("cannot start the model importer: %1")
                       .arg(QString::fromLocal8Bit(std::strerror(error)));
        return nullptr;
    }
    if (child == 0) {
        ::close(pipe[0]);
        runModelReaderChild(pipe[1], parent, path, limits, addressSpace);
    }
    ::close(pipe[1]); // so that the read end sees the end of the pipe when the child is gone

    Receiver receiver(pipe[0], child, limits, addressSpace == 0);
    const Answer answer = receiveAnswer(receiver);
    const bool complete = answer.kind == Answer::Refusal || answer.kind == Answer::OutOfMemory
                          || answer.kind == Answer::Mesh;
    if (!complete)
        ::kill(child, SIGKILL); // past a limit, or talking nonsense; a child already gone keeps
                                // the status it ended with
    ::close(pipe[0]);
    int status = 0;
    const bool ended = waitForExit(child, &status);

    if (receiver.stop() == Receiver::Stop::TimedOut) {
        *problem = tookTooLong(limits);
        return nullptr;
    }
    if (receiver.stop() == Receiver::Stop::OutOfMemory || answer.kind == Answer::OutOfMemory) {
        *problem = QStringLiteral("reading the model needed more than %1 MiB")
                       .arg(limits.memoryBytes >> 20);
        return nullptr;
    }
    if (answer.kind == Answer::Mesh)
        return answer.mesh;
    if (answer.kind == Answer::Refusal) {
        *problem = answer.refusal;
        return nullptr;
    }
    if (answer.kind == Answer::Malformed) {
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
