// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
#include <QFileInfo>
#include <QHash>
#include <QMutex>
#include <QMutexLocker>
#include <QString>

#include <iterator>
#include <memory>

namespace vantrel::host {

// What was read from files (model meshes, artwork images), shared by everyone who names the same
// file: by canonical path, read again only when the file's size or modification time changed
// (the time alone misses a rewrite within the file system's time resolution). The cache holds
// weak pointers, so it never keeps anything alive on its own. Safe from any thread.
template<typename Value>
class FileCache
{
public:
    using Pointer = std::shared_ptr<const Value>;

    // What path holds: from the cache, else from read(path, errorMessage), which names the
    // problem and returns null when the file cannot be read. A path that is not a regular file
    // goes straight to read, for its message.
    template<typename Read>
    Pointer load(const QString &path, QString *errorMessage, Read &&read)
    {
        const QFileInfo info(path);
        if (!info.isFile())
            return read(path, errorMessage);
        const QString key = info.canonicalFilePath();
        const Stamp stamp = {info.size(), info.lastModified()};
        {
            QMutexLocker locker(&m_mutex);
            const auto found = m_entries.constFind(key);
            if (found != m_entries.constEnd() && found->stamp == stamp) {
                if (Pointer value = found->value.lock())
                    return value;
            }
        }
        Pointer value = read(path, errorMessage);
        if (!value)
            return nullptr;
        QMutexLocker locker(&m_mutex);
        for (auto it = m_entries.begin(); it != m_entries.end();) // drop what nobody holds
            it = it->value.expired() ? m_entries.erase(it) : std::next(it);
        m_entries.insert(key, {stamp, value});
        return value;
    }

private:
    struct Stamp
    {
        qint64 size = -1;
        QDateTime modified;

        bool operator==(const Stamp &other) const
        {
            return size == other.size && modified == other.modified;
        }
    };
    struct Entry
    {
        Stamp stamp;
        std::weak_ptr<const Value> value;
    };

    QMutex m_mutex;
    QHash<QString, Entry> m_entries;
};

} // namespace vantrel::host
