// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The renderer on the demo's sample scene, lit by one shadow-casting light: a whole picture at
// two widths, and the same scene as a grid of 1000 copies (one mesh on the GPU, 1000 draws).
// Needs an X display for OpenGL; ./setup.sh bench runs under xvfb-run when there is none.

#include "hostapp/core/commands/samplescene.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/render/renderer.h"

#include <benchmark/benchmark.h>

#include <QGuiApplication>

using namespace vantrel::host;
using vantrel::render::Renderer;
using vantrel::render::RenderOptions;

namespace {

void renderPictures(benchmark::State &state, Document &document)
{
    Renderer renderer;
    QString error;
    if (!renderer.initialize(&error)) {
        state.SkipWithError(error.toUtf8().constData());
        return;
    }
    RenderOptions options;
    options.width = int(state.range(0));
    for (auto _ : state) {
        const QImage picture = renderer.render(document, options, &error);
        benchmark::DoNotOptimize(picture.constBits());
    }
    state.counters["pixels"]
        = double(options.width) * options.width / double(document.camera()->GetAspectRatio());
}

void BM_SampleScene(benchmark::State &state)
{
    Document document;
    buildSampleScene(document);
    renderPictures(state, document);
}
BENCHMARK(BM_SampleScene)->Arg(600)->Arg(1200)->Unit(benchmark::kMillisecond);

void BM_GridOf1000Boxes(benchmark::State &state)
{
    Document document;
    buildSampleScene(document);
    BaseNode *source
        = document.root()->createChildShape("generator.Boxes.Box", QStringLiteral("Grid Box"));
    source->SetVisible(false);
    for (int i = 0; i < 1000; ++i) {
        auto *copy = static_cast<SceneNode *>(document.CloneNode(source, 1));
        copy->applyPosition(
            Vector3(float(i % 10) * 12.f, float(i / 10 % 10) * 12.f, float(i / 100) * 20.f));
        copy->SetVisible(true);
    }
    renderPictures(state, document);
}
BENCHMARK(BM_GridOf1000Boxes)->Arg(1200)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
