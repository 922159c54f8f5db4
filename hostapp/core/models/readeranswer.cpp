// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/models/readeranswer.h"

#include "hostapp/core/models/modelchannel.h"
#include "hostapp/core/models/modelreadprogress.h"

#include <QByteArray>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace vantrel::host {

namespace {

using modelchannel::Kind;
using modelchannel::MaximumRefusalBytes;
using modelchannel::MessageHeader;
using modelchannel::PartHeader;
using modelchannel::ReadingShare;
using Clock = std::chrono::steady_clock;

// How often the reader's memory is looked at where no address-space limit can be set.
constexpr int MemoryWatchMilliseconds = 20;
// How often the progress observer hears from a reading, moved or not.
constexpr int ProgressMilliseconds = 100;

// A process's resident memory in bytes, from /proc; zero when unknown.
qint64 residentMemoryOf(pid_t pid)
{
    char name[48];
    std::snprintf(name, sizeof name, "/proc/%d/statm", int(pid));
    const int fd = ::open(name, O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return 0;
    char text[128] = {};
    const ssize_t length = ::read(fd, text, sizeof text - 1);
    ::close(fd);
    long long pages = 0, residentPages = 0;
    if (length <= 0 || std::sscanf(text, "%lld %lld", &pages, &residentPages) != 2)
        return 0;
    return residentPages * ::sysconf(_SC_PAGESIZE);
}

// Reads the reader's answer from the pipe within the time limit, and in builds where the
// reader's memory cannot be limited by the system, within the memory budget too.
class Receiver
{
public:
    using Stop = ReaderAnswer::Stop;

    Receiver(int fd, pid_t child, const ModelFile::Limits &limits, ModelReadProgress *progress)
        : m_fd(fd)
        , m_child(child)
        , m_deadline(Clock::now() + std::chrono::milliseconds(limits.timeMilliseconds))
        , m_memoryBudget(limits.memoryBytes)
        , m_progress(progress)
    {}

    // The reader's own share of the work done, in thousandths.
    void setReadingDone(quint32 thousandths)
    {
        m_fraction = ReadingShare * std::min(1000u, thousandths) / 1000.;
    }

    // From now on the share done follows the bytes received, up to bytes in all.
    void expectMesh(quint64 bytes)
    {
        m_meshBytes = std::max<quint64>(1, bytes);
        m_meshReceived = 0;
    }

    // From now on the reader's resident memory beyond what it holds now counts against the
    // budget; called when the reader says it is ready, before it opens the file.
    void watchMemoryFromNow()
    {
#ifdef VANTREL_SHADOW_MEMORY
        m_residentAtStart = std::max<qint64>(1, residentMemoryOf(m_child));
#endif
    }

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
            if (m_meshBytes > 0) {
                m_meshReceived += quint64(got);
                m_fraction = ReadingShare
                             + (1. - ReadingShare) * double(m_meshReceived) / double(m_meshBytes);
            }
        }
        return true;
    }

    Stop stop() const
    {
        return m_stop;
    }

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
                && residentMemoryOf(m_child) - m_residentAtStart > m_memoryBudget) {
                m_stop = Stop::OutOfMemory;
                return false;
            }
            if (!report()) {
                m_stop = Stop::Cancelled;
                return false;
            }
            pollfd pipe = {m_fd, POLLIN, 0};
            qint64 wait = std::min<qint64>(left.count(), 60000);
            if (m_residentAtStart > 0)
                wait = std::min<qint64>(wait, MemoryWatchMilliseconds);
            if (m_progress)
                wait = std::min<qint64>(wait, ProgressMilliseconds);
            const int ready = ::poll(&pipe, 1, int(wait));
            if (ready > 0)
                return true; // data, or the end of the pipe: the read tells which
            if (ready < 0 && errno != EINTR) {
                m_stop = Stop::Failed;
                return false;
            }
        }
    }

    // Tells the observer the share done when it last heard more than ProgressMilliseconds ago;
    // false when it cancels.
    bool report()
    {
        if (!m_progress)
            return true;
        const Clock::time_point now = Clock::now();
        if (now - m_reported < std::chrono::milliseconds(ProgressMilliseconds))
            return true;
        m_reported = now;
        return m_progress->progressed(m_fraction);
    }

    const int m_fd;
    const pid_t m_child;
    const Clock::time_point m_deadline;
    const qint64 m_memoryBudget;
    ModelReadProgress *const m_progress;
    Clock::time_point m_reported = Clock::now();
    double m_fraction = 0;
    quint64 m_meshBytes = 0; // zero until the mesh is being received
    quint64 m_meshReceived = 0;
    qint64 m_residentAtStart = 0; // zero: not watched (the system limits the reader's memory)
    Stop m_stop = Stop::None;
};

// The counts are checked against the limits before anything is allocated, and every index
// against its part before the part is kept.
ReaderAnswer receiveMesh(Receiver &in, const MessageHeader &header, const ModelFile::Limits &limits)
{
    if (header.vertexCount > quint64(limits.vertexCount)
        || header.indexCount > 3 * quint64(limits.triangleCount) || header.count == 0
        || header.count > header.indexCount / 3)
        return {ReaderAnswer::Malformed};
    in.expectMesh(header.count * sizeof(PartHeader) + header.vertexCount * sizeof(VertexRecord)
                  + header.indexCount * sizeof(quint32));
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
            return {ReaderAnswer::Malformed};
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
            return {ReaderAnswer::Malformed};
        parts.push_back(std::make_unique<MeshPart>(std::move(vertices), std::move(indices)));
    }
    if (vertexCount != header.vertexCount || indexCount != header.indexCount)
        return {ReaderAnswer::Malformed};
    return {ReaderAnswer::Mesh, QString(), std::make_shared<const Mesh>(std::move(parts))};
}

ReaderAnswer receiveAnswer(Receiver &in, const ModelFile::Limits &limits)
{
    MessageHeader header;
    if (!in.read(&header, sizeof header))
        return {};
    if (Kind(header.kind) != Kind::Ready)
        return {ReaderAnswer::Malformed};
    in.watchMemoryFromNow();
    do {
        if (!in.read(&header, sizeof header))
            return {};
        if (Kind(header.kind) == Kind::Progress)
            in.setReadingDone(header.count);
    } while (Kind(header.kind) == Kind::Progress);
    switch (Kind(header.kind)) {
    case Kind::Refusal: {
        if (header.count > quint32(MaximumRefusalBytes))
            return {ReaderAnswer::Malformed};
        QByteArray text(int(header.count), Qt::Uninitialized);
        if (!in.read(text.data(), std::size_t(text.size())))
            return {};
        return {ReaderAnswer::Refusal, QString::fromUtf8(text)};
    }
    case Kind::OutOfMemory:
        return {ReaderAnswer::OutOfMemory};
    case Kind::Mesh:
        return receiveMesh(in, header, limits);
    case Kind::Ready:
    case Kind::Progress:
        break;
    }
    return {ReaderAnswer::Malformed};
}

} // namespace

ReaderAnswer::ReaderAnswer(Kind answerKind, QString text, MeshPtr answerMesh)
    : kind(answerKind)
    , refusal(std::move(text))
    , mesh(std::move(answerMesh))
{}

ReaderAnswer ReaderAnswer::receive(int fd,
                                   pid_t child,
                                   const ModelFile::Limits &limits,
                                   ModelReadProgress *progress)
{
    Receiver receiver(fd, child, limits, progress);
    ReaderAnswer answer = receiveAnswer(receiver, limits);
    answer.stop = receiver.stop();
    return answer;
}

} // namespace vantrel::host
