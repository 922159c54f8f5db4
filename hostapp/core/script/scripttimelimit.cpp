// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/script/scripttimelimit.h"

#include <QScriptContext>
#include <QScriptContextInfo>
#include <QScriptEngine>

#include <cmath>

namespace vantrel::host {

namespace {

// How often (milliseconds of the engine's running time) the engine looks for events while a
// limit is armed: the abort comes at most about this late.
constexpr int CheckInterval = 50;

} // namespace

ScriptTimeLimit::ScriptTimeLimit(QScriptEngine *engine, double seconds)
    : m_engine(engine)
    , m_seconds(seconds)
    , m_deadline(qint64(std::llround(seconds * 1000)), Qt::PreciseTimer)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_timer, &QTimer::timeout, [this] { stop(); });
}

void ScriptTimeLimit::arm()
{
    m_stopped = false;
    m_where.clear();
    m_savedInterval = m_engine->processEventsInterval();
    m_engine->setProcessEventsInterval(CheckInterval);
    m_timer.start(int(std::max<qint64>(0, m_deadline.remainingTime())));
}

bool ScriptTimeLimit::disarm()
{
    m_timer.stop();
    m_engine->setProcessEventsInterval(m_savedInterval);
    return m_stopped;
}

void ScriptTimeLimit::stop()
{
    if (!m_engine->isEvaluating())
        return;
    m_stopped = true;
    // The innermost frame that knows its place. The engine records the place of a frame that has
    // called out (a tool reading a settings getter, say), not of compiled script code running in
    // a loop: then the place stays the evaluation's file alone.
    for (QScriptContext *context = m_engine->currentContext(); context;
         context = context->parentContext()) {
        const QScriptContextInfo info(context);
        if (info.lineNumber() > 0 && !info.fileName().isEmpty()) {
            m_where = QStringLiteral("%1:%2").arg(info.fileName()).arg(info.lineNumber());
            break;
        }
    }
    m_engine->abortEvaluation();
}

QString ScriptTimeLimit::message(const QString &place) const
{
    return QStringLiteral("%1: script stopped: time limit of %2 s reached")
        .arg(place, QString::number(m_seconds));
}

} // namespace vantrel::host
