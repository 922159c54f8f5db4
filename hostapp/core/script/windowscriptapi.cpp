// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/script/windowscriptapi.h"

#include "hostapp/core/script/scriptrunner.h"
#include "hostapp/core/script/scriptvalues.h"
#include "hostapp/ui/panelaccess.h"

#include <QCoreApplication>
#include <QDialog>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>

namespace vantrel::host {

namespace {

QDialog *self(QScriptContext *context)
{
    // The window's script object is a plain object holding the window in its data: wrapping
    // the dialog itself would also show its Qt properties, the tool's settings, which a script
    // could then write past the panel and its checks.
    auto *window = qobject_cast<QDialog *>(context->thisObject().data().toQObject());
    if (!window)
        context->throwError(QStringLiteral("The tool window is closed"));
    return window;
}

QScriptValue title(QScriptContext *context, QScriptEngine *)
{
    QDialog *window = self(context);
    return window ? QScriptValue(window->windowTitle()) : QScriptValue();
}

QScriptValue get(QScriptContext *context, QScriptEngine *engine)
{
    QDialog *window = self(context);
    if (!window)
        return QScriptValue();
    if (!context->argument(0).isString())
        return context->throwError(QStringLiteral("Usage: window.get(property)"));
    PanelAccess *panel = FindPanel(window);
    const QString property = context->argument(0).toString();
    const QVariant value = panel ? panel->panelValue(property) : QVariant();
    if (!value.isValid())
        return context->throwError(
            QStringLiteral("The window has no setting \"%1\"").arg(property));
    return engine->toScriptValue(value);
}

// The value set() was given, for its message; an object's own toString is not run again.
QString valueText(const QScriptValue &given, const QVariant &read)
{
    if (!given.isObject())
        return given.toString();
    switch (read.userType()) {
    case QMetaType::QVariantMap:
    case QMetaType::QVariantList:
    case QMetaType::QObjectStar:
        return QStringLiteral("an object");
    default:
        return read.toString();
    }
}

QScriptValue set(QScriptContext *context, QScriptEngine *engine)
{
    QPointer<QDialog> window = self(context);
    if (!window)
        return QScriptValue();
    if (!context->argument(0).isString())
        return context->throwError(QStringLiteral("Usage: window.set(property, value)"));
    // The value is read before the panel sees it; its getters may throw, or even close the
    // window.
    auto *runner = qobject_cast<ScriptRunner *>(engine->parent());
    QVariant value;
    if (!runner || !runner->readValue(context->argument(1), &value))
        return QScriptValue();
    if (!window)
        return context->throwError(QStringLiteral("The tool window is closed"));
    PanelAccess *panel = FindPanel(window);
    const QString property = context->argument(0).toString();
    if (!panel || !panel->setPanelValue(property, value))
        return context->throwError(QStringLiteral("The window has no setting \"%1\" that takes %2")
                                       .arg(property, valueText(context->argument(1), value)));
    return QScriptValue();
}

// Presses the named button as a user would (falling back to the dialog's own slot), then lets
// the host delete the closed window, which keeps or reverts the tool's changes.
QScriptValue close(QScriptContext *context, const char *buttonName, bool accept)
{
    QDialog *window = self(context);
    if (!window)
        return QScriptValue();
    if (auto *button = window->findChild<QPushButton *>(QLatin1String(buttonName)))
        button->click();
    else if (accept)
        window->accept();
    else
        window->reject();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return QScriptValue();
}

QScriptValue accept(QScriptContext *context, QScriptEngine *)
{
    return close(context, "ok", true);
}

QScriptValue cancel(QScriptContext *context, QScriptEngine *)
{
    return close(context, "cancel", false);
}

QListWidget *rowList(QScriptContext *context, QDialog *window)
{
    auto *list = window->findChild<QListWidget *>(QStringLiteral("nodes"));
    if (!list)
        context->throwError(QStringLiteral("The window has no list of rows"));
    return list;
}

QScriptValue rows(QScriptContext *context, QScriptEngine *engine)
{
    QDialog *window = self(context);
    QListWidget *list = window ? rowList(context, window) : nullptr;
    if (!list)
        return QScriptValue();
    QStringList texts;
    for (int i = 0; i < list->count(); ++i)
        texts.append(list->item(i)->text());
    return engine->toScriptValue(texts);
}

QScriptValue moveRow(QScriptContext *context, QScriptEngine *)
{
    QDialog *window = self(context);
    QListWidget *list = window ? rowList(context, window) : nullptr;
    if (!list)
        return QScriptValue();
    // Plain numbers only: converting an object would run its valueOf, which might close the
    // window under our feet.
    const bool numbers = context->argument(0).isNumber() && context->argument(1).isNumber();
    const int from = numbers ? context->argument(0).toInt32() : -1;
    const int to = numbers ? context->argument(1).toInt32() : -1;
    if (from < 0 || from >= list->count() || to < 0 || to >= list->count())
        return context->throwError(
            QStringLiteral("Usage: window.moveRow(from, to) with rows 0 to %1")
                .arg(list->count() - 1));
    list->insertItem(to, list->takeItem(from));
    // A drag inside the list ends with the list losing its drag object: that is what the window
    // listens for. Then the queued reaction runs, as after a real drop.
    QObject dragObject;
    QChildEvent removed(QEvent::ChildRemoved, &dragObject);
    QCoreApplication::sendEvent(list, &removed);
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return QScriptValue();
}

} // namespace

QScriptValue wrapWindow(QScriptEngine *engine, QDialog *window)
{
    if (!window)
        return engine->nullValue();
    QScriptValue prototype = engine->newObject();
    defineAccessor(engine, prototype, "title", title, QScriptValue::PropertyGetter);
    defineAccessor(engine, prototype, "rows", rows, QScriptValue::PropertyGetter);
    defineMethod(engine, prototype, "get", get, 1);
    defineMethod(engine, prototype, "set", set, 2);
    defineMethod(engine, prototype, "accept", accept, 0);
    defineMethod(engine, prototype, "cancel", cancel, 0);
    defineMethod(engine, prototype, "moveRow", moveRow, 2);
    QScriptValue object = engine->newObject();
    object.setPrototype(prototype);
    object.setData(engine->newQObject(window, QScriptEngine::QtOwnership));
    return object;
}

} // namespace vantrel::host
