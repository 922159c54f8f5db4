// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// The fault-injection suite: hostile and careless input given to the real `vantrel` program, one
// row of a table per input. Every row checks the same promises, whatever the input:
//   - the program ends by itself (no crash, no hang past the row's time limit);
//   - with the exit status the row expects (0 an honest success, 1 an error, 2 bad usage);
//   - standard error matches the row's message (a regular expression);
//   - after a failure, nothing in the row's folder changed: no file written, truncated, replaced
//     or removed, and a FIFO or device stays what it was.
// Rows of one area live in one file (faults_<area>_test.cpp) and are instantiated there.

#include <gtest/gtest.h>

#include <QByteArray>
#include <QDir>
#include <QString>
#include <QStringList>

#include <functional>
#include <map>
#include <ostream>
#include <string>

namespace vantrel::test {

// What one run of the program did.
struct FaultRun
{
    int exitCode = -1;
    QString out;
    QString err;
};

struct FaultCase
{
    std::string name; // the test's name: letters, digits and underscores
    // Arguments to vantrel. "{dir}" in any argument stands for the row's own empty folder.
    QStringList arguments;
    int exitCode = 1;
    // A regular expression that standard error must match; empty for none.
    QString message;
    // Writes what the row needs into its folder before the run (input files, FIFOs).
    std::function<void(const QDir &dir)> prepare;
    // Further checks after the run (for example that a saved file opens again).
    std::function<void(const QDir &dir, const FaultRun &run)> check;
    // Paths outside the folder that must keep their kind and contents.
    QStringList specialFiles;
    // When above 0, the program may write files of at most this many KiB (`ulimit -f`), and a
    // write past that fails with EFBIG as on a full disk.
    int fileSizeLimitKiB = 0;
    int timeoutSeconds = 45;
};

// gtest prints the row by its name.
inline void PrintTo(const FaultCase &row, std::ostream *os)
{
    *os << row.name;
}

// The test of every row: runs the program and checks the promises above.
class FaultTest : public ::testing::TestWithParam<FaultCase>
{};

// The test name of a row, for INSTANTIATE_TEST_SUITE_P.
std::string faultCaseName(const ::testing::TestParamInfo<FaultCase> &info);

// Runs vantrel with the arguments in dir ("{dir}" replaced), from dir as working directory.
FaultRun runVantrel(const QStringList &arguments,
                    const QDir &dir,
                    int timeoutSeconds = 45,
                    int fileSizeLimitKiB = 0);

// Helpers for the rows' prepare functions.
void writeFile(const QDir &dir, const QString &name, const QByteArray &bytes);
QByteArray readFile(const QString &path);
void makeFifo(const QDir &dir, const QString &name);
// A character device like /dev/null, made in the row's folder so that a program that wrongly
// replaces it cannot harm the real one. Skips the test where devices cannot be made (not root).
void makeNullDevice(const QDir &dir, const QString &name);
// A valid scene file with a box and a book, about 2 KiB: what a user saves and must not lose.
QByteArray smallScene();
// The tools plug-in the program loads by default.
QString toolsPluginPath();

} // namespace vantrel::test
