// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// vantrel: the stand-in host program. This file only parses the command line; the work is done
// by the host library, so that tests and benchmarks run exactly what users run.

#include "hostapp/core/commands/demo.h"
#include "hostapp/core/commands/dielinecommand.h"
#include "hostapp/core/commands/runcommand.h"
#include "hostapp/core/plugins/pluginloader.h"
#include "hostapp/desktop/desktopcommand.h"
#include "hostapp/render/exportcommand.h"
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

// The command line as QCommandLineParser reads it, with the options every command shares.
class CommandLine
{
public:
    CommandLine();

    // Parses the arguments and checks what does not depend on the command; returns -1 when the
    // command can run, else the exit status (after the message, the help or the version).
    int parse(QTextStream &out, QTextStream &err);

    int open(QTextStream &err) const;
    int demo(QTextStream &out, QTextStream &err) const;
    // run, render and export share their scripts, scene, save and time limit.
    int runOrRender(QTextStream &out, QTextStream &err) const;

    const QString &command() const { return m_command; }
    QString arguments() const { return m_positional.join(QLatin1Char(' ')); }

private:
    // The usage problem that stops every command, or an empty text.
    QString commonProblem();
    QList<vantrel::host::RunOptions::Script> scripts() const;

    QCommandLineParser m_parser;
    const QCommandLineOption m_scriptOption{
        QStringLiteral("script"),
        QStringLiteral("Run the script file (run, render, export; repeatable)."),
        QStringLiteral("file")};
    const QCommandLineOption m_codeOption{
        QStringLiteral("e"),
        QStringLiteral("Run the script code (run, render, export; repeatable)."),
        QStringLiteral("code")};
    const QCommandLineOption m_saveOption{QStringLiteral("save"),
                                          QStringLiteral("Save the scene to the file afterwards."),
                                          QStringLiteral("file")};
    const QCommandLineOption m_pluginOption{
        QStringLiteral("tools-plugin"),
        QStringLiteral("The tools plug-in library to load (default: %1). Loading a library "
                       "runs its code: name only libraries you trust.")
            .arg(vantrel::host::PluginLoader::defaultToolsPluginPath()),
        QStringLiteral("file")};
    const QCommandLineOption m_outOption{
        QStringLiteral("out"),
        QStringLiteral("Write the picture to this file (render): PNG or JPEG by its suffix, "
                       ".png, .jpg or .jpeg; or the glTF 2.0 file (export): .glb or .gltf."),
        QStringLiteral("file")};
    const QCommandLineOption m_widthOption{
        QStringLiteral("width"),
        QStringLiteral("Picture width in pixels, %1 to %2 (render, demo --pictures; default %3). "
                       "The height follows from the camera's aspect ratio.")
            .arg(vantrel::render::MinimumPictureWidth)
            .arg(vantrel::render::MaximumPictureSide)
            .arg(vantrel::render::DefaultPictureWidth),
        QStringLiteral("pixels")};
    const QCommandLineOption m_timeLimitOption{
        QStringLiteral("time-limit"),
        QStringLiteral("Stop the scripts with an error (exit status 1, nothing saved or drawn) "
                       "once they have run this many seconds together, decimals allowed (run, "
                       "render, export; default: no limit)."),
        QStringLiteral("seconds")};
    const QCommandLineOption m_picturesOption{
        QStringLiteral("pictures"),
        QStringLiteral("Write a picture of each step into this folder (demo)."),
        QStringLiteral("folder")};
    QStringList m_positional;
    QString m_command;
    QString m_plugin;
    int m_width = vantrel::render::DefaultPictureWidth;
};

int usageError(QTextStream &err, const QString &message)
{
    err << "vantrel: " << message << "\nTry 'vantrel --help'.\n";
    return 2;
}

CommandLine::CommandLine()
{
    m_parser.setApplicationDescription(
        QStringLiteral("The stand-in host of the vantrel tools plug-in.\n\n"
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
                       "  export [SCENE]\n"
                       "               Like run, then write the scene as glTF 2.0 to the --out\n"
                       "               file: .glb (binary, textures inside) or .gltf (text, all\n"
                       "               in one file). Shapes, groups and names, artwork, lights\n"
                       "               and the camera; Y up, metres (see docs/export.md).\n"
                       "  demo         Load the tools plug-in, list its tools, build a sample\n"
                       "               packaging scene and run the tools on it, printing what\n"
                       "               each step does (with --pictures, a picture of each step).\n"
                       "  dieline GENERATOR [--params JSON] --out FILE.svg\n"
                       "               Write the shape's artwork sheet as an SVG dieline: each\n"
                       "               face's outline at real size, in centimetres. Without\n"
                       "               GENERATOR, list the generators (vantrel dieline --help).\n\n"
                       "Exit status: 0 on success, 1 for a script error, a file that cannot be\n"
                       "read or written, no OpenGL, no display for the window or a tools plug-in\n"
                       "that cannot be loaded, 2 for bad usage."));
    m_parser.addHelpOption();
    m_parser.addVersionOption();
    m_parser.addOptions({m_scriptOption,
                         m_codeOption,
                         m_saveOption,
                         m_pluginOption,
                         m_outOption,
                         m_widthOption,
                         m_timeLimitOption,
                         m_picturesOption});
    m_parser.addPositionalArgument(
        QStringLiteral("command"),
        QStringLiteral("open, run, render, export or demo (default: open)"),
        QStringLiteral("[command]"));
    m_parser.addPositionalArgument(QStringLiteral("scene"),
                                   QStringLiteral("The scene file (open, run, render, export)."),
                                   QStringLiteral("[scene]"));
}

int CommandLine::parse(QTextStream &out, QTextStream &err)
{
    if (!m_parser.parse(QApplication::arguments()))
        return usageError(err, m_parser.errorText());
    if (m_parser.isSet(QStringLiteral("help"))) {
        out << m_parser.helpText();
        return 0;
    }
    if (m_parser.isSet(QStringLiteral("version"))) {
        out << "vantrel " << VANTREL_VERSION << '\n';
        return 0;
    }
    m_positional = m_parser.positionalArguments();
    m_command = m_positional.value(0);
    const QString problem = commonProblem();
    return problem.isEmpty() ? -1 : usageError(err, problem);
}

QString CommandLine::commonProblem()
{
    // An empty name is a mistake (an unset shell variable, say), never "no file": refused before
    // anything runs rather than read as the default.
    for (const QCommandLineOption *option :
         {&m_scriptOption, &m_saveOption, &m_pluginOption, &m_outOption, &m_picturesOption}) {
        const QStringList values = m_parser.values(*option);
        if (std::any_of(values.begin(), values.end(), [](const QString &v) { return v.isEmpty(); }))
            return QStringLiteral("--%1 needs a file name").arg(option->names().constFirst());
    }
    if (m_positional.size() > 1 && m_positional.at(1).isEmpty())
        return QStringLiteral("the scene file name is empty");
    m_plugin = m_parser.isSet(m_pluginOption)
                   ? m_parser.value(m_pluginOption)
                   : vantrel::host::PluginLoader::defaultToolsPluginPath();
    if (m_parser.isSet(m_widthOption)) {
        bool number = false;
        m_width = m_parser.value(m_widthOption).toInt(&number);
        if (!number || m_width < vantrel::render::MinimumPictureWidth
            || m_width > vantrel::render::MaximumPictureSide)
            return QStringLiteral(
                       "--width takes a whole number of pixels from %1 to %2, not \"%3\"")
                .arg(vantrel::render::MinimumPictureWidth)
                .arg(vantrel::render::MaximumPictureSide)
                .arg(m_parser.value(m_widthOption));
    }
    if (m_parser.isSet(m_outOption) && m_command != QStringLiteral("render")
        && m_command != QStringLiteral("export"))
        return QStringLiteral("--out belongs to render and export");
    if (m_parser.isSet(m_picturesOption) && m_command != QStringLiteral("demo"))
        return QStringLiteral("--pictures belongs to demo");
    if (m_parser.isSet(m_timeLimitOption) && m_command != QStringLiteral("run")
        && m_command != QStringLiteral("render") && m_command != QStringLiteral("export"))
        return QStringLiteral("--time-limit belongs to run, render and export");
    return QString();
}

int CommandLine::open(QTextStream &err) const
{
    if (m_positional.size() > 2)
        return usageError(err, QStringLiteral("open takes one scene file at most"));
    if (m_parser.isSet(m_scriptOption) || m_parser.isSet(m_codeOption)
        || m_parser.isSet(m_saveOption) || m_parser.isSet(m_widthOption))
        return usageError(err,
                          QStringLiteral("the desktop window takes no scripts, --save or "
                                         "--width; use run or render for those"));
    return vantrel::host::runDesktop(m_plugin, m_positional.value(1), err);
}

int CommandLine::demo(QTextStream &out, QTextStream &err) const
{
    if (m_positional.size() > 1 || m_parser.isSet(m_scriptOption) || m_parser.isSet(m_codeOption))
        return usageError(err, QStringLiteral("demo takes no scene and no scripts"));
    if (m_parser.isSet(m_picturesOption))
        return vantrel::render::demoWithPictures(m_plugin,
                                                 m_parser.value(m_saveOption),
                                                 m_parser.value(m_picturesOption),
                                                 m_width,
                                                 out,
                                                 err);
    if (m_parser.isSet(m_widthOption))
        return usageError(err, QStringLiteral("demo takes --width only with --pictures"));
    return vantrel::host::runDemo(m_plugin, m_parser.value(m_saveOption), out, err);
}

int CommandLine::runOrRender(QTextStream &out, QTextStream &err) const
{
    const bool render = m_command == QStringLiteral("render");
    const bool exporting = m_command == QStringLiteral("export");
    if (m_positional.size() > 2)
        return usageError(err, QStringLiteral("%1 takes one scene file at most").arg(m_command));
    if (render && !m_parser.isSet(m_outOption))
        return usageError(err, QStringLiteral("render needs --out FILE.png"));
    if (render && !vantrel::render::pictureFormat(m_parser.value(m_outOption)))
        return usageError(err,
                          QStringLiteral("--out takes a .png, .jpg or .jpeg file, not \"%1\"")
                              .arg(m_parser.value(m_outOption)));
    if (exporting
        && vantrel::render::gltfForm(m_parser.value(m_outOption))
               == vantrel::render::GltfForm::None)
        return usageError(err,
                          QStringLiteral("export needs --out FILE.glb or FILE.gltf, not \"%1\"")
                              .arg(m_parser.value(m_outOption)));
    if ((render || exporting) && m_parser.isSet(m_saveOption))
        return usageError(
            err, QStringLiteral("%1 does not save the scene; use run --save").arg(m_command));
    if (!render && m_parser.isSet(m_widthOption))
        return usageError(err, QStringLiteral("--width belongs to render and demo --pictures"));
    vantrel::host::RunOptions options;
    options.pluginPath = m_plugin;
    options.scenePath = m_positional.value(1);
    options.savePath = m_parser.value(m_saveOption);
    if (m_parser.isSet(m_timeLimitOption)) {
        QString message;
        options.timeLimit
            = vantrel::host::parseTimeLimit(m_parser.value(m_timeLimitOption), &message);
        if (options.timeLimit <= 0)
            return usageError(err, message);
    }
    options.scripts = scripts();
    if (exporting)
        return vantrel::render::exportCommand({options, m_parser.value(m_outOption)}, out, err);
    if (render)
        return vantrel::render::renderCommand(
            {options, m_parser.value(m_outOption), m_width}, out, err);
    return vantrel::host::runScripts(options, out, err);
}

// Scripts run in the order they were given, --script and -e mixed.
QList<vantrel::host::RunOptions::Script> CommandLine::scripts() const
{
    QList<vantrel::host::RunOptions::Script> scripts;
    const QStringList files = m_parser.values(m_scriptOption),
                      codes = m_parser.values(m_codeOption);
    int file = 0, code = 0;
    for (const QString &name : m_parser.optionNames()) {
        if (name == QLatin1String("script"))
            scripts.append({true, files.value(file++)});
        else if (name == QLatin1String("e"))
            scripts.append({false, codes.value(code++)});
    }
    return scripts;
}

int runCommand()
{
    QTextStream out(stdout);
    QTextStream err(stderr);
    // dieline has options of its own (--params) and parses them itself.
    if (QApplication::arguments().value(1) == QStringLiteral("dieline"))
        return vantrel::host::dielineCommand(QApplication::arguments().mid(1), out, err);
    CommandLine commandLine;
    if (const int status = commandLine.parse(out, err); status >= 0)
        return status;
    const QString &command = commandLine.command();
    if (command.isEmpty() || command == QStringLiteral("open"))
        return commandLine.open(err);
    if (command == QStringLiteral("demo"))
        return commandLine.demo(out, err);
    if (command == QStringLiteral("run") || command == QStringLiteral("render")
        || command == QStringLiteral("export"))
        return commandLine.runOrRender(out, err);
    return usageError(err, QStringLiteral("unknown command: %1").arg(commandLine.arguments()));
}

} // namespace
