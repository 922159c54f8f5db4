// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The scene tree's refresh after big document changes, next to the change itself. A shown tree
// view holds a group of 27 000 boxes open (so its rows are mirrored by the model) and:
//   fill undone / redone  the 27 000 boxes leave and come back in one change;
//   group cloned / deleted a closed copy of the whole group appears and goes, in one change;
//   rename                one box renamed: the names and flags of every open row compared;
//   select all            the document selects the 27 000 boxes and the tree follows;
//   burst                 27 000 boxes cloned one change at a time, as a tool's preview does.
// Each change's own time runs from the call to Document::changed(); the refresh is the time the
// tree's handlers take inside that signal. Medians over the runs, and the ratio refresh/change.
//
//   bench_scenetree [runs]     (default 5)

#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/basenode.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/desktop/scenetreemodel.h"
#include "hostapp/desktop/scenetreeview.h"

#include <QApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

using namespace vantrel::host;

namespace {

constexpr int s_copies = 27000;

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t n = values.size();
    return n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

// Splits the time of work() into the document's part (up to changed()) and the tree's part
// (the handlers connected between the two probes), summed over every change work() makes.
struct Probe
{
    QElapsedTimer timer;
    qint64 changeNs = 0;
    qint64 refreshNs = 0;
    qint64 mark = 0;

    void measure(const std::function<void()> &work)
    {
        changeNs = refreshNs = 0;
        timer.start();
        mark = 0;
        work();
        changeNs += timer.nsecsElapsed() - mark; // after the last signal
    }
    void beforeTree()
    {
        const qint64 now = timer.nsecsElapsed();
        changeNs += now - mark;
        mark = now;
    }
    void afterTree()
    {
        const qint64 now = timer.nsecsElapsed();
        refreshNs += now - mark;
        mark = now;
    }
};

struct Figure
{
    const char *name;
    std::vector<double> change;
    std::vector<double> refresh;
};

// The medians of the runs, one line per figure.
void printFigures(const std::vector<Figure> &figures, int shownRows, int runs)
{
    std::printf("Scene tree beside a shown view, a group of %d rows open (%d rows shown); median"
                " of %d runs\n",
                s_copies,
                shownRows,
                runs);
    std::printf("  %-32s %12s %12s %10s\n", "", "change ms", "refresh ms", "refresh/change");
    for (const Figure &figure : figures) {
        const double change = median(figure.change);
        const double refresh = median(figure.refresh);
        std::printf("  %-32s %12.2f %12.2f %10.2f\n",
                    figure.name,
                    change,
                    refresh,
                    change > 0 ? refresh / change : 0.0);
    }
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const int runs = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;

    Document document;
    Probe probe;
    QObject::connect(&document, &Document::changed, [&] { probe.beforeTree(); });
    SceneTreeView view;
    view.setDocument(&document);
    QObject::connect(&document, &Document::changed, [&] { probe.afterTree(); });
    view.resize(320, 640);
    view.show();

    auto *grid = static_cast<BaseNode *>(document.root()->CreateChildGroup(QStringLiteral("Grid")));
    MeshNode *box = grid->createChildShape("generator.Boxes.Box", QStringLiteral("Box"));
    view.expand(view.sceneModel()->indexOf(grid));
    QCoreApplication::processEvents();
    document.BeginUndoGroup();
    for (int i = 1; i < s_copies; ++i)
        document.CloneNode(box, 0);
    document.EndUndoGroup();
    QCoreApplication::processEvents();
    const int shownRows = view.sceneModel()->rowCount(view.sceneModel()->indexOf(grid));

    std::vector<Figure> figures = {{"fill undone (27 000 rows out)", {}, {}},
                                   {"fill redone (27 000 rows in)", {}, {}},
                                   {"group cloned (closed copy)", {}, {}},
                                   {"copy deleted", {}, {}},
                                   {"one box renamed", {}, {}},
                                   {"burst: 27 000 clones", {}, {}},
                                   {"27 000 boxes selected", {}, {}}};
    auto record = [&](Figure &figure, const std::function<void()> &work) {
        probe.measure(work);
        figure.change.push_back(double(probe.changeNs) / 1e6);
        figure.refresh.push_back(double(probe.refreshNs) / 1e6);
        QCoreApplication::processEvents(); // the view lays itself out between user actions
    };
    for (int run = 0; run < runs; ++run) {
        record(figures[0], [&] { document.undo(); });
        record(figures[1], [&] { document.redo(); });
        const int filled = document.history().undoCount(); // the fill is the last step
        INode *copy = nullptr;
        record(figures[2], [&] { copy = document.CloneNode(grid, 0); });
        record(figures[3], [&] { document.DeleteNodes({copy}); });
        record(figures[4], [&] { box->SetName(QStringLiteral("Box, renamed")); });
        const std::vector<INode *> boxes = grid->GetChildren();
        record(figures[6], [&] { document.SetSelection(boxes, Document::ReplaceSelection); });
        document.SetSelection({}, Document::ReplaceSelection);
        // Back to before the fill, so that the burst starts from the single box again.
        while (document.history().undoCount() >= filled)
            document.undo();
        QCoreApplication::processEvents();
        record(figures[5], [&] {
            document.BeginUndoGroup();
            for (int i = 1; i < s_copies; ++i)
                document.CloneNode(box, 0);
            document.EndUndoGroup();
        });
    }

    printFigures(figures, shownRows, runs);
    const bool consistent = view.sceneModel()->rowCount(view.sceneModel()->indexOf(grid))
                                == int(grid->GetChildren().size())
                            && grid->GetChildren().size() == std::size_t(s_copies);
    std::printf("  rows match the document at the end: %s\n", consistent ? "yes" : "no");
    return consistent ? 0 : 1;
}
