// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>

#include <vector>

namespace vantrel::render {

// The binary side of a glTF file: one buffer that collects vertex data, indices and images, and
// the bufferViews and accessors that describe its pieces. Every piece starts on a 4-byte
// boundary, which is what float and 32-bit index data need.
class GltfBuffer
{
public:
    // Appends count vectors of width floats (1..4) and returns the accessor's index. With
    // withBounds, the accessor carries the min and max of every component (required for POSITION).
    int addFloats(const std::vector<float> &values, int width, bool withBounds);
    // Appends a triangle list as 32-bit unsigned indices; returns the accessor's index.
    int addIndices(const std::vector<quint32> &indices);
    // Appends encoded bytes (an image) and returns the bufferView's index.
    int addBytes(const QByteArray &bytes);

    const QByteArray &data() const { return m_data; }
    const QJsonArray &bufferViews() const { return m_bufferViews; }
    const QJsonArray &accessors() const { return m_accessors; }

private:
    int addView(const char *bytes, qsizetype size, int target);

    QByteArray m_data;
    QJsonArray m_bufferViews;
    QJsonArray m_accessors;
};

} // namespace vantrel::render
