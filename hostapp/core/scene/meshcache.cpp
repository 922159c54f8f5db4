// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/meshcache.h"

#include <QMutexLocker>

#include <algorithm>
#include <cstring>

namespace vantrel::host {

namespace {

template<typename T>
void appendBits(QByteArray &out, const T &value)
{
    char bytes[sizeof(T)];
    std::memcpy(bytes, &value, sizeof(T));
    out.append(bytes, int(sizeof(T)));
}

// Appends the value's type and exact contents; false for a type with no exact encoding here.
bool appendValue(QByteArray &out, const QVariant &value)
{
    const int type = value.userType();
    appendBits(out, type);
    switch (type) {
    case QMetaType::Float:
        appendBits(out, value.value<float>());
        return true;
    case QMetaType::Double:
        appendBits(out, value.toDouble());
        return true;
    case QMetaType::Int:
        appendBits(out, value.toInt());
        return true;
    case QMetaType::UInt:
        appendBits(out, value.toUInt());
        return true;
    case QMetaType::LongLong:
        appendBits(out, value.toLongLong());
        return true;
    case QMetaType::Bool:
        appendBits(out, char(value.toBool()));
        return true;
    case QMetaType::QString: {
        // The length first, so that no text can run into the next name.
        const QString text = value.toString();
        appendBits(out, text.size());
        out.append(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
        return true;
    }
    default:
        return false;
    }
}

} // namespace

MeshCache &MeshCache::instance()
{
    static MeshCache cache;
    return cache;
}

MeshPtr MeshCache::get(const QByteArray &key, const std::function<MeshPtr()> &build)
{
    if (key.isEmpty())
        return build();
    {
        QMutexLocker lock(&m_mutex);
        if (MeshPtr mesh = m_entries.value(key).lock())
            return mesh;
    }
    MeshPtr built = build();
    QMutexLocker lock(&m_mutex);
    // Another thread may have built the same mesh meanwhile: everyone gets the one kept.
    std::weak_ptr<const Mesh> &entry = m_entries[key];
    if (MeshPtr kept = entry.lock())
        return kept;
    entry = built;
    if (m_entries.size() >= m_sweepAt)
        sweep();
    return built;
}

int MeshCache::liveCount() const
{
    QMutexLocker lock(&m_mutex);
    return int(std::count_if(
        m_entries.cbegin(), m_entries.cend(), [](const std::weak_ptr<const Mesh> &entry) {
            return !entry.expired();
        }));
}

void MeshCache::sweep()
{
    for (auto it = m_entries.begin(); it != m_entries.end();) {
        if (it->expired())
            it = m_entries.erase(it);
        else
            ++it;
    }
    m_sweepAt = std::max(64, 2 * m_entries.size());
}

QByteArray
meshKey(const QByteArray &typeId, const char *className, const QHash<QByteArray, QVariant> &values)
{
    QByteArray key = typeId;
    key.append('\0').append(className).append('\0');
    // In name order: a hash's own order depends on how it was filled.
    QList<QByteArray> names = values.keys();
    std::sort(names.begin(), names.end());
    for (const QByteArray &name : names) {
        key.append(name).append('\0');
        if (!appendValue(key, values.value(name)))
            return QByteArray();
    }
    return key;
}

} // namespace vantrel::host
