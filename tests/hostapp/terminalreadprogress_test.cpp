// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The progress line a model reading draws on a terminal: its texts, when it is drawn and how it
// ends, and that the program prints nothing of it when its error output is no terminal.
#include "hostapp/core/commands/terminalreadprogress.h"
#include "tests/support/gridply.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>
#include <QThread>

#include <cmath>

namespace vantrel::test {

using host::TerminalReadProgress;

TEST(TerminalReadProgressTest, LineTexts)
{
    // Rounded down, so that 100 % only shows for a file read to its end; out of range is held.
    EXPECT_EQ(TerminalReadProgress::progressLine(QStringLiteral("scan.ply"), 0.456),
              QStringLiteral("Reading scan.ply: 45 %"));
    EXPECT_EQ(TerminalReadProgress::progressLine(QStringLiteral("scan.ply"), 0.999),
              QStringLiteral("Reading scan.ply: 99 %"));
    EXPECT_EQ(TerminalReadProgress::progressLine(QStringLiteral("x.stl"), -0.5),
              QStringLiteral("Reading x.stl: 0 %"));
    EXPECT_EQ(TerminalReadProgress::progressLine(QStringLiteral("x.stl"), 7),
              QStringLiteral("Reading x.stl: 100 %"));
    EXPECT_EQ(TerminalReadProgress::progressLine(QStringLiteral("x.stl"), std::nan("")),
              QStringLiteral("Reading x.stl: 0 %"));
    EXPECT_EQ(TerminalReadProgress::endLine(QStringLiteral("scan.ply"), 3240),
              QStringLiteral("Reading scan.ply: done in 3.2 s"));
    EXPECT_EQ(TerminalReadProgress::endLine(QStringLiteral("scan.ply"), 61000),
              QStringLiteral("Reading scan.ply: done in 61.0 s"));
}

TEST(TerminalReadProgressTest, DrawsOnlyReadingsThatLastAndEndsTheLine)
{
    QString written;
    QTextStream err(&written);
    TerminalReadProgress progress(err);
    ASSERT_EQ(host::ModelReadProgress::current(), &progress);

    // A quick reading leaves no trace.
    progress.started(QStringLiteral("/models/small.obj"));
    EXPECT_TRUE(progress.progressed(0.5));
    progress.finished(true);
    EXPECT_EQ(written, QString());

    progress.started(QStringLiteral("/models/scan.ply"));
    EXPECT_TRUE(progress.progressed(0.2));
    EXPECT_EQ(written, QString());
    QThread::msleep(TerminalReadProgress::ShowAfterMilliseconds + 50);
    EXPECT_TRUE(progress.progressed(1));
    EXPECT_EQ(written, QStringLiteral("\rReading scan.ply: 100 %"));
    QThread::msleep(TerminalReadProgress::RedrawMilliseconds + 10);
    // A shorter line covers what is left of the longer one.
    EXPECT_TRUE(progress.progressed(0.05));
    EXPECT_TRUE(written.endsWith(QStringLiteral("\rReading scan.ply: 5 %  ")))
        << written.toStdString();
    written.clear();
    progress.finished(true);
    EXPECT_TRUE(written.startsWith(QStringLiteral("\rReading scan.ply: done in 0.")))
        << written.toStdString();
    EXPECT_TRUE(written.endsWith(QStringLiteral(" s\n"))) << written.toStdString();

    // A failed reading's line is cleared, and the cursor left at its start for the message.
    progress.started(QStringLiteral("/models/broken.ply"));
    QThread::msleep(TerminalReadProgress::ShowAfterMilliseconds + 50);
    EXPECT_TRUE(progress.progressed(0.5));
    written.clear();
    progress.finished(false);
    EXPECT_EQ(written,
              QStringLiteral("\r")
                  + QString(QStringLiteral("Reading broken.ply: 50 %").size(), QLatin1Char(' '))
                  + QStringLiteral("\r"));
}

// Scripts and tests read the error output: with no terminal there, a long reading prints nothing
// more than it did before the progress line existed.
TEST(TerminalReadProgressTest, NothingExtraWithoutATerminal)
{
    QTemporaryDir folder;
    ASSERT_TRUE(folder.isValid());
    const QString model = folder.filePath(QStringLiteral("scan.ply"));
    ASSERT_TRUE(writeGridPly(model, 1000));
    QProcess vantrel;
    vantrel.setProgram(QStringLiteral(VANTREL_PROGRAM));
    vantrel.setArguments(
        {QStringLiteral("run"),
         QStringLiteral("--tools-plugin"),
         QStringLiteral(VANTREL_TOOLS_PLUGIN),
         QStringLiteral("-e"),
         QStringLiteral("var m = document.root.addShape('generator.external.model', 'Scan', "
                        "{path: '%1'}); print(m.name);")
             .arg(model)});
    QElapsedTimer clock;
    clock.start();
    vantrel.start();
    ASSERT_TRUE(vantrel.waitForFinished(120000));
    EXPECT_EQ(vantrel.exitCode(), 0);
    EXPECT_EQ(vantrel.readAllStandardError(), QByteArray());
    EXPECT_EQ(vantrel.readAllStandardOutput(), QByteArray("Scan\n"));
    // Long enough that a terminal would have had its line.
    EXPECT_GT(clock.elapsed(), TerminalReadProgress::ShowAfterMilliseconds);
}

} // namespace vantrel::test
