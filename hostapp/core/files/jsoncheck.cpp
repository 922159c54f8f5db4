// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/files/jsoncheck.h"

#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <string>
#include <unordered_set>
#include <vector>

namespace vantrel::host {

namespace {

// Remembers the keys of every object still open; stops the reading at a key seen before.
class KeyChecker : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, KeyChecker>
{
public:
    bool StartObject()
    {
        m_open.emplace_back();
        return true;
    }
    bool Key(const char *text, rapidjson::SizeType length, bool)
    {
        if (m_open.back().insert(std::string(text, length)).second)
            return true;
        m_duplicate = QString::fromUtf8(text, int(length));
        return false;
    }
    bool EndObject(rapidjson::SizeType)
    {
        m_open.pop_back();
        return true;
    }
    const QString &duplicate() const { return m_duplicate; }

private:
    std::vector<std::unordered_set<std::string>> m_open;
    QString m_duplicate;
};

// The offset of the opening quote of the string that ends just before end.
qint64 stringStart(const QByteArray &json, qint64 end)
{
    qint64 i = end - 2; // on the character before the closing quote
    for (; i >= 0; --i) {
        if (json.at(int(i)) != '"')
            continue;
        qint64 backslashes = 0;
        while (i - 1 - backslashes >= 0 && json.at(int(i - 1 - backslashes)) == '\\')
            ++backslashes;
        if (backslashes % 2 == 0)
            return i;
    }
    return end;
}

} // namespace

JsonProblem checkJsonStrictly(const QByteArray &json)
{
    rapidjson::MemoryStream stream(json.constData(), std::size_t(json.size()));
    KeyChecker checker;
    rapidjson::Reader reader;
    // Iterative: the reader keeps its own stack instead of recursing once a level.
    const rapidjson::ParseResult result
        = reader.Parse<rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag>(
            stream, checker);
    if (!result.IsError())
        return {};
    const qint64 offset = qint64(result.Offset());
    if (result.Code() == rapidjson::kParseErrorTermination && !checker.duplicate().isEmpty()) {
        return {
            stringStart(json, offset),
            QStringLiteral("the key \"%1\" appears twice in this object").arg(checker.duplicate())};
    }
    for (qint64 i : {offset, offset - 1}) {
        if (i >= 0 && i < json.size() && uchar(json.at(int(i))) < 0x20) {
            return {i,
                    QStringLiteral("a control character (code %1) inside a string; write it "
                                   "escaped, such as \\t or \\n")
                        .arg(int(uchar(json.at(int(i)))))};
        }
    }
    return {offset, QString::fromLatin1(rapidjson::GetParseError_En(result.Code()))};
}

} // namespace vantrel::host
