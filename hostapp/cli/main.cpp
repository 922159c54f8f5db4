// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// vantrel: the stand-in host program. This file only parses the command line; the work is done
// by the host library, so that tests and benchmarks run exactly what users run.

#include "hostapp/core/demo.h"
#include "hostapp/core/pluginloader.h"
#include "hostapp/core/runcommand.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QTextStream>

#include <unistd.h>

int main(int argc, char *argv[])
{
    // Without a display the program still runs: tool windows are real widgets on the offscreen
    // platform, driven by scripts.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY")
        && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Qt warns on every start when the runtime folder is not set (as in containers and CI);
    // point it at the private folder Qt would fall back to anyway.
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) {
        const QByteArray runtime
            = QDir::tempPath().toLocal8Bit() + "/runtime-vantrel-" + QByteArray::number(getuid());
        QDir().mkpath(QString::fromLocal8Bit(runtime));
        QFile::setPermissions(QString::fromLocal8Bit(runtime),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("XDG_RUNTIME_DIR", runtime);
    }
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("vantrel"));
    QApplication::setApplicationVersion(QStringLiteral(VANTREL_VERSION));

    QTextStream out(stdout);
    QTextStream err(stderr);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("The stand-in host of the vantrel tools plug-in.\n\n"
                       "Commands:\n"
                       "  run [SCENE]  Open the scene file (or an empty scene), load the tools,\n"
                       "               run the scripts in the order given, each as one undo\n"
                       "               step, and save when asked.\n"
                       "  demo         Load the tools plug-in, list its tools, build a sample\n"
                       "               packaging scene and run the tools on it, printing what\n"
                       "               each step does.\n\n"
                       "Exit status: 0 on success, 1 for a script error or a file that cannot be\n"
                       "read or written, 2 for bad usage."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption scriptOption(QStringLiteral("script"),
                                          QStringLiteral("Run the script file (run; repeatable)."),
                                          QStringLiteral("file"));
    const QCommandLineOption codeOption(QStringLiteral("e"),
                                        QStringLiteral("Run the script code (run; repeatable)."),
                                        QStringLiteral("code"));
    const QCommandLineOption saveOption(QStringLiteral("save"),
                                        QStringLiteral("Save the scene to the file afterwards."),
                                        QStringLiteral("file"));
    const QCommandLineOption pluginOption(
        QStringLiteral("tools-plugin"),
        QStringLiteral("The tools plug-in library to load (default: %1).")
            .arg(vantrel::host::PluginLoader::defaultToolsPluginPath()),
        QStringLiteral("file"));
    parser.addOptions({scriptOption, codeOption, saveOption, pluginOption});
    parser.addPositionalArgument(QStringLiteral("command"), QStringLiteral("run or demo"));
    parser.addPositionalArgument(QStringLiteral("scene"),
                                 QStringLiteral("The scene file (run)."),
                                 QStringLiteral("[scene]"));

    auto usageError = [&err](const QString &message) {
        err << "vantrel: " << message << "\nTry 'vantrel --help'.\n";
        return 2;
    };
    if (!parser.parse(QApplication::arguments()))
        return usageError(parser.errorText());
    if (parser.isSet(QStringLiteral("help"))) {
        out << parser.helpText();
        return 0;
    }
    if (parser.isSet(QStringLiteral("version"))) {
        out << "vantrel " << VANTREL_VERSION << '\n';
        return 0;
    }
    const QStringList positional = parser.positionalArguments();
    const QString command = positional.value(0);
    const QString plugin = parser.isSet(pluginOption)
                               ? parser.value(pluginOption)
                               : vantrel::host::PluginLoader::defaultToolsPluginPath();
    if (command == QStringLiteral("demo")) {
        if (positional.size() > 1 || parser.isSet(scriptOption) || parser.isSet(codeOption))
            return usageError(QStringLiteral("demo takes no scene and no scripts"));
        return vantrel::host::runDemo(plugin, parser.value(saveOption), out, err);
    }
    if (command == QStringLiteral("run")) {
        if (positional.size() > 2)
            return usageError(QStringLiteral("run takes one scene file at most"));
        vantrel::host::RunOptions options;
        options.pluginPath = plugin;
        options.scenePath = positional.value(1);
        options.savePath = parser.value(saveOption);
        // Scripts run in the order they were given, --script and -e mixed.
        const QStringList files = parser.values(scriptOption), codes = parser.values(codeOption);
        int file = 0, code = 0;
        for (const QString &name : parser.optionNames()) {
            if (name == QLatin1String("script"))
                options.scripts.append({true, files.value(file++)});
            else if (name == QLatin1String("e"))
                options.scripts.append({false, codes.value(code++)});
        }
        return vantrel::host::runScripts(options, out, err);
    }
    return usageError(
        command.isEmpty()
            ? QStringLiteral("a command is needed")
            : QStringLiteral("unknown command: %1").arg(positional.join(QLatin1Char(' '))));
}
