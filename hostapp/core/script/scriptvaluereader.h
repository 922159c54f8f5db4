// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"

#include <QScriptValue>
#include <QVariant>
#include <QVariantMap>

class QScriptEngine;

namespace vantrel::host {

// Reads a script's argument into plain Qt values, once, before the caller changes anything.
//
// Reading runs the script's own code: getters, and the valueOf of an object that has one of its
// own making. That code may throw, or change the scene; so every read is followed by a look for
// a pending exception, and callers check their nodes again after a read. Nesting and size are
// bounded, so that no argument can exhaust the call stack or the memory:
//   - numbers, strings, booleans, null and undefined become what QScriptValue::toVariant makes
//     of them; nodes and other Qt objects their QObject pointer; dates and regular expressions
//     their Qt types;
//   - an object whose valueOf is not Object.prototype.valueOf (new Number(2),
//     {valueOf: function () {...}}) becomes what its valueOf answers, when that is no object;
//   - arrays become lists, other objects maps of their own enumerable properties, at most
//     MostNesting levels deep and MostValues values in all.
// A read that fails leaves an exception pending in the engine: the script's own, or one of
//   "The parameter is nested more than 64 levels deep"
//   "The parameter holds more than 1000000 values"
class VANTREL_HOST_EXPORT ScriptValueReader
{
public:
    static constexpr int MostNesting = 64;
    static constexpr int MostValues = 1000000;

    // defaultValueOf: Object.prototype.valueOf as the engine started, before any script could
    // replace it.
    ScriptValueReader(QScriptEngine *engine, QScriptValue defaultValueOf);

    // Any value.
    bool read(const QScriptValue &value, QVariant *out);
    // The own enumerable properties of an object (the caller has checked that it is a plain
    // one), the object itself counting as the first level.
    bool readProperties(const QScriptValue &object, QVariantMap *out);

private:
    bool readValue(const QScriptValue &value, int depth, QVariant *out);
    bool readMap(const QScriptValue &object, int depth, QVariantMap *out);
    bool readList(const QScriptValue &array, int depth, QVariantList *out);
    bool count(long long values);
    bool threw() const;
    bool fail(const QString &message);

    QScriptEngine *m_engine;
    QScriptValue m_defaultValueOf;
    long long m_values = 0;
};

} // namespace vantrel::host
