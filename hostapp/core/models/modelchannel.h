// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// The messages the model reader (the vantrel-model-reader program) sends the program that
// started it through their pipe (ModelReaderProcess reads them, hostapp/modelreader writes them).

#include <QtGlobal>

// Sanitizers that keep shadow memory reserve terabytes of address space when a program starts,
// so in such builds the reader sets no address-space limit and the program watches the reader's
// resident memory instead.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define VANTREL_SHADOW_MEMORY 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)                            \
    || __has_feature(memory_sanitizer)
#define VANTREL_SHADOW_MEMORY 1
#endif
#endif

namespace vantrel::host::modelchannel {

// The reader's end of the pipe, and the first word of its command line: a reader built from
// other sources refuses to start rather than misread its arguments or send other structures.
constexpr int ChannelFd = 3;
constexpr char ProtocolVersion[] = "vantrel-model-channel-2";

// The reader's messages. Each starts with a MessageHeader; a mesh follows with a PartHeader, the
// vertex records and the indices of each part. Both ends are built from the same sources for the
// same machine, so the structures travel as they are in memory. Ready comes first, then any
// number of Progress messages, then exactly one of the others.
enum class Kind : quint32 {
    Refusal = 1,     // count bytes of UTF-8 follow: why the file cannot be read
    OutOfMemory = 2, // reading needed more memory than the limit allowed
    Mesh = 3,        // count parts, with vertexCount vertices and indexCount indices in all
    Ready = 4,       // the reader has started and set its limits, and opens the file next
    Progress = 5,    // count thousandths of the reading are done (the mesh's sending excluded)
};

// The share of the whole load the reader's Progress messages cover; the rest is the sending of
// the mesh, which the receiving side measures by the bytes it has received.
constexpr double ReadingShare = 0.8;

struct MessageHeader
{
    quint32 kind = 0;
    quint32 count = 0;
    quint64 vertexCount = 0;
    quint64 indexCount = 0;
};

struct PartHeader
{
    quint32 vertexCount = 0;
    quint32 indexCount = 0;
};

// The reader's exit status when memory ran out after the mesh had started: the channel is cut
// mid-mesh, and the status is the only way left to say why.
constexpr int OutOfMemoryStatus = 3;

// The importer's words about a file are a line or two; more is a fault of the channel.
constexpr int MaximumRefusalBytes = 64 * 1024;

} // namespace vantrel::host::modelchannel
