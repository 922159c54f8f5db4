// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Fit To View's measuring, against references taken in the same run (the machine is shared and
// noisy, so the ratios are the figures to compare). Each figure is the median of several runs.
//   - One projection pass over every vertex (a fit asks about a hundred questions) against a plain
//     streaming sum over the same list, in the same blocks on the same thread pool.
//   - Whole fits of one mesh of 1 M and 10 M vertices, gathering included, as multiples of a limit
//     pass: the smallest and largest coordinates of the same list, four lanes at a time on both
//     threads. Beside them the fit that passes over every vertex for every question, and whether
//     both end with the same camera, bit for bit.
//
//   build/bin/bench_fittoview [--runs N] [--fit-only]

#include "host/hostfunctions.h"
#include "host/icamera.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/generators/externalmodelgenerator.h"
#include "hostapp/core/scene/meshnode.h"
#include "tools/fittoview/fittoviewimplementation.h"
#include "tools/fittoview/vertexbounds.h"
#include "tools/fittoview/vertexlanes.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThreadPool>
#include <QtConcurrent>

#include <algorithm>
#include <cfloat>
#include <cstdio>
#include <cstring>
#include <random>

using namespace vantrel::host;
using namespace fittoview;

namespace {

std::vector<Vector3> randomVertices(std::size_t count)
{
    std::mt19937 random(2026);
    std::uniform_real_distribution<float> place(-50.f, 50.f);
    std::vector<Vector3> vertices(count);
    for (Vector3 &v : vertices)
        v = Vector3{place(random), place(random), place(random) * 0.5f + 25.f};
    return vertices;
}

// Reads every coordinate once, in the blocks a pass uses, on the same pool.
float streamingSum(const std::vector<Vector3> &vertices)
{
    struct Block
    {
        const Vector3 *begin, *end;
        float sum;
    };
    std::vector<Block> blocks;
    for (std::size_t k = 0; k < vertices.size(); k += VerticesPerBlock) {
        const std::size_t end = std::min(k + std::size_t(VerticesPerBlock), vertices.size());
        blocks.push_back(Block{vertices.data() + k, vertices.data() + end, 0.f});
    }
    QtConcurrent::blockingMap(blocks, [](Block &block) {
        constexpr int Lanes = 8;
        float lanes[Lanes] = {};
        const Vector3 *v = block.begin;
        for (; block.end - v >= Lanes; v += Lanes) {
            for (int k = 0; k < Lanes; ++k)
                lanes[k] += v[k].x + v[k].y + v[k].z;
        }
        for (; v != block.end; ++v)
            lanes[0] += v->x + v->y + v->z;
        for (float lane : lanes)
            block.sum += lane;
    });
    float sum = 0.f;
    for (const Block &block : blocks)
        sum += block.sum;
    return sum;
}

template<typename Function>
double medianMilliseconds(int runs, Function function)
{
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
        QElapsedTimer timer;
        timer.start();
        function();
        times.push_back(double(timer.nsecsElapsed()) / 1e6);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

// A camera looking at the cloud from far enough that every vertex is inside the frame.
void camera(Matrix &global, Matrix &projection)
{
    Document document;
    ICamera *view = document.GetCamera();
    view->SetTarget(Vector3{0.f, 0.f, 25.f});
    view->SetDistance(400.f);
    global = view->GetGlobalMatrix();
    CalculateProjectionMatrix(projection,
                              view->GetFieldOfView(),
                              view->GetAspectRatio(),
                              view->GetAspectRatio(),
                              0.1f,
                              1000.f);
}

void passes(std::size_t count, int runs)
{
    const std::vector<Vector3> vertices = randomVertices(count);
    Matrix global, projection;
    camera(global, projection);
    const double reference
        = medianMilliseconds(runs, [&] { benchmark::DoNotOptimize(streamingSum(vertices)); });
    bool inside = false;
    const double bounds = medianMilliseconds(runs, [&] {
        benchmark::DoNotOptimize(computeProjectedBounds(vertices, global, projection));
    });
    const double containment = medianMilliseconds(
        runs, [&] { inside = allVerticesInside(vertices, global, projection); });
    std::printf("%5.0f M vertices: streaming sum %8.3f ms | bounds pass %8.3f ms (%.2fx) | "
                "containment pass %8.3f ms (%.2fx)%s\n",
                double(count) / 1e6,
                reference,
                bounds,
                bounds / reference,
                containment,
                containment / reference,
                inside ? "" : "  [containment failed: the camera is not far enough]");
}

// The machine's limit for one pass over the vertex list: the smallest and largest x, y and z,
// four lanes at a time, in the blocks a pass uses, on both threads. Nothing a pass could do over
// every vertex can take less. (The list's length is a multiple of four here.)
void limitPass(const std::vector<Vector3> &vertices, float out[6])
{
    struct Block
    {
        const Vector3 *begin, *end;
        Float4 low[3], high[3];
    };
    std::vector<Block> blocks;
    for (std::size_t k = 0; k < vertices.size(); k += VerticesPerBlock) {
        const std::size_t end = std::min(k + std::size_t(VerticesPerBlock), vertices.size());
        blocks.push_back(Block{vertices.data() + k, vertices.data() + end, {}, {}});
    }
    runBlocks(blocks, [](Block &block) {
        Float4 low[3], high[3];
        for (int k = 0; k < 3; ++k) {
            low[k] = Float4{} + FLT_MAX;
            high[k] = Float4{} - FLT_MAX;
        }
        for (const Vector3 *v = block.begin; block.end - v >= 4; v += 4) {
            Float4 c[3];
            load4(v, c[0], c[1], c[2]);
            for (int k = 0; k < 3; ++k) {
                low[k] = c[k] < low[k] ? c[k] : low[k];
                high[k] = c[k] > high[k] ? c[k] : high[k];
            }
        }
        for (int k = 0; k < 3; ++k) {
            block.low[k] = low[k];
            block.high[k] = high[k];
        }
    });
    for (int k = 0; k < 3; ++k) {
        out[k] = FLT_MAX;
        out[3 + k] = -FLT_MAX;
    }
    for (const Block &block : blocks) {
        for (int k = 0; k < 3; ++k) {
            for (int lane = 0; lane < 4; ++lane) {
                out[k] = std::min(out[k], block.low[k][lane]);
                out[3 + k] = std::max(out[3 + k], block.high[k][lane]);
            }
        }
    }
}

struct FitResult
{
    double milliseconds;
    Vector3 target;
    float distance, aspectRatio;
    int passes, fullPasses;
    std::size_t candidates;
    int readings;
};

FitResult fitOnce(Document &document, FitProbes::Measuring measuring, int runs)
{
    FitResult result{};
    ICamera *view = document.GetCamera();
    result.milliseconds = medianMilliseconds(runs, [&] {
        FitToViewImplementation settings(&document, measuring);
        result.target = view->GetTarget();
        result.distance = view->GetDistance();
        result.aspectRatio = view->GetAspectRatio();
        result.passes = settings.passCount();
        result.fullPasses = settings.fullPassCount();
        result.candidates = settings.candidateCount();
        result.readings = settings.filterReadingCount();
    });
    return result;
}

bool sameCamera(const FitResult &a, const FitResult &b)
{
    return std::memcmp(&a.target, &b.target, sizeof a.target) == 0
           && std::memcmp(&a.distance, &b.distance, sizeof a.distance) == 0
           && std::memcmp(&a.aspectRatio, &b.aspectRatio, sizeof a.aspectRatio) == 0;
}

// A whole fit of a document holding one mesh of count vertices, as a multiple of the limit pass
// over the same count, and against the fit that passes over every vertex for every probe.
void wholeFit(std::size_t count, int runs)
{
    const std::vector<Vector3> points = randomVertices(count);
    std::vector<VertexRecord> records(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        records[i] = VertexRecord{};
        records[i].position[0] = points[i].x;
        records[i].position[1] = points[i].y;
        records[i].position[2] = points[i].z;
    }
    std::vector<std::unique_ptr<MeshPart>> parts;
    parts.push_back(std::make_unique<MeshPart>(std::move(records), std::vector<quint32>()));
    auto generator = std::make_unique<ExternalModelGenerator>("generator.external.model");
    generator->setModelMesh(std::make_shared<const Mesh>(std::move(parts)));
    Document document;
    document.root()->createChildMesh(std::move(generator), QStringLiteral("Cloud"));

    float box[6];
    const double limit = medianMilliseconds(runs * 3, [&] { limitPass(points, box); });
    benchmark::DoNotOptimize(box);
    // Each fit gathers into a fresh list, as here.
    const double gathering = medianMilliseconds(runs, [&] {
        std::vector<Vector3> gathered;
        collectVertices(gathered, document.GetRootNode(), Matrix());
        benchmark::DoNotOptimize(gathered.data());
    });
    std::vector<Vector3> gathered;
    collectVertices(gathered, document.GetRootNode(), Matrix());
    const double filtering = medianMilliseconds(runs, [&] {
        FitProbes probes(gathered, document.GetCamera()->GetGlobalMatrix(), FitProbes::Filtered);
        benchmark::DoNotOptimize(probes.candidateCount());
    });
    const FitResult fit = fitOnce(document, FitProbes::Filtered, runs);
    const FitResult full = fitOnce(document, FitProbes::FullPasses, std::max(1, runs / 3));
    std::printf("%2.0f M vertices: limit pass %7.3f ms | the whole list gathered %7.3f ms (%5.2f"
                " limit passes) and filtered %7.3f ms (%5.2f); a fit makes it only when a"
                " question needs every vertex\n"
                "   whole fit %8.3f ms = %5.2f limit passes: %d probes, %d over every vertex,"
                " the rest over %zu candidates; the filter read the list %d time(s)\n"
                "   the fit passing over every vertex every time: %8.3f ms = %6.2f limit passes;"
                " same camera: %s\n",
                double(count) / 1e6,
                limit,
                gathering,
                gathering / limit,
                filtering,
                filtering / limit,
                fit.milliseconds,
                fit.milliseconds / limit,
                fit.passes,
                fit.fullPasses,
                fit.candidates,
                fit.readings,
                full.milliseconds,
                full.milliseconds / limit,
                sameCamera(fit, full) ? "yes" : "NO");
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    int runs = 15;
    const QStringList arguments = application.arguments();
    const int at = arguments.indexOf(QStringLiteral("--runs"));
    if (at > 0 && at + 1 < arguments.size())
        runs = std::max(1, arguments.at(at + 1).toInt());
    std::printf("Fit To View passes, %d threads in the pool, median of %d runs\n",
                QThreadPool::globalInstance()->maxThreadCount(),
                runs);
    if (!arguments.contains(QStringLiteral("--fit-only"))) {
        passes(1000000, runs);
        passes(10000000, runs);
    }
    wholeFit(1000000, std::max(1, runs / 3));
    wholeFit(10000000, std::max(1, runs / 5));
    return 0;
}
