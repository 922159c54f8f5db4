// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/files/jsonfieldchecker.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>

namespace vantrel::host {

namespace {

bool listed(JsonFieldChecker::Keys keys, const QString &name)
{
    return std::find(keys.begin(), keys.end(), name) != keys.end();
}

bool listed(std::initializer_list<JsonFieldChecker::Keys> lists, const QString &name)
{
    return std::any_of(lists.begin(), lists.end(), [&name](JsonFieldChecker::Keys keys) {
        return listed(keys, name);
    });
}

} // namespace

QString JsonRefusal::message(const QString &prefix) const
{
    if (syntax)
        return QStringLiteral("%1:%2: %3").arg(prefix, place, problem);
    if (place.isEmpty())
        return QStringLiteral("%1: %2").arg(prefix, problem);
    return QStringLiteral("%1: %2: %3").arg(prefix, place, problem);
}

bool JsonFieldChecker::fail(const QString &place, const QString &problem)
{
    m_refusal = {place, problem};
    return false;
}

bool JsonFieldChecker::onlyKnownKeys(const QJsonObject &object,
                                     const QString &place,
                                     std::initializer_list<Keys> known,
                                     const QString &kind,
                                     std::initializer_list<Keys> otherKinds)
{
    for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
        const QString name = it.key();
        if (listed(known, name))
            continue;
        if (!kind.isEmpty() && listed(otherKinds, name))
            return fail(place, QStringLiteral("a %1 has no field %2").arg(kind, quoted(name)));
        return fail(place, QStringLiteral("unknown field %1").arg(quoted(name)));
    }
    return true;
}

bool JsonFieldChecker::parse(const QJsonValue &value,
                             const QString &place,
                             double *result,
                             double limit)
{
    if (!value.isDouble())
        return fail(place, QStringLiteral("expected a number, found %1").arg(found(value)));
    const double d = value.toDouble();
    if (!(std::abs(d) <= limit))
        return fail(place, rangeProblem(d, limit));
    *result = d;
    return true;
}

bool JsonFieldChecker::parse(const QJsonValue &value,
                             const QString &place,
                             float *result,
                             double limit)
{
    double d = 0.0;
    if (!parse(value, place, &d, limit))
        return false;
    *result = float(d); // within float range: every limit is far below FLT_MAX
    return true;
}

bool JsonFieldChecker::parse(const QJsonValue &value, const QString &place, int *result)
{
    double d = 0.0;
    if (!value.isDouble() || value.toDouble() != std::floor(value.toDouble()))
        return fail(place, QStringLiteral("expected an integer, found %1").arg(found(value)));
    if (!parse(value, place, &d, m_integerLimit))
        return false;
    *result = int(d);
    return true;
}

bool JsonFieldChecker::parse(const QJsonValue &value, const QString &place, QString *result)
{
    if (!value.isString())
        return fail(place, QStringLiteral("expected a string, found %1").arg(found(value)));
    *result = value.toString();
    return true;
}

bool JsonFieldChecker::parse(const QJsonValue &value, const QString &place, bool *result)
{
    if (!value.isBool())
        return fail(place, QStringLiteral("expected true or false, found %1").arg(found(value)));
    *result = value.toBool();
    return true;
}

bool JsonFieldChecker::parse(const QJsonValue &value,
                             const QString &place,
                             Vector3 *result,
                             double limit)
{
    if (!value.isArray())
        return fail(place, QStringLiteral("expected 3 numbers, found %1").arg(found(value)));
    const QJsonArray array = value.toArray();
    if (array.size() != 3)
        return fail(place, QStringLiteral("expected 3 numbers, found %1").arg(array.size()));
    double v[3];
    for (int i = 0; i < 3; ++i) {
        if (!parse(array.at(i), QStringLiteral("%1[%2]").arg(place).arg(i), &v[i], limit))
            return false;
    }
    *result = Vector3(float(v[0]), float(v[1]), float(v[2]));
    return true;
}

bool JsonFieldChecker::required(const QJsonObject &object, const QString &place, QLatin1String name)
{
    if (object.contains(name))
        return true;
    return fail(field(place, name), QStringLiteral("required field is missing"));
}

QString JsonFieldChecker::field(const QString &place, QLatin1String name)
{
    return place.isEmpty() ? QString(name) : place + QLatin1Char('.') + name;
}

QString JsonFieldChecker::found(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Null:
        return QStringLiteral("null");
    case QJsonValue::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QJsonValue::Double:
        return numberText(value.toDouble());
    case QJsonValue::String:
        return value.toString().size() <= 40 ? quoted(value.toString())
                                             : QStringLiteral("a string");
    case QJsonValue::Array:
        return QStringLiteral("an array");
    case QJsonValue::Object:
        return QStringLiteral("an object");
    case QJsonValue::Undefined:
        break;
    }
    return QStringLiteral("nothing");
}

QString JsonFieldChecker::quoted(const QString &text)
{
    const QByteArray json = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(json.mid(1, json.size() - 2)); // without the brackets
}

QString JsonFieldChecker::numberText(double value)
{
    if (value == std::floor(value) && std::abs(value) < 1e15)
        return QString::number(qint64(value));
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

QString JsonFieldChecker::floatText(float value)
{
    char text[32];
    const std::to_chars_result end = std::to_chars(std::begin(text), std::end(text), value);
    return QString::fromLatin1(text, int(end.ptr - text));
}

QString JsonFieldChecker::rangeProblem(double value, double limit)
{
    return QStringLiteral("%1 is outside -%2..%2").arg(numberText(value), numberText(limit));
}

} // namespace vantrel::host
