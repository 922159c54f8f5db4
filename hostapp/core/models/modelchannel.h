// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// The messages a model-reading child process sends its parent through their pipe
// (ModelReaderProcess reads them, modelreaderchild.cpp writes them).

#include <QtGlobal>

namespace vantrel::host::modelchannel {

// The child's messages. Each starts with a MessageHeader; a mesh follows with a PartHeader, the
// vertex records and the indices of each part. Both ends are this same program on this same
// machine, so the structures travel as they are in memory.
enum class Kind : quint32 {
    Refusal = 1,     // count bytes of UTF-8 follow: why the file cannot be read
    OutOfMemory = 2, // reading needed more memory than the limit allowed
    Mesh = 3,        // count parts, with vertexCount vertices and indexCount indices in all
};

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

// The importer's words about a file are a line or two; more is a fault of the channel.
constexpr int MaximumRefusalBytes = 64 * 1024;

} // namespace vantrel::host::modelchannel
