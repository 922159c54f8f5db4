// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDeadlineTimer>
#include <QString>
#include <QTimer>

class QScriptEngine;

namespace vantrel::host {

// The time a run's scripts may take together (`vantrel run --time-limit`). The clock starts when
// the limit is made, and every evaluation after that shares it: what a user running a batch job
// counts is the wall time of the whole job, not of each script.
//
// How a script is stopped: QtScript cannot be stopped from another thread, and an engine agent is
// not called at all inside a loop without statements (`while (true) {}`). What the engine does do,
// in every loop and call, is check now and then whether to process events
// (QScriptEngine::setProcessEventsInterval). While an evaluation runs under the limit it does, and
// a timer then aborts the evaluation (QScriptEngine::abortEvaluation). The abort takes effect at
// the engine's next check, so it falls between two steps of the script, never inside a native
// function: a tool running when the time is up finishes what it does, and the script stops as soon
// as control comes back to it. A script cannot catch the abort: neither catch nor finally blocks
// run.
class ScriptTimeLimit
{
public:
    // seconds > 0; the clock starts now.
    ScriptTimeLimit(QScriptEngine *engine, double seconds);
    ScriptTimeLimit(const ScriptTimeLimit &) = delete;
    ScriptTimeLimit &operator=(const ScriptTimeLimit &) = delete;

    bool expired() const { return m_deadline.hasExpired(); }
    // Around one evaluation: arm before, disarm after; disarm says whether the limit stopped it.
    void arm();
    bool disarm();
    // "<file>:<line>" where the last evaluation was stopped, when the engine knew; else empty.
    const QString &where() const { return m_where; }
    // "<place>: script stopped: time limit of 2 s reached"
    QString message(const QString &place) const;

private:
    void stop();

    QScriptEngine *m_engine;
    double m_seconds;
    QDeadlineTimer m_deadline;
    QTimer m_timer;
    int m_savedInterval = -1;
    bool m_stopped = false;
    QString m_where;
};

} // namespace vantrel::host
