// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// vantrel: the stand-in host program. This file only parses the command line; the work is done
// by the host library, so that tests and benchmarks run exactly what users run.

#include "hostapp/core/commands/demo.h"
#include "hostapp/core/commands/runcommand.h"
#include "hostapp/core/plugins/pluginloader.h"
#include "hostapp/desktop/desktopcommand.h"
#include "hostapp/render/framing.h"
#include "hostapp/render/rendercommand.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QTextStream>

#include <algorithm>

#include <unistd.h>

// LeakSanitizer's entry point, present only in sanitizer builds.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the name is the sanitizer runtime's
extern "C" void __lsan_do_leak_check() __attribute__((weak));

namespace {

int runCommand();

} // namespace

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
    const int status = runCommand();
    // Leaks are checked while the OpenGL driver is still loaded: Qt closes the X display when
    // the application goes, Mesa unloads its driver with it, and LeakSanitizer could then no
    // longer name the driver in its report to suppress the driver's own small leaks.
    if (__lsan_do_leak_check)
        __lsan_do_leak_check();
    return status;
}

namespace {

int runCommand()
{
    QTextStream out(stdout);
    QTextStream err(stderr);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "The stand-in host of the vantrel tools plug-in.\n\n"
        "Commands:\n"
        "  (none)       Open the desktop window on an empty scene.\n"
        "  open [SCENE] Open the desktop window on the scene file: the live 3D\n"
        "               view, the scene tree, the Tools menu and tool bar, Undo\n"
        "               and Redo, and the File menu. Needs a display.\n"
        "  run [SCENE]  Open the scene file (or an empty scene), load the tools,\n"
        "               run the scripts in the order given, each as one undo\n"
        "               step, and save when asked.\n"
        "  render [SCENE]\n"
        "               Like run, then draw the scene as its camera sees it and\n"
        "               write the picture to the --out file (.png, .jpg or .jpeg).\n"
        "               Needs OpenGL 3.3; without a display run it under\n"
        "               xvfb-run.\n"
        "  demo         Load the tools plug-in, list its tools, build a sample\n"
        "               packaging scene and run the tools on it, printing what\n"
        "               each step does (with --pictures, a picture of each step).\n\n"
        "Exit status: 0 on success, 1 for a script error, a file that cannot be\n"
        "read or written, no OpenGL, no display for the window or a tools plug-in\n"
        "that cannot be loaded, 2 for bad usage."));
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
        QStringLiteral("The tools plug-in library to load (default: %1). Loading a library "
                       "runs its code: name only libraries you trust.")
            .arg(vantrel::host::PluginLoader::defaultToolsPluginPath()),
        QStringLiteral("file"));
    const QCommandLineOption outOption(
        QStringLiteral("out"),
        QStringLiteral("Write the picture to this file (render): PNG or JPEG by its suffix, "
                       ".png, .jpg or .jpeg."),
        QStringLiteral("file"));
    const QCommandLineOption widthOption(
        QStringLiteral("width"),
        QStringLiteral("Picture width in pixels, %1 to %2 (render, demo --pictures; default %3). "
                       "The height follows from the camera's aspect ratio.")
            .arg(vantrel::render::MinimumPictureWidth)
            .arg(vantrel::render::MaximumPictureSide)
            .arg(vantrel::render::DefaultPictureWidth),
        QStringLiteral("pixels"));
    const QCommandLineOption timeLimitOption(
        QStringLiteral("time-limit"),
        QStringLiteral("Stop the scripts with an error (exit status 1, nothing saved or drawn) "
                       "once they have run this many seconds together, decimals allowed (run, "
                       "render; default: no limit)."),
        QStringLiteral("seconds"));
    const QCommandLineOption picturesOption(
        QStringLiteral("pictures"),
        QStringLiteral("Write a picture of each step into this folder (demo)."),
        QStringLiteral("folder"));
    parser.addOptions({scriptOption,
                       codeOption,
                       saveOption,
                       pluginOption,
                       outOption,
                       widthOption,
                       timeLimitOption,
                       picturesOption});
    parser.addPositionalArgument(QStringLiteral("command"),
                                 QStringLiteral("open, run, render or demo (default: open)"),
                                 QStringLiteral("[command]"));
    parser.addPositionalArgument(QStringLiteral("scene"),
                                 QStringLiteral("The scene file (open, run, render)."),
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
    // An empty name is a mistake (an unset shell variable, say), never "no file": refused before
    // anything runs rather than read as the default.
    for (const QCommandLineOption *option :
         {&scriptOption, &saveOption, &pluginOption, &outOption, &picturesOption}) {
        const QStringList values = parser.values(*option);
        if (std::any_of(values.begin(), values.end(), [](const QString &v) { return v.isEmpty(); }))
            return usageError(
                QStringLiteral("--%1 needs a file name").arg(option->names().constFirst()));
    }
    if (positional.size() > 1 && positional.at(1).isEmpty())
        return usageError(QStringLiteral("the scene file name is empty"));
    const QString plugin = parser.isSet(pluginOption)
                               ? parser.value(pluginOption)
                               : vantrel::host::PluginLoader::defaultToolsPluginPath();
    int width = vantrel::render::DefaultPictureWidth;
    if (parser.isSet(widthOption)) {
        bool number = false;
        width = parser.value(widthOption).toInt(&number);
        if (!number || width < vantrel::render::MinimumPictureWidth
            || width > vantrel::render::MaximumPictureSide)
            return usageError(
                QStringLiteral("--width takes a whole number of pixels from %1 to %2, not \"%3\"")
                    .arg(vantrel::render::MinimumPictureWidth)
                    .arg(vantrel::render::MaximumPictureSide)
                    .arg(parser.value(widthOption)));
    }
    if (parser.isSet(outOption) && command != QStringLiteral("render"))
        return usageError(QStringLiteral("--out belongs to render"));
    if (parser.isSet(picturesOption) && command != QStringLiteral("demo"))
        return usageError(QStringLiteral("--pictures belongs to demo"));
    if (parser.isSet(timeLimitOption) && command != QStringLiteral("run")
        && command != QStringLiteral("render"))
        return usageError(QStringLiteral("--time-limit belongs to run and render"));
    if (command.isEmpty() || command == QStringLiteral("open")) {
        if (positional.size() > 2)
            return usageError(QStringLiteral("open takes one scene file at most"));
        if (parser.isSet(scriptOption) || parser.isSet(codeOption) || parser.isSet(saveOption)
            || parser.isSet(widthOption))
            return usageError(QStringLiteral("the desktop window takes no scripts, --save or "
                                             "--width; use run or render for those"));
        return vantrel::host::runDesktop(plugin, positional.value(1), err);
    }
    if (command == QStringLiteral("demo")) {
        if (positional.size() > 1 || parser.isSet(scriptOption) || parser.isSet(codeOption))
            return usageError(QStringLiteral("demo takes no scene and no scripts"));
        if (parser.isSet(picturesOption))
            return vantrel::render::demoWithPictures(
                plugin, parser.value(saveOption), parser.value(picturesOption), width, out, err);
        if (parser.isSet(widthOption))
            return usageError(QStringLiteral("demo takes --width only with --pictures"));
        return vantrel::host::runDemo(plugin, parser.value(saveOption), out, err);
    }
    if (command == QStringLiteral("run") || command == QStringLiteral("render")) {
        const bool render = command == QStringLiteral("render");
        if (positional.size() > 2)
            return usageError(QStringLiteral("%1 takes one scene file at most").arg(command));
        if (render && !parser.isSet(outOption))
            return usageError(QStringLiteral("render needs --out FILE.png"));
        if (render && !vantrel::render::pictureFormat(parser.value(outOption)))
            return usageError(QStringLiteral("--out takes a .png, .jpg or .jpeg file, not \"%1\"")
                                  .arg(parser.value(outOption)));
        if (render && parser.isSet(saveOption))
            return usageError(QStringLiteral("render does not save the scene; use run --save"));
        if (!render && parser.isSet(widthOption))
            return usageError(QStringLiteral("--width belongs to render and demo --pictures"));
        vantrel::host::RunOptions options;
        options.pluginPath = plugin;
        options.scenePath = positional.value(1);
        options.savePath = parser.value(saveOption);
        if (parser.isSet(timeLimitOption)) {
            QString message;
            options.timeLimit
                = vantrel::host::parseTimeLimit(parser.value(timeLimitOption), &message);
            if (options.timeLimit <= 0)
                return usageError(message);
        }
        // Scripts run in the order they were given, --script and -e mixed.
        const QStringList files = parser.values(scriptOption), codes = parser.values(codeOption);
        int file = 0, code = 0;
        for (const QString &name : parser.optionNames()) {
            if (name == QLatin1String("script"))
                options.scripts.append({true, files.value(file++)});
            else if (name == QLatin1String("e"))
                options.scripts.append({false, codes.value(code++)});
        }
        if (render)
            return vantrel::render::renderCommand(
                {options, parser.value(outOption), width}, out, err);
        return vantrel::host::runScripts(options, out, err);
    }
    return usageError(QStringLiteral("unknown command: %1").arg(positional.join(QLatin1Char(' '))));
}

} // namespace
