// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Step and Repeat on its largest grid, 30 x 30 x 30 cells (26 999 copies of a box), driven
// through the real plug-in, window and property panel as a user drives it:
//   build         the window opened on the box, then Columns, Rows and Layers set to 30;
//   count change  Layers 30 -> 29 and back: every copy deleted and cloned anew;
//   step change   Right changed: the same copies only move;
//   cancel        the window cancelled, right after the build and after the changes above: the
//                 scene back to the single box.
// Each figure is the median over the runs; the last three are also given as ratios to the build
// measured in the same process, because the machine is shared and absolute times drift. The
// process's peak memory (ru_maxrss) is read once the first full grid is open in the window.
//
//   bench_stepandrepeat [runs]     (default 5)

#include "host/itool.h"
#include "hostapp/core/commands/session.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/files/scenedump.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/ui/panelaccess.h"

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QPushButton>

#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
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

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const int runs = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;

    Session session;
    QString error;
    if (!session.loadToolsPlugin(QStringLiteral(VANTREL_TOOLS_PLUGIN), &error))
        return fail(qPrintable(error));
    ITool *tool = session.tools().findTool(QStringLiteral("Step and Repeat..."));
    if (!tool)
        return fail("no \"Step and Repeat...\" tool");
    Document &document = session.document();
    MeshNode *box = document.root()->createChildShape("generator.Boxes.Box", QStringLiteral("Box"));
    document.SetSelection({box}, Document::ReplaceSelection);
    document.history().clear();
    const QByteArray before = dumpScene(document);
    const double baseMegabytes = peakMegabytes();

    std::vector<double> builds, counts, steps, cancels, cancelsAfterChanges;
    double gridMegabytes = 0;
    std::size_t cells = 0;
    bool restored = true;
    for (int run = 0; run < runs; ++run) {
        QDialog *window = nullptr;
        PanelAccess *panel = nullptr;
        builds.push_back(milliseconds([&] { panel = openFullGrid(tool, session, &window); }));
        if (!panel)
            return fail("the tool opened no window with a property panel");
        cells = box->GetParent()->GetChildren().size();
        if (run == 0)
            gridMegabytes = peakMegabytes();

        for (int layers : {29, 30})
            counts.push_back(milliseconds(
                [&] { panel->setPanelValue(QStringLiteral("repeatZ"), double(layers)); }));
        for (double right : {2.5, 1.0})
            steps.push_back(
                milliseconds([&] { panel->setPanelValue(QStringLiteral("stepX"), right); }));
        cancelsAfterChanges.push_back(milliseconds([&] { cancel(window); }));
        restored = restored && dumpScene(document) == before;

        // The same build, cancelled at once: what Cancel costs for one grid's worth of changes.
        if (!openFullGrid(tool, session, &window))
            return fail("the tool opened no window with a property panel");
        cancels.push_back(milliseconds([&] { cancel(window); }));
        restored = restored && dumpScene(document) == before;
    }

    const double build = median(builds);
    std::printf("Step and Repeat, 30 x 30 x 30 grid: %zu cells, %zu copies; median of %d runs\n",
                cells,
                cells - 1,
                runs);
    std::printf("  build (window opened, counts to 30)   %8.1f ms\n", build);
    std::printf("  count change (every copy anew)        %8.1f ms   %5.2f x build\n",
                median(counts),
                median(counts) / build);
    std::printf("  step change (copies only move)        %8.1f ms   %5.2f x build\n",
                median(steps),
                median(steps) / build);
    std::printf("  cancel right after the build          %8.1f ms   %5.2f x build\n",
                median(cancels),
                median(cancels) / build);
    std::printf("  cancel after the changes above        %8.1f ms   %5.2f x build\n",
                median(cancelsAfterChanges),
                median(cancelsAfterChanges) / build);
    std::printf("  scene restored by every cancel: %s\n", restored ? "yes" : "no");
    std::printf("  peak memory: %.1f MB before the window, %.1f MB with the full grid open,"
                " %.1f MB at the end\n",
                baseMegabytes,
                gridMegabytes,
                peakMegabytes());
    return restored ? 0 : fail("cancel did not restore the scene");
}
