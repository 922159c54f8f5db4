// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tests/faults/faultcase.h"

#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace vantrel::test {

namespace {

// A file's kind and, for a regular file, its bytes: what must not change after a failure.
QByteArray fingerprint(const QString &path)
{
    struct stat info = {};
    if (::lstat(QFile::encodeName(path).constData(), &info) != 0)
        return "missing";
    if (S_ISFIFO(info.st_mode))
        return "fifo";
    if (S_ISCHR(info.st_mode))
        return "character device " + QByteArray::number(qulonglong(info.st_rdev));
    if (S_ISBLK(info.st_mode))
        return "block device";
    if (S_ISLNK(info.st_mode))
        return "link";
    if (S_ISDIR(info.st_mode))
        return "folder";
    return "file " + QByteArray::number(qlonglong(info.st_mode & 07777), 8) + '\n' + readFile(path);
}

std::map<QString, QByteArray> snapshot(const QDir &dir, const QStringList &specialFiles)
{
    std::map<QString, QByteArray> files;
    QDirIterator it(dir.path(),
                    QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        files[dir.relativeFilePath(path)] = fingerprint(path);
    }
    for (const QString &path : specialFiles)
        files[path] = fingerprint(path);
    return files;
}

QString describe(const std::map<QString, QByteArray> &before,
                 const std::map<QString, QByteArray> &after)
{
    QStringList changes;
    for (const auto &[path, print] : before) {
        const auto found = after.find(path);
        if (found == after.end())
            changes << QStringLiteral("%1 removed").arg(path);
        else if (found->second != print)
            changes << QStringLiteral("%1 changed (%2 bytes before, %3 after)")
                           .arg(path)
                           .arg(print.size())
                           .arg(found->second.size());
    }
    for (const auto &[path, print] : after) {
        if (before.find(path) == before.end())
            changes << QStringLiteral("%1 created").arg(path);
    }
    return changes.join(QStringLiteral("; "));
}

} // namespace

std::string faultCaseName(const ::testing::TestParamInfo<FaultCase> &info)
{
    return info.param.name;
}

FaultRun
runVantrel(const QStringList &arguments, const QDir &dir, int timeoutSeconds, int fileSizeLimitKiB)
{
    QStringList expanded;
    for (const QString &argument : arguments)
        expanded << QString(argument).replace(QLatin1String("{dir}"), dir.path());
    QProcess process;
    process.setWorkingDirectory(dir.path());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    process.setProcessEnvironment(environment);
    if (fileSizeLimitKiB > 0) {
        // ulimit -f counts blocks of 1 KiB in dash and bash alike.
        process.setProgram(QStringLiteral("/bin/sh"));
        process.setArguments(
            QStringList{QStringLiteral("-c"),
                        QStringLiteral("trap '' XFSZ; ulimit -f %1; exec \"$0\" \"$@\"")
                            .arg(fileSizeLimitKiB),
                        QStringLiteral(VANTREL_PROGRAM)}
            + expanded);
    } else {
        process.setProgram(QStringLiteral(VANTREL_PROGRAM));
        process.setArguments(expanded);
    }
    process.start();
    FaultRun run;
    if (!process.waitForStarted(10000)) {
        ADD_FAILURE() << "vantrel did not start: " << process.errorString().toStdString();
        return run;
    }
    process.closeWriteChannel();
    if (!process.waitForFinished(timeoutSeconds * 1000)) {
        process.kill();
        process.waitForFinished(5000);
        ADD_FAILURE() << "vantrel " << expanded.join(QLatin1Char(' ')).left(300).toStdString()
                      << " still ran after " << timeoutSeconds << " s";
    } else if (process.exitStatus() == QProcess::CrashExit) {
        ADD_FAILURE() << "vantrel crashed on "
                      << expanded.join(QLatin1Char(' ')).left(300).toStdString() << "\n"
                      << QString::fromLocal8Bit(process.readAllStandardError()).toStdString();
    } else {
        run.exitCode = process.exitCode();
    }
    run.out = QString::fromLocal8Bit(process.readAllStandardOutput());
    run.err = QString::fromLocal8Bit(process.readAllStandardError());
    return run;
}

void writeFile(const QDir &dir, const QString &name, const QByteArray &bytes)
{
    QFile file(dir.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << file.fileName().toStdString();
    ASSERT_EQ(file.write(bytes), bytes.size());
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

void makeFifo(const QDir &dir, const QString &name)
{
    ASSERT_EQ(::mkfifo(QFile::encodeName(dir.filePath(name)).constData(), 0600), 0);
}

void makeNullDevice(const QDir &dir, const QString &name)
{
    if (::mknod(QFile::encodeName(dir.filePath(name)).constData(), S_IFCHR | 0666, makedev(1, 3))
        != 0)
        GTEST_SKIP() << "cannot make a device here (not root)";
}

QByteArray smallScene()
{
    static const QByteArray scene = [] {
        QTemporaryDir dir;
        const FaultRun run = runVantrel(
            {QStringLiteral("run"),
             QStringLiteral("-e"),
             QStringLiteral("document.root.addShape('generator.Boxes.Box', 'Box');"
                            "document.root.addShape('generator.Book.HardCover', 'Book')"
                            ".position = [20, 0, 5]"),
             QStringLiteral("--save"),
             QStringLiteral("{dir}/small.vscene")},
            QDir(dir.path()));
        EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
        return readFile(QDir(dir.path()).filePath(QStringLiteral("small.vscene")));
    }();
    return scene;
}

QString toolsPluginPath()
{
    return QStringLiteral(VANTREL_TOOLS_PLUGIN);
}

TEST_P(FaultTest, EndsCleanlyAndLosesNothing)
{
    const FaultCase &row = GetParam();
    QTemporaryDir temporary;
    ASSERT_TRUE(temporary.isValid());
    const QDir dir(temporary.path());
    if (row.prepare)
        row.prepare(dir);
    if (HasFatalFailure() || IsSkipped())
        return;
    const auto before = snapshot(dir, row.specialFiles);
    const FaultRun run = runVantrel(row.arguments, dir, row.timeoutSeconds, row.fileSizeLimitKiB);
    EXPECT_EQ(run.exitCode, row.exitCode) << "standard error:\n" << run.err.toStdString();
    if (!row.message.isEmpty()) {
        EXPECT_TRUE(QRegularExpression(row.message).match(run.err).hasMatch())
            << "standard error:\n"
            << run.err.toStdString() << "\ndoes not match: " << row.message.toStdString();
    }
    if (row.exitCode != 0) {
        const auto after = snapshot(dir, row.specialFiles);
        EXPECT_TRUE(before == after)
            << "after a failure: " << describe(before, after).toStdString();
    }
    if (row.check)
        row.check(dir, run);
}

} // namespace vantrel::test
