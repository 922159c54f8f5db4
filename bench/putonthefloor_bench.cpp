// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Put On The Floor on 1 000 randomly turned and scaled boxes floating at random heights.
// After the timed runs it checks the result: the lowest world-space vertex of the selection must
// lie at z = 0 (reported as the counter lowest_z).
//
// The first run on boxes just made is the cold run: their meshes are built lazily, on first use,
// so it includes getting 1 000 meshes. BM_PutOnTheFloor_1000NewBoxes times it, on a new document
// each time, next to a warm run on the same boxes, and reports cold_over_warm.

#include "host/hostfunctions.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/document/documentcontext.h"
#include "hostapp/core/scene/meshnode.h"
#include "tools/putonthefloor/putonthefloor.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

#include <chrono>
#include <random>

using namespace vantrel::host;

namespace {

std::vector<INode *> scatterBoxes(Document &document, int count)
{
    std::mt19937 random(2026);
    std::uniform_real_distribution<float> angle(-180.f, 180.f), scale(0.5f, 2.f),
        place(-200.f, 200.f), height(5.f, 80.f);
    std::vector<INode *> boxes;
    for (int i = 0; i < count; ++i) {
        MeshNode *box = document.root()->createChildShape("generator.Boxes.Box",
                                                          QStringLiteral("Box %1").arg(i));
        box->applyRotation({angle(random), angle(random), angle(random)});
        box->applyScale({scale(random), scale(random), scale(random)});
        box->applyPosition({place(random), place(random), height(random)});
        boxes.push_back(box);
    }
    document.SetSelection(boxes, Document::ReplaceSelection);
    document.history().clear();
    return boxes;
}

void BM_PutOnTheFloor_1000Boxes(benchmark::State &state)
{
    Document document;
    const std::vector<INode *> boxes = scatterBoxes(document, 1000);
    DocumentContext context(&document);
    PutOnTheFloor tool;
    for (auto _ : state) {
        tool.Execute(context);
        state.PauseTiming();
        document.undo(); // back to the floating arrangement for the next run
        state.ResumeTiming();
    }
    tool.Execute(context);
    TBBox<float> box;
    for (INode *node : boxes) {
        const TBBox<float> b = ComputeNodeBBox(node);
        box.min[2] = std::min(box.min[2], b.min[2]);
    }
    state.counters["lowest_z"] = box.min[2];
    state.counters["nodes"] = double(boxes.size());
}
BENCHMARK(BM_PutOnTheFloor_1000Boxes)->Unit(benchmark::kMillisecond);

double millisecondsOf(PutOnTheFloor &tool, DocumentContext &context)
{
    const auto start = std::chrono::steady_clock::now();
    tool.Execute(context);
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

void BM_PutOnTheFloor_1000NewBoxes(benchmark::State &state)
{
    double cold = 0, warm = 0;
    PutOnTheFloor tool;
    for (auto _ : state) {
        // Each document goes before the next one comes, so no mesh of an earlier run is left.
        auto document = std::make_unique<Document>();
        scatterBoxes(*document, 1000);
        DocumentContext context(document.get());
        const double coldRun = millisecondsOf(tool, context);
        document->undo();
        const double warmRun = millisecondsOf(tool, context);
        state.SetIterationTime(coldRun / 1000);
        cold += coldRun;
        warm += warmRun;
    }
    const double runs = double(state.iterations());
    state.counters["cold_ms"] = cold / runs;
    state.counters["warm_ms"] = warm / runs;
    state.counters["cold_over_warm"] = warm > 0 ? cold / warm : 0;
}
BENCHMARK(BM_PutOnTheFloor_1000NewBoxes)->Unit(benchmark::kMillisecond)->UseManualTime();

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
