// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/commands/terminalreadprogress.h"

#include <QFileInfo>
#include <QTextStream>

#include <algorithm>
#include <cmath>

#include <unistd.h>

namespace vantrel::host {

TerminalReadProgress::TerminalReadProgress(QTextStream &err)
    : m_err(err)
    , m_scope(this)
{}

TerminalReadProgress::~TerminalReadProgress() = default;

std::unique_ptr<TerminalReadProgress> TerminalReadProgress::forErrorOutput(QTextStream &err)
{
    if (::isatty(STDERR_FILENO) != 1)
        return nullptr;
    return std::make_unique<TerminalReadProgress>(err);
}

QString TerminalReadProgress::progressLine(const QString &fileName, double fraction)
{
    // Written as a test that NaN fails, so that a reader's nonsense shows as 0 %.
    const double share = fraction >= 0 ? std::min(fraction, 1.0) : 0.0;
    const int percent = int(std::floor(share * 100));
    return QStringLiteral("Reading %1: %2 %").arg(fileName).arg(percent);
}

QString TerminalReadProgress::endLine(const QString &fileName, qint64 milliseconds)
{
    return QStringLiteral("Reading %1: done in %2 s")
        .arg(fileName, QString::number(double(milliseconds) / 1000, 'f', 1));
}

void TerminalReadProgress::started(const QString &path)
{
    // A reading inside a reading (none is expected) keeps the outer one's line.
    if (m_depth++ > 0)
        return;
    m_fileName = QFileInfo(path).fileName();
    m_drawn.clear();
    m_clock.start();
}

bool TerminalReadProgress::progressed(double fraction)
{
    if (m_depth != 1) // a nested reading, or none started
        return true;
    const qint64 now = m_clock.elapsed();
    if (now < ShowAfterMilliseconds || (!m_drawn.isEmpty() && now - m_drawnAt < RedrawMilliseconds))
        return true;
    const QString text = progressLine(m_fileName, fraction);
    if (text != m_drawn) {
        draw(text);
        m_drawnAt = now;
    }
    return true; // a terminal has no Cancel: Ctrl+C ends the whole program
}

void TerminalReadProgress::finished(bool read)
{
    if (m_depth == 0 || --m_depth > 0 || m_drawn.isEmpty())
        return;
    if (read) {
        draw(endLine(m_fileName, m_clock.elapsed()));
        m_err << '\n';
    } else {
        // The command's message takes the line's place.
        draw(QString());
        m_err << '\r';
    }
    m_err.flush();
    m_drawn.clear();
}

void TerminalReadProgress::draw(const QString &text)
{
    const int cover = std::max(0, int(m_drawn.size() - text.size()));
    m_err << '\r' << text << QString(cover, QLatin1Char(' '));
    m_err.flush();
    m_drawn = text;
}

} // namespace vantrel::host
