// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// The generic part of reading a JSON file that people write by hand: is this member there, of
// this type, within this range, and are there no members nobody asked for. Each check returns
// false after recording the first problem with its place (a path such as
// "root.children[0].position[2]"), so a reader stops at the first one and reports it.

#include "host/types.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QLatin1String>
#include <QString>

#include <initializer_list>

namespace vantrel::host {

// Why a file was refused: the place (a path to the field, or line:column for JSON syntax) and
// the problem.
struct JsonRefusal
{
    QString place;
    QString problem;
    bool syntax = false;

    // "<prefix>:14:9: problem", "<prefix>: place: problem" or "<prefix>: problem".
    QString message(const QString &prefix) const;
};

class JsonFieldChecker
{
public:
    using Keys = std::initializer_list<QLatin1String>;

    // integerLimit bounds every integer read: -integerLimit..integerLimit.
    explicit JsonFieldChecker(double integerLimit)
        : m_integerLimit(integerLimit)
    {}

    const JsonRefusal &refusal() const { return m_refusal; }
    void setRefusal(const JsonRefusal &refusal) { m_refusal = refusal; }
    // Records the problem at place; always false, for `return fail(...)`.
    bool fail(const QString &place, const QString &problem);

    // False when object has a member in none of the known lists. When kind is given, a member
    // from one of otherKinds is refused as "a <kind> has no field ..." (a field of another kind
    // of object is a likelier mistake than a typing error), any other as "unknown field ...".
    bool onlyKnownKeys(const QJsonObject &object,
                       const QString &place,
                       std::initializer_list<Keys> known,
                       const QString &kind = QString(),
                       std::initializer_list<Keys> otherKinds = {});

    // One value at its place, by the type of the result: a number within -limit..limit, an
    // integer within the integer limit, a string, true or false, or 3 numbers within
    // -limit..limit. False
    // after recording why the value is refused.
    bool parse(const QJsonValue &value, const QString &place, double *result, double limit);
    bool parse(const QJsonValue &value, const QString &place, float *result, double limit);
    bool parse(const QJsonValue &value, const QString &place, int *result);
    bool parse(const QJsonValue &value, const QString &place, QString *result);
    bool parse(const QJsonValue &value, const QString &place, bool *result);
    bool parse(const QJsonValue &value, const QString &place, Vector3 *result, double limit);

    // An optional member of object, read by parse(); an absent one leaves *result as it was.
    template<typename T, typename... Limit>
    bool optional(const QJsonObject &object,
                  const QString &place,
                  QLatin1String name,
                  T *result,
                  Limit... limit)
    {
        const QJsonValue value = object.value(name);
        return value.isUndefined() || parse(value, field(place, name), result, limit...);
    }
    // A member of object that must be there: false with "required field is missing" otherwise.
    bool required(const QJsonObject &object, const QString &place, QLatin1String name);

    // The place of a member: "place.name", or "name" at the top.
    static QString field(const QString &place, QLatin1String name);
    // What a message says was found instead: short strings and numbers are shown as they are.
    static QString found(const QJsonValue &value);
    // A string in double quotes, escaped as in JSON, so that a control character or a quote
    // cannot garble the message.
    static QString quoted(const QString &text);
    // A number as a JSON file would hold it: integers without a fraction, others in the shortest
    // form that reads back the same.
    static QString numberText(double value);
    // The shortest text that reads back as the same float.
    static QString floatText(float value);
    static QString rangeProblem(double value, double limit);

private:
    double m_integerLimit;
    JsonRefusal m_refusal;
};

} // namespace vantrel::host
