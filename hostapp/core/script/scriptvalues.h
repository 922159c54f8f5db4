// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// Conversions between script values and host values, shared by the script API's files.

#include "host/types.h"

#include <QScriptContext>
#include <QScriptEngine>
#include <QScriptValue>

#include <cmath>
#include <limits>

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

// Whether a script number is stored as it is in the scene's single precision: not NaN, not
// infinite, and no larger than the largest float (a double such as 1e39 would become infinity).
inline bool fitsSinglePrecision(double number)
{
    return std::isfinite(number) && std::fabs(number) <= double(std::numeric_limits<float>::max());
}

// How reading numbers from a script value turned out.
enum class NumberRead {
    Read,
    NotNumbers, // not a number (or not an array of three numbers)
    Unfit,      // numbers, but not all of them fit in single precision
    Threw       // an element's getter threw; the exception is pending
};

// An array of exactly three numbers that fit in single precision.
inline NumberRead fromScript(const QScriptValue &value, Vector3 *out)
{
    if (!value.isArray() || value.property(QStringLiteral("length")).toInt32() != 3)
        return NumberRead::NotNumbers;
    double c[3];
    for (quint32 i = 0; i < 3; ++i) {
        const QScriptValue element = value.property(i); // may run a getter
        if (value.engine()->hasUncaughtException())
            return NumberRead::Threw;
        if (!element.isNumber())
            return NumberRead::NotNumbers;
        c[i] = element.toNumber();
    }
    for (double number : c) {
        if (!fitsSinglePrecision(number))
            return NumberRead::Unfit;
    }
    *out = Vector3(float(c[0]), float(c[1]), float(c[2]));
    return NumberRead::Read;
}

// A number that fits in single precision.
inline NumberRead fromScript(const QScriptValue &value, float *out)
{
    if (!value.isNumber())
        return NumberRead::NotNumbers;
    const double number = value.toNumber();
    if (!fitsSinglePrecision(number))
        return NumberRead::Unfit;
    *out = float(number);
    return NumberRead::Read;
}

// Throws the error for a value fromScript refused, naming the member: "position must be an array
// of three numbers", "position must be three finite numbers that fit in single precision";
// "distance must be a number", "distance must be a finite number that fits in single precision".
// An exception already pending is left as it is.
inline QScriptValue
throwNumberError(QScriptContext *context, NumberRead read, const char *what, bool vector)
{
    const QLatin1String name(what);
    switch (read) {
    case NumberRead::NotNumbers:
        return context->throwError(
            QScriptContext::TypeError,
            vector ? QStringLiteral("%1 must be an array of three numbers").arg(name)
                   : QStringLiteral("%1 must be a number").arg(name));
    case NumberRead::Unfit:
        return context->throwError(
            QScriptContext::RangeError,
            vector ? QStringLiteral("%1 must be three finite numbers that fit in single precision")
                         .arg(name)
                   : QStringLiteral("%1 must be a finite number that fits in single precision")
                         .arg(name));
    case NumberRead::Read:
    case NumberRead::Threw:
        break;
    }
    return QScriptValue();
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

// The accessor of a number setting: reads it, or writes a number that fits in single precision
// through the setter (which applies the object's own limits) and refuses anything else.
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
    const NumberRead read = fromScript(context->argument(0), &value);
    if (read != NumberRead::Read)
        return throwNumberError(context, read, what, false);
    (object.*set)(value);
    return QScriptValue();
}

} // namespace vantrel::host
