// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace vantrel::host {

// What Qt's JSON reader lets pass but a scene file must not hold, found in JSON text that is
// otherwise well formed: a key given twice in one object (Qt keeps the last one and the first is
// lost without a word) and a raw control character inside a string (JSON allows them only
// escaped, as \t or \n). Also every other departure from strict JSON, such as a number too big
// for a double.
//
// Reads the text as a stream of tokens, without building anything and without recursion, so it
// is bounded however large or deep the text is.
struct JsonProblem
{
    qint64 offset = -1; // the byte offset of the problem, -1 when there is none
    QString problem;    // such as: the key "position" appears twice in this object
};

JsonProblem checkJsonStrictly(const QByteArray &json);

} // namespace vantrel::host
