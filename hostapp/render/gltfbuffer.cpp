// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/render/gltfbuffer.h"

#include <algorithm>
#include <limits>

namespace vantrel::render {

namespace {

// glTF's numeric codes.
constexpr int ArrayBuffer = 34962;
constexpr int ElementArrayBuffer = 34963;
constexpr int FloatComponent = 5126;
constexpr int UnsignedIntComponent = 5125;

const char *typeName(int width)
{
    static const char *const names[] = {"SCALAR", "VEC2", "VEC3", "VEC4"};
    return names[std::clamp(width, 1, 4) - 1];
}

} // namespace

int GltfBuffer::addView(const char *bytes, qsizetype size, int target)
{
    QJsonObject view{{QStringLiteral("buffer"), 0},
                     {QStringLiteral("byteOffset"), double(m_data.size())},
                     {QStringLiteral("byteLength"), double(size)}};
    if (target)
        view.insert(QStringLiteral("target"), target);
    m_data.append(bytes, size);
    while (m_data.size() % 4)
        m_data.append('\0');
    m_bufferViews.append(view);
    return m_bufferViews.size() - 1;
}

int GltfBuffer::addFloats(const std::vector<float> &values, int width, bool withBounds)
{
    const qsizetype count = qsizetype(values.size()) / width;
    QJsonObject accessor{{QStringLiteral("bufferView"),
                          addView(reinterpret_cast<const char *>(values.data()),
                                  count * width * qsizetype(sizeof(float)),
                                  ArrayBuffer)},
                         {QStringLiteral("componentType"), FloatComponent},
                         {QStringLiteral("count"), double(count)},
                         {QStringLiteral("type"), QLatin1String(typeName(width))}};
    if (withBounds) {
        std::vector<float> low(width, std::numeric_limits<float>::max());
        std::vector<float> high(width, std::numeric_limits<float>::lowest());
        for (qsizetype i = 0; i < count * width; ++i) {
            low[i % width] = std::min(low[i % width], values[i]);
            high[i % width] = std::max(high[i % width], values[i]);
        }
        // The bounds are the floats themselves, widened to double: JSON keeps them exactly.
        QJsonArray minimum, maximum;
        for (int c = 0; c < width; ++c) {
            minimum.append(double(low[c]));
            maximum.append(double(high[c]));
        }
        accessor.insert(QStringLiteral("min"), minimum);
        accessor.insert(QStringLiteral("max"), maximum);
    }
    m_accessors.append(accessor);
    return m_accessors.size() - 1;
}

int GltfBuffer::addIndices(const std::vector<quint32> &indices)
{
    m_accessors.append(QJsonObject{{QStringLiteral("bufferView"),
                                    addView(reinterpret_cast<const char *>(indices.data()),
                                            qsizetype(indices.size() * sizeof(quint32)),
                                            ElementArrayBuffer)},
                                   {QStringLiteral("componentType"), UnsignedIntComponent},
                                   {QStringLiteral("count"), double(indices.size())},
                                   {QStringLiteral("type"), QStringLiteral("SCALAR")}});
    return m_accessors.size() - 1;
}

int GltfBuffer::addBytes(const QByteArray &bytes)
{
    return addView(bytes.constData(), bytes.size(), 0);
}

} // namespace vantrel::render
