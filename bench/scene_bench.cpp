// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The host's tree operations on one group of 27 000 children, the size of the largest grid of
// copies a user can make: cloning the children (with a name and a place each, as a grid of
// copies does), deleting them all at once, undoing that deletion, and cancelling the whole build.
// Then opening that grid from its scene file: reading it, and the first bounding box of the
// whole scene, which gets every shape its mesh.

#include "host/hostfunctions.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/files/scenefile.h"
#include "hostapp/core/scene/meshnode.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

#include <chrono>

using namespace vantrel::host;

namespace {

constexpr int Children = 27000;

struct Grid
{
    Document document;
    INode *group = nullptr;
    INode *source = nullptr;

    Grid()
    {
        group = document.root()->CreateChildGroup(QStringLiteral("Grid"));
        source = static_cast<BaseNode *>(group)->createChildShape("generator.Boxes.Box",
                                                                  QStringLiteral("Box - 1"));
        document.history().clear();
    }

    void build()
    {
        for (int i = 1; i < Children; ++i) {
            INode *copy = document.CloneNode(source, 1);
            copy->SetName(QStringLiteral("Box - %1").arg(i + 1));
            document.MoveNodes(group, i, {copy});
            qobject_cast<ITransformations *>(copy)->SetPosition(
                {float(i % 30) * 21, float(i / 30 % 30) * 11, float(i / 900) * 31}, false);
        }
    }

    std::vector<INode *> copies() const
    {
        return {group->GetChildren().begin() + 1, group->GetChildren().end()};
    }
};

void BM_CloneNameAndPlace27000Children(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto grid = std::make_unique<Grid>();
        grid->document.BeginUndoGroup();
        state.ResumeTiming();
        grid->build();
        state.PauseTiming();
        grid->document.EndUndoGroup();
        grid.reset();
        state.ResumeTiming();
    }
    state.counters["children"] = Children;
}
BENCHMARK(BM_CloneNameAndPlace27000Children)->Unit(benchmark::kMillisecond);

void BM_Delete27000Children(benchmark::State &state)
{
    Grid grid;
    grid.build();
    for (auto _ : state) {
        grid.document.DeleteNodes(CollectAllChildren(grid.copies()));
        state.PauseTiming();
        grid.document.undo();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_Delete27000Children)->Unit(benchmark::kMillisecond);

void BM_UndoDeletionOf27000Children(benchmark::State &state)
{
    Grid grid;
    grid.build();
    for (auto _ : state) {
        state.PauseTiming();
        grid.document.DeleteNodes(CollectAllChildren(grid.copies()));
        state.ResumeTiming();
        grid.document.undo();
    }
    state.counters["restored"] = double(grid.group->GetChildren().size());
}
BENCHMARK(BM_UndoDeletionOf27000Children)->Unit(benchmark::kMillisecond);

void BM_CancelBuildOf27000Children(benchmark::State &state)
{
    Grid grid;
    for (auto _ : state) {
        state.PauseTiming();
        grid.document.BeginUndoGroup();
        grid.build();
        state.ResumeTiming();
        grid.document.CancelUndoGroup();
    }
    state.counters["left"] = double(grid.group->GetChildren().size());
}
BENCHMARK(BM_CancelBuildOf27000Children)->Unit(benchmark::kMillisecond);

void BM_Open27000BoxSceneFile(benchmark::State &state)
{
    QByteArray json;
    {
        Grid grid;
        grid.build();
        json = SceneFile::toJson(grid.document);
    }
    using Clock = std::chrono::steady_clock;
    double reading = 0, bounding = 0;
    std::size_t children = 0;
    for (auto _ : state) {
        const Clock::time_point start = Clock::now();
        QString error;
        std::unique_ptr<Document> document
            = SceneFile::fromJson(json, QStringLiteral("grid.vscene"), &error);
        const Clock::time_point read = Clock::now();
        const TBBox<float> box = ComputeNodeBBox(document->GetRootNode());
        const Clock::time_point bounded = Clock::now();
        benchmark::DoNotOptimize(box);
        state.PauseTiming();
        children = document->GetRootNode()->GetChildren().front()->GetChildren().size();
        document.reset(); // the next run starts without any of these meshes
        state.ResumeTiming();
        reading += std::chrono::duration<double, std::milli>(read - start).count();
        bounding += std::chrono::duration<double, std::milli>(bounded - read).count();
    }
    state.counters["read_ms"] = reading / double(state.iterations());
    state.counters["first_bounds_ms"] = bounding / double(state.iterations());
    state.counters["children"] = double(children);
}
BENCHMARK(BM_Open27000BoxSceneFile)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
