// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Reading large model files: the time ModelFile::read takes on binary PLY grids of about 1 M and
// 10 M vertices, as a multiple of a plain read of the same file's bytes timed in the same run
// (the machine is shared and noisy, so the ratio is the figure to compare), and the peak memory
// of the reading process and of this process during the load, as multiples of the size of the
// mesh's vertex records. Each load runs in a forked copy of this program, so that every peak is
// that one load's own (a process's peak only ever grows).
//
// With --view, what the user waits for next on the largest grid, in this process: opening it as
// a shape (the model read included), Fit To View on it, and a picture as `vantrel render` draws
// it, the first one (the mesh sent to the graphics card) and a second one. Needs an X display.
//
//   bench_modelload [--vertices 1000000,10000000] [--runs 3] [--normals]
//   xvfb-run -a bench_modelload --view [--vertices 10000000] [--normals] [--picture FILE.png]

#include "hostapp/core/document/document.h"
#include "hostapp/core/models/modelfile.h"
#include "hostapp/core/scene/generators/externalmodelgenerator.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/render/renderer.h"
#include "modelloadgrid.h"
#include "tools/fittoview/fittoviewimplementation.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <fcntl.h>
#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>

using namespace vantrel::host;

namespace {

constexpr double MiB = 1024.0 * 1024.0;

struct Options
{
    std::vector<qint64> sizes{1000000, 10000000};
    int runs = 3;
    bool normals = false;
    bool view = false;
    QString picture; // with --view: where the second picture is saved, to look at
};

Options parseOptions(const QStringList &arguments)
{
    Options options;
    for (int i = 1; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        const QString next = i + 1 < arguments.size() ? arguments.at(i + 1) : QString();
        if (argument == QLatin1String("--vertices")) {
            options.sizes.clear();
            for (const QString &size : next.split(QLatin1Char(','), Qt::SkipEmptyParts))
                options.sizes.push_back(std::max<qint64>(4, size.toLongLong()));
            ++i;
        } else if (argument == QLatin1String("--runs")) {
            options.runs = std::max(1, next.toInt());
            ++i;
        } else if (argument == QLatin1String("--normals")) {
            options.normals = true;
        } else if (argument == QLatin1String("--view")) {
            options.view = true;
        } else if (argument == QLatin1String("--picture")) {
            options.picture = next;
            ++i;
        } else {
            std::fprintf(stderr,
                         "usage: bench_modelload [--vertices N,N...] [--runs N] [--normals] "
                         "[--view [--picture FILE.png]]\n");
            std::exit(2);
        }
    }
    std::sort(options.sizes.begin(), options.sizes.end());
    return options;
}

double milliseconds(const QElapsedTimer &timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

// A figure of /proc/self/status ("VmRSS", "VmHWM") in KiB; -1 where it cannot be read.
long statusKiB(const char *field)
{
    std::FILE *status = std::fopen("/proc/self/status", "r");
    if (!status)
        return -1;
    char line[256];
    long value = -1;
    const std::size_t length = std::strlen(field);
    while (std::fgets(line, sizeof line, status)) {
        if (std::strncmp(line, field, length) == 0 && line[length] == ':') {
            value = std::strtol(line + length + 1, nullptr, 10);
            break;
        }
    }
    std::fclose(status);
    return value;
}

// The reference: the file's bytes into memory, as little as any reader of it must do.
double plainReadMilliseconds(const QString &path, qint64 size)
{
    QElapsedTimer timer;
    timer.start();
    const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        qFatal("cannot open %s", qPrintable(path));
    std::unique_ptr<char[]> bytes(new char[std::size_t(size)]);
    constexpr qint64 Piece = 1 << 20;
    qint64 done = 0;
    while (done < size) {
        const ssize_t got
            = ::read(file, bytes.get() + done, std::size_t(std::min(Piece, size - done)));
        if (got <= 0)
            qFatal("cannot read %s", qPrintable(path));
        done += got;
    }
    ::close(file);
    return milliseconds(timer);
}

// What a forked copy of this program reports of one load.
struct LoadReport
{
    bool loaded;
    int vertices, triangles;
    double milliseconds;
    long selfPeakKiB;   // VmHWM after the load less VmRSS before it
    long readerPeakKiB; // the reading process's ru_maxrss
    char error[512];
};

[[noreturn]] void loadAndReport(const QString &path, int channel)
{
    LoadReport report{};
    // Memory the bench freed before the fork but the allocator kept would be reused by the load
    // without growing the resident size, hiding part of the load's own peak.
    ::malloc_trim(0);
    const long before = statusKiB("VmRSS");
    QElapsedTimer timer;
    timer.start();
    QString error;
    const MeshPtr mesh = ModelFile::read(path, ModelFile::Limits(), &error);
    report.milliseconds = milliseconds(timer);
    report.selfPeakKiB = statusKiB("VmHWM") - before;
    rusage children{};
    ::getrusage(RUSAGE_CHILDREN, &children);
    report.readerPeakKiB = children.ru_maxrss;
    report.loaded = mesh != nullptr;
    if (mesh) {
        report.vertices = mesh->vertexCount();
        report.triangles = mesh->triangleCount();
    }
    std::strncpy(report.error, error.toUtf8().constData(), sizeof report.error - 1);
    const bool sent = ::write(channel, &report, sizeof report) == ssize_t(sizeof report);
    ::_exit(sent ? 0 : 1);
}

LoadReport loadInForkedCopy(const QString &path)
{
    int channel[2];
    if (::pipe(channel) != 0)
        qFatal("no pipe");
    std::fflush(stdout);
    const pid_t child = ::fork();
    if (child < 0)
        qFatal("cannot fork");
    if (child == 0) {
        ::close(channel[0]);
        loadAndReport(path, channel[1]);
    }
    ::close(channel[1]);
    LoadReport report{};
    std::size_t got = 0;
    while (got < sizeof report) {
        const ssize_t n
            = ::read(channel[0], reinterpret_cast<char *>(&report) + got, sizeof report - got);
        if (n <= 0)
            break;
        got += std::size_t(n);
    }
    ::close(channel[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    if (got != sizeof report) {
        report = LoadReport{};
        std::snprintf(report.error,
                      sizeof report.error,
                      "the forked load ended without a report (status %d)",
                      status);
    }
    return report;
}

struct Spread
{
    double best, median;
};

Spread spread(std::vector<double> times)
{
    std::sort(times.begin(), times.end());
    return Spread{times.front(), times[times.size() / 2]};
}

void printExplanation(int runs)
{
    std::printf(
        "Each file is read %d times both ways; times are the best and the median (ms). 'plain' "
        "opens the file, reads it whole in 1 MiB pieces into one buffer and closes it (the file "
        "is in the page cache, just written); 'load' is ModelFile::read, the reading process "
        "included, in a forked copy of this program; 'ratio' is load / plain. 'records' is the "
        "size of the mesh's vertex records (60 B a vertex). 'reader' is the peak resident memory "
        "of the reading process (ru_maxrss, its libraries included), 'this' the growth of this "
        "process's peak during the "
        "load (VmHWM after it less VmRSS before it), 'sum' the two added, each as a multiple of "
        "'records' (the largest over the runs).\n\n",
        runs);
    std::printf("%-24s %10s %10s %8s %17s %17s %13s %7s %7s %7s %7s\n",
                "file",
                "vertices",
                "triangles",
                "MiB",
                "plain best/med",
                "load best/med",
                "ratio b/m",
                "records",
                "reader",
                "this",
                "sum");
}

void measureFile(const QString &path, const GridFile &grid, int runs)
{
    std::vector<double> plain, load;
    double reader = 0, self = 0, sum = 0;
    LoadReport last{};
    for (int run = 0; run < runs; ++run) {
        plain.push_back(plainReadMilliseconds(path, grid.bytes));
        last = loadInForkedCopy(path);
        if (!last.loaded) {
            std::printf("%-24s load failed after %.0f ms: %s\n",
                        qPrintable(grid.name),
                        last.milliseconds,
                        last.error);
            return;
        }
        load.push_back(last.milliseconds);
        const double records = 60.0 * last.vertices;
        reader = std::max(reader, last.readerPeakKiB * 1024.0 / records);
        self = std::max(self, last.selfPeakKiB * 1024.0 / records);
        sum = std::max(sum, (last.readerPeakKiB + last.selfPeakKiB) * 1024.0 / records);
    }
    const Spread p = spread(plain), l = spread(load);
    std::printf(
        "%-24s %10d %10d %8.1f %8.1f %8.1f %8.1f %8.1f %6.1f %6.1f %7.1f %6.2fx %6.2fx %6.2fx\n",
        qPrintable(grid.name),
        last.vertices,
        last.triangles,
        grid.bytes / MiB,
        p.best,
        p.median,
        l.best,
        l.median,
        l.best / p.best,
        l.median / p.median,
        60.0 * last.vertices / MiB,
        reader,
        self,
        sum);
    if (last.vertices != grid.vertices || last.triangles != grid.triangles)
        std::printf("    (the file holds %lld vertices and %lld triangles)\n",
                    grid.vertices,
                    grid.triangles);
    std::fflush(stdout);
}

int loadFigures(const Options &options)
{
    QTemporaryDir folder;
    printExplanation(options.runs);
    for (const bool normals : {false, true}) {
        if (normals && !options.normals)
            continue;
        for (const qint64 size : options.sizes) {
            const GridFile grid = writeGridPly(folder.path(), size, normals);
            measureFile(grid.path, grid, options.runs);
            QFile::remove(grid.path);
        }
    }
    return 0;
}

// Opening the grid as a shape, fitting the view to it and drawing pictures of it, in this process.
int viewFigures(const Options &options)
{
    QTemporaryDir folder;
    const GridFile grid = writeGridPly(folder.path(), options.sizes.back(), options.normals);
    vantrel::render::Renderer renderer;
    QString error;
    if (!renderer.initialize(&error)) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 1;
    }
    Document document;
    QElapsedTimer timer;
    timer.start();
    MeshPtr mesh = ModelFile::load(grid.path, &error);
    const char *opening = "read and made a shape";
    if (!mesh) {
        // Fitting and drawing are still worth knowing while the file cannot be read.
        std::printf("%s: opening it failed after %.0f ms (%s); the same grid built here instead\n",
                    qPrintable(grid.name),
                    milliseconds(timer),
                    qPrintable(error));
        timer.restart();
        mesh = gridMesh(grid.vertices);
        opening = "built here and made a shape";
    }
    auto generator = std::make_unique<ExternalModelGenerator>(ExternalModelGenerator::s_typeId);
    generator->setModelMesh(std::move(mesh));
    document.root()->createChildMesh(std::move(generator), QStringLiteral("Grid"));
    const double open = milliseconds(timer);
    timer.restart();
    {
        FitToViewImplementation fit(&document);
    }
    const double fit = milliseconds(timer);
    double pictures[2];
    QSize size;
    for (double &picture : pictures) {
        timer.restart();
        const QImage image = renderer.render(document, vantrel::render::RenderOptions(), &error);
        picture = milliseconds(timer);
        if (image.isNull()) {
            std::fprintf(stderr, "%s\n", qPrintable(error));
            return 1;
        }
        size = image.size();
        if (!options.picture.isEmpty() && !image.save(options.picture))
            std::fprintf(stderr, "cannot write %s\n", qPrintable(options.picture));
    }
    rusage self{};
    ::getrusage(RUSAGE_SELF, &self);
    std::printf("%s (%lld vertices, %lld triangles): %s in %.0f ms | Fit To View %.1f "
                "ms | first picture (%d x %d, the mesh sent to the graphics card) %.0f ms | second "
                "picture %.0f ms | this process's peak %.0f MiB = %.2f x the vertex records\n",
                qPrintable(grid.name),
                grid.vertices,
                grid.triangles,
                opening,
                open,
                fit,
                size.width(),
                size.height(),
                pictures[0],
                pictures[1],
                self.ru_maxrss / 1024.0,
                self.ru_maxrss * 1024.0 / (60.0 * grid.vertices));
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    // Only --view needs the display; the loads run without one, so the forked copies inherit no
    // display connection or GUI threads.
    bool view = false;
    for (int i = 1; i < argc; ++i)
        view = view || std::strcmp(argv[i], "--view") == 0;
    std::unique_ptr<QCoreApplication> application;
    if (view)
        application = std::make_unique<QGuiApplication>(argc, argv);
    else
        application = std::make_unique<QCoreApplication>(argc, argv);
    const Options options = parseOptions(application->arguments());
    return options.view ? viewFigures(options) : loadFigures(options);
}
