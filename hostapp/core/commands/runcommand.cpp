// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/commands/runcommand.h"

#include "hostapp/core/commands/session.h"
#include "hostapp/core/commands/terminalreadprogress.h"
#include "hostapp/core/files/filechecks.h"
#include "hostapp/core/files/scenefile.h"

#include <QFile>
#include <QTextStream>

namespace vantrel::host {

namespace {

// A script file beyond this is surely no script; reading it whole would only fill the memory.
constexpr qint64 MaximumScriptSize = qint64(64) << 20;

} // namespace

double parseTimeLimit(const QString &text, QString *message)
{
    bool number = false;
    const double seconds = text.trimmed().toDouble(&number);
    // NaN fails both comparisons, and so is refused with the rest.
    if (number && seconds >= MinimumTimeLimit && seconds <= MaximumTimeLimit)
        return seconds;
    *message = QStringLiteral("--time-limit takes a number of seconds from %1 to %2, not \"%3\"")
                   .arg(MinimumTimeLimit)
                   .arg(MaximumTimeLimit)
                   .arg(text);
    return 0;
}

int runScripts(const RunOptions &options,
               QTextStream &out,
               QTextStream &err,
               const std::function<int(Session &)> &finish)
{
    auto failed = [&err](const QString &message) {
        err << "vantrel: " << message << '\n';
        err.flush();
        return 1;
    };
    // Large models take seconds to read, in the scene file or from a script: on a terminal the
    // user sees how far the reading is.
    const std::unique_ptr<TerminalReadProgress> progress
        = TerminalReadProgress::forErrorOutput(err);
    // A save that cannot happen is found before the scripts run, not after.
    if (!options.savePath.isEmpty()) {
        const QString problem = outputFileProblem(options.savePath);
        if (!problem.isEmpty())
            return failed(QStringLiteral("Cannot save %1: %2").arg(options.savePath, problem));
    }
    std::unique_ptr<Document> document;
    if (!options.scenePath.isEmpty()) {
        QString error;
        document = SceneFile::load(options.scenePath, &error);
        if (!document)
            return failed(error);
    }
    Session session(std::move(document));
    QString error;
    if (!session.loadToolsPlugin(options.pluginPath, &error))
        return failed(QStringLiteral("cannot load the tools plug-in: %1").arg(error));
    QObject::connect(
        &session.runner(), &ScriptRunner::printed, &session.runner(), [&out](const QString &line) {
            out << line << '\n';
            out.flush();
        });
    QObject::connect(&session.userInterface(),
                     &HeadlessUserInterface::messageShown,
                     &session.userInterface(),
                     [&out](const QString &text) {
                         out << "message: " << text << '\n';
                         out.flush();
                     });

    // The limit's clock starts with the first script.
    if (options.timeLimit > 0)
        session.runner().setTimeLimit(options.timeLimit);
    int inline_ = 0;
    for (const RunOptions::Script &script : options.scripts) {
        QString program = script.text;
        QString name = script.text;
        if (script.isFile) {
            QFile file;
            QString problem;
            if (!openRegularFile(file, script.text, &problem))
                return failed(QStringLiteral("cannot read %1: %2").arg(script.text, problem));
            if (file.size() > MaximumScriptSize)
                return failed(QStringLiteral("cannot read %1: the file is %2 bytes; scripts are "
                                             "limited to %3 MiB")
                                  .arg(script.text)
                                  .arg(file.size())
                                  .arg(MaximumScriptSize >> 20));
            const QByteArray bytes = file.read(MaximumScriptSize + 1);
            if (file.error() != QFileDevice::NoError)
                return failed(
                    QStringLiteral("cannot read %1: %2").arg(script.text, file.errorString()));
            program = QString::fromUtf8(bytes);
        } else {
            name = QStringLiteral("-e#%1").arg(++inline_);
        }
        if (!session.runner().evaluate(program, name, &error))
            return failed(error);
    }
    if (!options.savePath.isEmpty()
        && !SceneFile::save(options.savePath, session.document(), &error))
        return failed(error);
    return finish ? finish(session) : 0;
}

} // namespace vantrel::host
