// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// vantrel: the stand-in host program. This file only parses the command line; the work is done
// by the host library, so that tests and benchmarks run exactly what users run.

#include "hostapp/core/demo.h"
#include "hostapp/core/pluginloader.h"

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
    parser.setApplicationDescription(QStringLiteral(
        "The stand-in host of the vantrel tools plug-in.\n\n"
        "Commands:\n"
        "  demo    Load the tools plug-in, list its tools, build a sample packaging\n"
        "          scene and run the tools on it, printing what each step does."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption pluginOption(
        QStringLiteral("tools-plugin"),
        QStringLiteral("The tools plug-in library to load (default: %1).")
            .arg(vantrel::host::PluginLoader::defaultToolsPluginPath()),
        QStringLiteral("file"));
    parser.addOption(pluginOption);
    parser.addPositionalArgument(QStringLiteral("command"), QStringLiteral("demo"));

    if (!parser.parse(QApplication::arguments())) {
        err << "vantrel: " << parser.errorText() << "\nTry 'vantrel --help'.\n";
        return 2;
    }
    if (parser.isSet(QStringLiteral("help"))) {
        out << parser.helpText();
        return 0;
    }
    if (parser.isSet(QStringLiteral("version"))) {
        out << "vantrel " << VANTREL_VERSION << '\n';
        return 0;
    }
    const QStringList positional = parser.positionalArguments();
    if (positional.size() != 1 || positional.first() != QStringLiteral("demo")) {
        err << "vantrel: "
            << (positional.isEmpty()
                    ? QStringLiteral("a command is needed")
                    : QStringLiteral("unknown command: %1").arg(positional.join(QLatin1Char(' '))))
            << "\nTry 'vantrel --help'.\n";
        return 2;
    }
    const QString plugin = parser.isSet(pluginOption)
                               ? parser.value(pluginOption)
                               : vantrel::host::PluginLoader::defaultToolsPluginPath();
    return vantrel::host::runDemo(plugin, out, err);
}
