// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/files/jsontext.h"

#include <QIODevice>

#include <charconv>
#include <cmath>
#include <iterator>

namespace vantrel::host {

namespace {

// The buffer goes to the device once it holds this much.
constexpr int SpillSize = 1 << 16;

} // namespace

JsonText::JsonText(QIODevice *device)
    : m_device(device)
{
    if (m_device)
        m_buffer.reserve(SpillSize + 4096);
}

JsonText &JsonText::raw(QLatin1String text)
{
    m_buffer.append(text.data(), text.size());
    spill();
    return *this;
}

JsonText &JsonText::raw(char c)
{
    m_buffer.append(c);
    spill();
    return *this;
}

JsonText &JsonText::spaces(int count)
{
    m_buffer.append(count, ' ');
    spill();
    return *this;
}

JsonText &JsonText::key(QLatin1String name)
{
    m_buffer.append('"').append(name.data(), name.size()).append("\": ");
    spill();
    return *this;
}

JsonText &JsonText::string(const QString &text)
{
    m_buffer.append('"');
    const QByteArray utf8 = text.toUtf8();
    for (const char c : utf8) {
        switch (c) {
        case '"':
            m_buffer.append("\\\"");
            break;
        case '\\':
            m_buffer.append("\\\\");
            break;
        case '\n':
            m_buffer.append("\\n");
            break;
        case '\t':
            m_buffer.append("\\t");
            break;
        case '\r':
            m_buffer.append("\\r");
            break;
        default:
            if (uchar(c) < 0x20) {
                static const char hex[] = "0123456789abcdef";
                m_buffer.append("\\u00").append(hex[uchar(c) >> 4]).append(hex[uchar(c) & 15]);
            } else {
                m_buffer.append(c);
            }
        }
    }
    m_buffer.append('"');
    spill();
    return *this;
}

JsonText &JsonText::number(double value)
{
    // Whole numbers as integers (and -0 as 0), like the rest of the format; others in the
    // shortest text that reads back as the same double, so a float survives the round trip.
    if (value == std::floor(value) && std::abs(value) < 1e15)
        return number(qint64(value));
    char text[32];
    const std::to_chars_result end = std::to_chars(std::begin(text), std::end(text), value);
    m_buffer.append(text, int(end.ptr - text));
    spill();
    return *this;
}

JsonText &JsonText::number(qint64 value)
{
    char text[24];
    const std::to_chars_result end = std::to_chars(std::begin(text), std::end(text), value);
    m_buffer.append(text, int(end.ptr - text));
    spill();
    return *this;
}

JsonText &JsonText::boolean(bool value)
{
    return raw(value ? QLatin1String("true") : QLatin1String("false"));
}

JsonText &JsonText::vector(const Vector3 &v)
{
    raw('[').number(double(v.x)).raw(QLatin1String(", ")).number(double(v.y));
    return raw(QLatin1String(", ")).number(double(v.z)).raw(']');
}

JsonText &JsonText::variant(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::Bool:
        return boolean(value.toBool());
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
        return number(value.toLongLong());
    case QMetaType::Float:
        return number(double(value.toFloat()));
    case QMetaType::Double:
        return number(value.toDouble());
    default:
        return string(value.toString());
    }
}

void JsonText::spill()
{
    if (m_device && m_buffer.size() >= SpillSize)
        flush();
}

bool JsonText::flush()
{
    if (!m_device)
        return m_ok;
    // A short write (the disk filled up half-way) comes back without a reason; writing the rest
    // then fails at once with the system's reason, such as "No space left on device".
    qint64 done = 0;
    while (m_ok && done < m_buffer.size()) {
        const qint64 count = m_device->write(m_buffer.constData() + done, m_buffer.size() - done);
        if (count <= 0) {
            m_ok = false;
            m_error = m_device->errorString();
        } else {
            done += count;
        }
    }
    m_written += done;
    m_buffer.clear();
    return m_ok;
}

} // namespace vantrel::host
