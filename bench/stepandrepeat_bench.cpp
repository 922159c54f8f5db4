// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Step and Repeat on its largest grid, 30 x 30 x 30 cells (26 999 copies of a box), driven
// through the real plug-in, window and property panel as a user drives it:
//   build         the window opened on the box, then Columns, Rows and Layers set to 30;
//   count change  Layers 30 -> 29 and back: every copy deleted and cloned anew;
//   step change   Right changed: the same copies only move;
//   cancel        the window cancelled, right after the build and after the changes above: the
//                 scene back to the single box;
//   script grid   tools.stepAndRepeat(box, {repeatx: 30, repeaty: 30, repeatz: 30}) run through
//                 the host's script runner on a fresh box, the evaluation's undo step included.
// Each figure is the median over the runs; the window's are also given as ratios to the build
// measured in the same process, because the machine is shared and absolute times drift. The
// process's peak memory (ru_maxrss) is read once the first full grid is open in the window.
//
// The memory scenario runs in a process of its own (this program with --memory, started first),
// because peak memory only ever grows within a process: the script grid, then the window's full
// grid on a second box, then ten Columns moves 28 <-> 29, then Cancel. It gives the peak memory
// after all that, and that Cancel's time as a ratio to a Cancel right after a fresh build.
//
//   bench_stepandrepeat [runs]     (default 5)
//   bench_stepandrepeat --memory   (the memory scenario alone)

#include "host/itool.h"
#include "hostapp/core/commands/session.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/files/scenedump.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/ui/panelaccess.h"

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QProcess>
#include <QPushButton>

#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <vector>

using namespace vantrel::host;

namespace {

double peakMegabytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_maxrss) / 1024.0; // kilobytes on Linux
}

double milliseconds(const std::function<void()> &work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return double(timer.nsecsElapsed()) / 1e6;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t n = values.size();
    return n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

PanelAccess *panelOf(QDialog *window)
{
    const QList<QObject *> children = window->findChildren<QObject *>();
    for (QObject *child : children) {
        if (auto *panel = qobject_cast<PanelAccess *>(child))
            return panel;
    }
    return nullptr;
}

// Cancel pressed, and the closed window deleted as the host deletes it: that settles the undo
// group.
void cancel(QDialog *window)
{
    window->findChild<QPushButton *>(QStringLiteral("cancel"))->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// The tool's window opened on the selected box with every count at 30: its panel, or null when
// the tool opened no window with a panel.
PanelAccess *openFullGrid(ITool *tool, Session &session, QDialog **window)
{
    tool->Execute(session.context());
    *window = session.userInterface().openWindow();
    PanelAccess *panel = *window ? panelOf(*window) : nullptr;
    if (panel) {
        for (const char *count : {"repeatX", "repeatY", "repeatZ"})
            panel->setPanelValue(QLatin1String(count), 30);
    }
    return panel;
}

int fail(const char *what)
{
    std::fprintf(stderr, "bench_stepandrepeat: %s\n", what);
    return 1;
}

} // namespace

namespace {

// The plug-in loaded into a session with one box selected and no undo steps yet.
ITool *prepare(Session &session, MeshNode **box)
{
    QString error;
    if (!session.loadToolsPlugin(QStringLiteral(VANTREL_TOOLS_PLUGIN), &error)) {
        fail(qPrintable(error));
        return nullptr;
    }
    ITool *tool = session.tools().findTool(QStringLiteral("Step and Repeat..."));
    if (!tool) {
        fail("no \"Step and Repeat...\" tool");
        return nullptr;
    }
    Document &document = session.document();
    *box = document.root()->createChildShape("generator.Boxes.Box", QStringLiteral("Box"));
    document.SetSelection({*box}, Document::ReplaceSelection);
    document.history().clear();
    return tool;
}

// The script function on a fresh box each run, timed around the whole evaluation (which also
// ends the script's undo step); the grid is undone and forgotten between runs.
bool scriptGrid(Session &session, int runs, std::vector<double> *times)
{
    Document &document = session.document();
    for (int run = 0; run < runs; ++run) {
        QString error;
        if (!session.runner().evaluate(
                QStringLiteral("var fresh = document.root.addShape('generator.Boxes.Box', "
                               "'Script box');"),
                QStringLiteral("bench.js"),
                &error))
            return fail(qPrintable(error)) == 0;
        bool done = false;
        times->push_back(milliseconds([&] {
            done = session.runner().evaluate(
                QStringLiteral("tools.stepAndRepeat(fresh, {repeatx: 30, repeaty: 30, repeatz: "
                               "30});"),
                QStringLiteral("bench.js"),
                &error);
        }));
        if (!done)
            return fail(qPrintable(error)) == 0;
        document.undo();
        document.undo();
        document.history().clear();
    }
    return true;
}

struct WindowFigures
{
    std::vector<double> builds, counts, steps, cancels, cancelsAfterChanges;
    double baseMegabytes = 0, gridMegabytes = 0;
    std::size_t cells = 0;
    bool restored = true;
};

void printWindowFigures(const WindowFigures &f, int runs)
{
    const double build = median(f.builds);
    std::printf("Step and Repeat, 30 x 30 x 30 grid: %zu cells, %zu copies; median of %d runs\n",
                f.cells,
                f.cells - 1,
                runs);
    std::printf("  build (window opened, counts to 30)   %8.1f ms\n", build);
    const std::pair<const char *, const std::vector<double> *> rows[] = {
        {"count change (every copy anew)       ", &f.counts},
        {"step change (copies only move)       ", &f.steps},
        {"cancel right after the build         ", &f.cancels},
        {"cancel after the changes above       ", &f.cancelsAfterChanges},
    };
    for (const auto &[label, values] : rows)
        std::printf(
            "  %s %8.1f ms   %5.2f x build\n", label, median(*values), median(*values) / build);
    std::printf("  scene restored by every cancel: %s\n", f.restored ? "yes" : "no");
    std::printf("  peak memory: %.1f MB before the window, %.1f MB with the full grid open,"
                " %.1f MB at the end\n",
                f.baseMegabytes,
                f.gridMegabytes,
                peakMegabytes());
}

int windowFigures(Session &session, ITool *tool, MeshNode *box, int runs)
{
    Document &document = session.document();
    const QByteArray before = dumpScene(document);
    WindowFigures f;
    f.baseMegabytes = peakMegabytes();
    for (int run = 0; run < runs; ++run) {
        QDialog *window = nullptr;
        PanelAccess *panel = nullptr;
        f.builds.push_back(milliseconds([&] { panel = openFullGrid(tool, session, &window); }));
        if (!panel)
            return fail("the tool opened no window with a property panel");
        f.cells = box->GetParent()->GetChildren().size();
        if (run == 0)
            f.gridMegabytes = peakMegabytes();

        for (int layers : {29, 30})
            f.counts.push_back(milliseconds(
                [&] { panel->setPanelValue(QStringLiteral("repeatZ"), double(layers)); }));
        for (double right : {2.5, 1.0})
            f.steps.push_back(
                milliseconds([&] { panel->setPanelValue(QStringLiteral("stepX"), right); }));
        f.cancelsAfterChanges.push_back(milliseconds([&] { cancel(window); }));
        f.restored = f.restored && dumpScene(document) == before;

        // The same build, cancelled at once: what Cancel costs for one grid's worth of changes.
        if (!openFullGrid(tool, session, &window))
            return fail("the tool opened no window with a property panel");
        f.cancels.push_back(milliseconds([&] { cancel(window); }));
        f.restored = f.restored && dumpScene(document) == before;
    }
    printWindowFigures(f, runs);
    return f.restored ? 0 : fail("cancel did not restore the scene");
}

int memoryScenario()
{
    Session session;
    MeshNode *box = nullptr;
    ITool *tool = prepare(session, &box);
    if (!tool)
        return 1;
    Document &document = session.document();
    const QByteArray empty = dumpScene(document);
    const double baseMegabytes = peakMegabytes();
    QString error;
    if (!session.runner().evaluate(
            QStringLiteral("tools.stepAndRepeat(document.findNode('Box'), {repeatx: 30, "
                           "repeaty: 30, repeatz: 30});"),
            QStringLiteral("bench.js"),
            &error))
        return fail(qPrintable(error));
    const double scriptMegabytes = peakMegabytes();

    MeshNode *second
        = document.root()->createChildShape("generator.Boxes.Box", QStringLiteral("Second box"));
    document.SetSelection({second}, Document::ReplaceSelection);
    const QByteArray before = dumpScene(document);
    QDialog *window = nullptr;
    PanelAccess *panel = openFullGrid(tool, session, &window);
    if (!panel)
        return fail("the tool opened no window with a property panel");
    for (int move = 0; move < 10; ++move)
        panel->setPanelValue(QStringLiteral("repeatX"), move % 2 ? 29.0 : 28.0);
    const double cancelAfterMoves = milliseconds([&] { cancel(window); });
    bool restored = dumpScene(document) == before;
    const double scenarioMegabytes = peakMegabytes();

    if (!openFullGrid(tool, session, &window))
        return fail("the tool opened no window with a property panel");
    const double cancelAfterBuild = milliseconds([&] { cancel(window); });
    restored = restored && dumpScene(document) == before && before != empty;

    std::printf("Memory scenario (a process of its own): script grid 30 x 30 x 30, then the "
                "window's 30 x 30 x 30 grid on a second box, ten Columns moves 28 <-> 29, "
                "Cancel\n");
    std::printf("  peak memory: %.1f MB at the start, %.1f MB after the script grid, %.1f MB after "
                "the moves and Cancel\n",
                baseMegabytes,
                scriptMegabytes,
                scenarioMegabytes);
    std::printf("  cancel after the ten moves            %8.1f ms   %5.2f x cancel right after a "
                "build (%.1f ms)\n",
                cancelAfterMoves,
                cancelAfterMoves / cancelAfterBuild,
                cancelAfterBuild);
    std::printf("  scene restored by both cancels: %s\n", restored ? "yes" : "no");
    return restored ? 0 : fail("cancel did not restore the scene");
}

// The memory scenario in a child process, its figures passed through.
bool runMemoryScenario(const QString &program)
{
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedChannels);
    child.start(program, {QStringLiteral("--memory")});
    return child.waitForFinished(-1) && child.exitStatus() == QProcess::NormalExit
           && child.exitCode() == 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    if (argc > 1 && std::strcmp(argv[1], "--memory") == 0)
        return memoryScenario();
    const int runs = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
    if (!runMemoryScenario(QCoreApplication::applicationFilePath()))
        return fail("the memory scenario failed");
    std::fflush(stdout);

    Session session;
    MeshNode *box = nullptr;
    ITool *tool = prepare(session, &box);
    if (!tool)
        return 1;
    const int status = windowFigures(session, tool, box, runs);
    std::vector<double> scripts;
    if (!scriptGrid(session, runs, &scripts))
        return 1;
    std::printf("  script grid (tools.stepAndRepeat)     %8.1f ms\n", median(scripts));
    return status;
}
