// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/models/modelreadprogress.h"

#include <QElapsedTimer>
#include <QString>

#include <memory>

class QTextStream;

namespace vantrel::host {

// What `vantrel run`, `render` and `export` show on a terminal while a model file is read: one
// line that rewrites itself, "Reading scan.ply: 45 %", ending as "Reading scan.ply: done in
// 3.2 s", or cleared when the reading failed (the command prints the failure's message). A reading
// shorter than half a second shows nothing, so a script that reads many small models prints nothing
// extra. Nothing at all is shown when the error output is no terminal: scripts and tests read it.
class VANTREL_HOST_EXPORT TerminalReadProgress final : public ModelReadProgress
{
public:
    static constexpr int ShowAfterMilliseconds = 500;
    // A terminal redrawn faster than this only flickers.
    static constexpr int RedrawMilliseconds = 100;

    // Draws on err and installs itself for as long as it lives.
    explicit TerminalReadProgress(QTextStream &err);
    ~TerminalReadProgress() override;

    // One drawing on err when the program's error output is a terminal, else null.
    static std::unique_ptr<TerminalReadProgress> forErrorOutput(QTextStream &err);

    void started(const QString &path) override;
    bool progressed(double fraction) override;
    void finished(bool read) override;

    // The line's texts, without the carriage return that rewrites it. The percentage is rounded
    // down, so that 100 % means read to the end.
    static QString progressLine(const QString &fileName, double fraction);
    static QString endLine(const QString &fileName, qint64 milliseconds);

private:
    // Rewrites the line on the screen with text, padded to cover the longer line before it.
    void draw(const QString &text);

    QTextStream &m_err;
    QString m_fileName;
    QElapsedTimer m_clock;
    qint64 m_drawnAt = 0;
    QString m_drawn; // the line on the screen, empty when none
    int m_depth = 0;
    ModelReadProgress::Scope m_scope;
};

} // namespace vantrel::host
