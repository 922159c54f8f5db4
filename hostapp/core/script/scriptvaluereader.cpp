// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/script/scriptvaluereader.h"

#include <QDateTime>
#include <QRegExp>
#include <QScriptContext>
#include <QScriptEngine>
#include <QScriptValueIterator>

namespace vantrel::host {

ScriptValueReader::ScriptValueReader(QScriptEngine *engine, QScriptValue defaultValueOf)
    : m_engine(engine)
    , m_defaultValueOf(std::move(defaultValueOf))
{}

bool ScriptValueReader::read(const QScriptValue &value, QVariant *out)
{
    QVariant result;
    if (!readValue(value, 0, &result))
        return false;
    *out = result;
    return true;
}

bool ScriptValueReader::readProperties(const QScriptValue &object, QVariantMap *out)
{
    QVariantMap result;
    if (!count(1) || !readMap(object, 1, &result))
        return false;
    *out = result;
    return true;
}

// depth: how many arrays and objects enclose the value.
bool ScriptValueReader::readValue(const QScriptValue &value, int depth, QVariant *out)
{
    if (!count(1))
        return false;
    // Primitives, and the objects the engine converts without running script code.
    if (!value.isObject() || value.isVariant()) {
        *out = value.toVariant();
        return true;
    }
    if (value.isQObject()) {
        *out = QVariant::fromValue(value.toQObject());
        return true;
    }
    if (value.isDate()) {
        *out = value.toDateTime();
        return true;
    }
    if (value.isRegExp()) {
        *out = value.toRegExp();
        return true;
    }
    if (!value.isArray()) {
        // A number, string or boolean object, or an object made to stand for a value.
        const QScriptValue valueOf = value.property(QStringLiteral("valueOf"));
        if (threw())
            return false;
        if (valueOf.isFunction() && !valueOf.strictlyEquals(m_defaultValueOf)) {
            QScriptValue function = valueOf;
            const QScriptValue primitive = function.call(value);
            if (threw())
                return false;
            if (!primitive.isObject()) {
                *out = primitive.toVariant();
                return true;
            }
        }
    }
    if (depth >= MostNesting)
        return fail(
            QStringLiteral("The parameter is nested more than %1 levels deep").arg(MostNesting));
    if (value.isArray()) {
        QVariantList list;
        if (!readList(value, depth + 1, &list))
            return false;
        *out = list;
        return true;
    }
    QVariantMap map;
    if (!readMap(value, depth + 1, &map))
        return false;
    *out = map;
    return true;
}

// level: how many arrays and objects enclose the properties, the object itself included.
bool ScriptValueReader::readMap(const QScriptValue &object, int level, QVariantMap *out)
{
    // The iterator takes the property names as they are now; a getter that adds or deletes
    // properties changes only the values read after it.
    QScriptValueIterator it(object);
    while (it.hasNext()) {
        it.next();
        if (it.flags() & QScriptValue::SkipInEnumeration)
            continue;
        const QScriptValue property = it.value(); // runs the property's getter, if it has one
        if (threw())
            return false;
        QVariant converted;
        if (!readValue(property, level, &converted))
            return false;
        out->insert(it.name(), converted);
    }
    return true;
}

bool ScriptValueReader::readList(const QScriptValue &array, int level, QVariantList *out)
{
    // An array's length is its own and runs no script code; holes read as undefined. A sparse
    // array of a huge length would make a huge list: its length counts against the limit first.
    const quint32 length = array.property(QStringLiteral("length")).toUInt32();
    if (m_values + length > MostValues)
        return count(length);
    out->reserve(int(length));
    for (quint32 i = 0; i < length; ++i) {
        const QScriptValue element = array.property(i);
        if (threw())
            return false;
        QVariant converted;
        if (!readValue(element, level, &converted))
            return false;
        out->append(converted);
    }
    return true;
}

bool ScriptValueReader::count(long long values)
{
    m_values += values;
    if (m_values <= MostValues)
        return true;
    return fail(QStringLiteral("The parameter holds more than %1 values").arg(MostValues));
}

bool ScriptValueReader::threw() const
{
    return m_engine->hasUncaughtException();
}

bool ScriptValueReader::fail(const QString &message)
{
    m_engine->currentContext()->throwError(message);
    return false;
}

} // namespace vantrel::host
