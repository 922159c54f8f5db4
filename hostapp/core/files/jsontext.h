// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/types.h"

#include <QByteArray>
#include <QLatin1String>
#include <QString>
#include <QVariant>

class QIODevice;

namespace vantrel::host {

// JSON text written piece by piece, for scene files and dumps of any size: the text is gathered
// in a small buffer that goes to the device whenever it fills up, so writing needs memory for the
// buffer only, never for the whole text or a tree of JSON values. Without a device the text stays
// in the buffer (text()).
//
// The caller writes the punctuation and line breaks it wants; this class writes values in JSON's
// syntax: strings escaped, numbers in the shortest form that reads back as the same double.
// Write errors are kept: after the first failure nothing more is written, and ok() and
// errorString() tell what went wrong.
class JsonText
{
public:
    explicit JsonText(QIODevice *device = nullptr);

    JsonText &raw(QLatin1String text);
    JsonText &raw(char c);
    JsonText &spaces(int count);
    // "key": (the key is one of the format's own ASCII names)
    JsonText &key(QLatin1String name);
    JsonText &string(const QString &text);
    JsonText &number(double value); // finite numbers only
    JsonText &number(qint64 value);
    JsonText &boolean(bool value);
    // [x, y, z], each float written as the double it converts to, which reads back exactly.
    JsonText &vector(const Vector3 &v);
    // A shape parameter: true or false, a number, or else a string.
    JsonText &variant(const QVariant &value);

    // Writes what is buffered to the device. False once any write has failed.
    bool flush();
    bool ok() const { return m_ok; }
    QString errorString() const { return m_error; }
    // Bytes written so far, buffered ones included.
    qint64 size() const { return m_written + m_buffer.size(); }
    // The text when there is no device.
    const QByteArray &text() const { return m_buffer; }

private:
    void spill();

    QIODevice *m_device;
    QByteArray m_buffer;
    qint64 m_written = 0;
    bool m_ok = true;
    QString m_error;
};

} // namespace vantrel::host
