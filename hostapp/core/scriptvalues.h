// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// Conversions between script values and host values, shared by the script API's files.

#include "host/types.h"

#include <QScriptContext>
#include <QScriptEngine>
#include <QScriptValue>

#include <cmath>

namespace vantrel::host {

inline QScriptValue toScript(QScriptEngine *engine, const float *values, int count)
{
    QScriptValue array = engine->newArray(uint(count));
    for (int i = 0; i < count; ++i)
        array.setProperty(quint32(i), double(values[i]));
    return array;
}

inline QScriptValue toScript(QScriptEngine *engine, const Vector3 &v)
{
    const float values[3] = {v.x, v.y, v.z};
    return toScript(engine, values, 3);
}

// An array of exactly three finite numbers.
inline bool fromScript(const QScriptValue &value, Vector3 *out)
{
    if (!value.isArray() || value.property(QStringLiteral("length")).toInt32() != 3)
        return false;
    float c[3];
    for (quint32 i = 0; i < 3; ++i) {
        const QScriptValue element = value.property(i);
        if (!element.isNumber() || !std::isfinite(element.toNumber()))
            return false;
        c[i] = float(element.toNumber());
    }
    *out = Vector3(c[0], c[1], c[2]);
    return true;
}

// A finite number.
inline bool fromScript(const QScriptValue &value, float *out)
{
    if (!value.isNumber() || !std::isfinite(value.toNumber()))
        return false;
    *out = float(value.toNumber());
    return true;
}

// Accessor functions (PropertyGetter | PropertySetter) are called with no argument to read and
// one argument to write.
inline bool isWrite(QScriptContext *context)
{
    return context->argumentCount() == 1;
}

// Defines an accessor property: fn is called with no argument to read and one to write.
inline void defineAccessor(QScriptEngine *engine,
                           QScriptValue &object,
                           const char *name,
                           QScriptEngine::FunctionSignature fn,
                           QScriptValue::PropertyFlags access
                           = QScriptValue::PropertyGetter | QScriptValue::PropertySetter)
{
    object.setProperty(
        QLatin1String(name), engine->newFunction(fn), access | QScriptValue::Undeletable);
}

inline void defineMethod(QScriptEngine *engine,
                         QScriptValue &object,
                         const char *name,
                         QScriptEngine::FunctionSignature fn,
                         int arguments)
{
    object.setProperty(
        QLatin1String(name), engine->newFunction(fn, arguments), QScriptValue::Undeletable);
}

inline QScriptValue throwReadOnly(QScriptContext *context, const char *name)
{
    return context->throwError(QScriptContext::TypeError,
                               QStringLiteral("%1 is read only").arg(QLatin1String(name)));
}

// The accessor of a number setting: reads it, or writes a finite number through the setter
// (which applies the object's own limits) and refuses anything else.
template<class Object>
QScriptValue numberAccessor(QScriptContext *context,
                            const char *what,
                            Object &object,
                            float (Object::*get)() const,
                            void (Object::*set)(float))
{
    if (!isWrite(context))
        return double((object.*get)());
    float value = 0;
    if (!fromScript(context->argument(0), &value))
        return context->throwError(QScriptContext::TypeError,
                                   QStringLiteral("%1 must be a number").arg(QLatin1String(what)));
    (object.*set)(value);
    return QScriptValue();
}

} // namespace vantrel::host
