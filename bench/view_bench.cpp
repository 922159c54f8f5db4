// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The desktop program's 3D view, 960 x 600 pixels in a window on the X display, orbiting, each
// frame drawn and waited for (the view's own repaint through the event loop, then glFinish() in
// the view's context), as fast as a user's drag could make it draw. Two ways per scene:
//   still      the camera's yaw turned by half a degree between frames from outside, as a
//              script or an undo would: every frame at full quality, what a drag cost before
//              the view drew its gestures the fast way;
//   dragging   a real left-button drag sent to the view as mouse events (a press, one move of
//              2 pixels, 0.8 degrees, per frame, the release at the end), so the view's own
//              gesture path draws (fewer shadow samples, fewer pixels); "then" is the
//              full-quality frame the release brings.
// Scenes:
//   empty      no shapes: the floor alone, the reference the others are given as ratios to;
//   demo       the sample scene after the demo's five tools (`vantrel demo`), read back from
//              the scene the demo's last step left;
//   grid       the sample scene's light over a 30 x 30 x 30 grid of boxes (27 000 copies of
//              one box, sharing its mesh).
// The first frame after a document is set (meshes going up to the GPU, the shadow maps drawn) is
// given apart, and so is the time a click takes to find its box in the grid. Needs an X display;
// ./setup.sh bench runs under xvfb-run when there is none.
//
//   bench_view [frames]     (default 60; the grid draws a third of them)
//   bench_view --model FILE [frames]
//                           the model file alone (a scan of millions of vertices, say), in
//                           view from above at the front, against the empty scene (default 5
//                           frames)

#include "hostapp/core/commands/demo.h"
#include "hostapp/core/commands/samplescene.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/files/scenefile.h"
#include "hostapp/core/scene/generatorregistry.h"
#include "hostapp/core/scene/generators/externalmodelgenerator.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/desktop/sceneview.h"
#include "hostapp/render/drawlist.h"

#include <QApplication>
#include <QBuffer>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QMouseEvent>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QTextStream>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

using namespace vantrel::host;

namespace {

struct Figures
{
    long long triangles = 0;
    double firstMilliseconds = 0;
    double millisecondsPerFrame = 0;
    double paintGlMilliseconds = 0; // the CPU's share: SceneView::lastFrameMilliseconds, mean
    int shadowSamples = 0;          // what the frames drew the floor's shadows with
    QSize drawnSize;                // and the pixels they drew before scaling up
    double settleMilliseconds = -1; // after a drag: the full-quality frame its release brings
};

// One frame drawn and finished: what a user waits for. repaint() draws only a window's first
// frame at once on Qt 5.15's xcb platform (a view's later repaints wait for the window's update
// request), so the frame is asked for with an update (the view's own, after a mouse event or a
// camera change) and the event loop runs until it is drawn.
template<typename Cause>
double drawFrame(SceneView &view, Cause cause)
{
    QElapsedTimer timer;
    timer.start();
    QEventLoop loop;
    QObject::connect(&view, &SceneView::frameDrawn, &loop, &QEventLoop::quit);
    QTimer::singleShot(60000, &loop, &QEventLoop::quit);
    cause();
    loop.exec();
    view.makeCurrent();
    view.context()->functions()->glFinish();
    view.doneCurrent();
    return double(timer.nsecsElapsed()) / 1e6;
}

// A left-button event as the window system hands it to the view: the button that changed (none
// for a move) and the buttons held after it.
void send(SceneView &view, QEvent::Type type, const QPoint &at)
{
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    const Qt::MouseButtons held
        = type == QEvent::MouseButtonRelease ? Qt::MouseButtons() : Qt::LeftButton;
    QMouseEvent event(type, QPointF(at), button, held, Qt::NoModifier);
    QApplication::sendEvent(&view, &event);
}

enum class Orbit { Still, Dragging };

Figures orbit(SceneView &view, Document &document, int frames, Orbit how)
{
    view.setDocument(&document);
    Figures figures;
    for (const vantrel::render::DrawItem &item : vantrel::render::collectDrawList(document).items)
        figures.triangles += item.mesh->triangleCount();
    figures.firstMilliseconds = drawFrame(view, [&view] { view.update(); });
    Camera &camera = *document.camera();
    const QPoint press = view.rect().center();
    if (how == Orbit::Dragging)
        send(view, QEvent::MouseButtonPress, press);
    double total = 0, paintGl = 0;
    for (int frame = 0; frame < frames; ++frame) {
        total += drawFrame(view, [&] {
            if (how == Orbit::Still)
                camera.setYaw(camera.yaw() + 0.5f);
            else // the first move leaves the click's tolerance, the view's drag begins
                send(view,
                     QEvent::MouseMove,
                     press + QPoint(SceneView::ClickTolerance + 2 * frame, 0));
        });
        paintGl += view.lastFrameMilliseconds();
    }
    figures.shadowSamples = view.lastShadowSamples();
    figures.drawnSize = view.lastDrawnSize();
    if (how == Orbit::Dragging) {
        const QPoint end = press + QPoint(SceneView::ClickTolerance + 2 * (frames - 1), 0);
        figures.settleMilliseconds
            = drawFrame(view, [&view, end] { send(view, QEvent::MouseButtonRelease, end); });
    }
    figures.millisecondsPerFrame = total / frames;
    figures.paintGlMilliseconds = paintGl / frames;
    view.setDocument(nullptr);
    return figures;
}

// A click's pick at the middle of the view (the draw list read, the ray cast), median of five.
double pickMilliseconds(SceneView &view, Document &document, bool *hit)
{
    view.setDocument(&document);
    std::vector<double> times;
    for (int run = 0; run < 5; ++run) {
        QElapsedTimer timer;
        timer.start();
        *hit = view.nodeAt(view.rect().center()) != nullptr;
        times.push_back(double(timer.nsecsElapsed()) / 1e6);
    }
    view.setDocument(nullptr);
    std::sort(times.begin(), times.end());
    return times[2];
}

void print(const char *name, const Figures &figures, const Figures &reference)
{
    std::printf(
        "  %-36s %9lld triangles %2d samples at %3d x %3d %6.1f fps  %8.1f ms/frame  %5.2f x empty"
        "  (paintGL %6.1f ms)  first frame %8.1f ms",
        name,
        figures.triangles,
        figures.shadowSamples,
        figures.drawnSize.width(),
        figures.drawnSize.height(),
        1000.0 / figures.millisecondsPerFrame,
        figures.millisecondsPerFrame,
        figures.millisecondsPerFrame / reference.millisecondsPerFrame,
        figures.paintGlMilliseconds,
        figures.firstMilliseconds);
    if (figures.settleMilliseconds >= 0)
        std::printf("  then %8.1f ms", figures.settleMilliseconds);
    std::printf("\n");
}

std::unique_ptr<Document> demoScene(QString *error)
{
    QByteArray last;
    QString output;
    QTextStream out(&output), err(error);
    const int status = runDemo(QStringLiteral(VANTREL_TOOLS_PLUGIN),
                               QString(),
                               out,
                               err,
                               [&last](const QString &, Document &document) {
                                   last = SceneFile::toJson(document);
                                   return true;
                               });
    if (status != 0)
        return nullptr;
    return SceneFile::fromJson(last, QStringLiteral("demo"), error);
}

std::unique_ptr<Document> gridScene()
{
    auto document = std::make_unique<Document>();
    buildSampleScene(*document);
    BaseNode *source
        = document->root()->createChildShape("generator.Boxes.Box", QStringLiteral("Grid Box"));
    source->SetVisible(false);
    constexpr int Side = 30;
    constexpr float Step = 12.f, Layer = 20.f;
    for (int i = 0; i < Side * Side * Side; ++i) {
        auto *copy = static_cast<SceneNode *>(document->CloneNode(source, 1));
        copy->applyPosition(Vector3(float(i % Side) * Step,
                                    float(i / Side % Side) * Step,
                                    float(i / (Side * Side)) * Layer));
        copy->SetVisible(true);
    }
    // From the front right and above, far enough to see the whole grid.
    Camera &camera = *document->camera();
    camera.SetTarget(Vector3(Side * Step / 2, Side * Step / 2, Side * Layer / 2));
    camera.SetDistance(1500.f);
    document->history().clear();
    return document;
}

// The model file alone, the camera looking at its box from the front and above.
std::unique_ptr<Document> modelScene(const QString &path, QString *error)
{
    auto generator = createGenerator(ExternalModelGenerator::s_typeId);
    auto *model = static_cast<ExternalModelGenerator *>(generator.get());
    model->setPath(QFileInfo(path).absoluteFilePath());
    if (!model->refusal().isEmpty()) {
        *error = model->refusal();
        return nullptr;
    }
    auto document = std::make_unique<Document>();
    MeshNode *node
        = document->root()->createChildMesh(std::move(generator), QStringLiteral("Scan"));
    const TBBox<float> &box = node->mesh()->localBox();
    const float largest = std::max(
        {box.max[0] - box.min[0], box.max[1] - box.min[1], box.max[2] - box.min[2], 1.f});
    Camera &camera = *document->camera();
    camera.SetTarget(Vector3((box.min[0] + box.max[0]) / 2,
                             (box.min[1] + box.max[1]) / 2,
                             (box.min[2] + box.max[2]) / 2));
    camera.SetDistance(1.5f * largest);
    document->history().clear();
    return document;
}

int fail(const QString &what)
{
    std::fprintf(stderr, "bench_view: %s\n", qPrintable(what));
    return 1;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        return fail(QStringLiteral("needs an X display (run it under xvfb-run -a)"));
    qputenv("QT_QPA_PLATFORM", "xcb");
    QApplication application(argc, argv);
    const bool modelOnly = argc > 2 && qstrcmp(argv[1], "--model") == 0;
    const int framesArgument = modelOnly ? 3 : 1;
    const int frames = argc > framesArgument ? std::max(3, std::atoi(argv[framesArgument]))
                                             : (modelOnly ? 5 : 60);

    SceneView view;
    view.resize(960, 600);
    view.show();
    QEventLoop exposed;
    QObject::connect(&view, &SceneView::frameDrawn, &exposed, &QEventLoop::quit);
    QTimer::singleShot(10000, &exposed, &QEventLoop::quit);
    exposed.exec();
    if (!view.errorMessage().isEmpty())
        return fail(view.errorMessage());
    if (view.size() != QSize(960, 600))
        return fail(QStringLiteral("the window manager gave the view %1 x %2 pixels")
                        .arg(view.width())
                        .arg(view.height()));

    QString error;
    if (modelOnly) {
        QElapsedTimer reading;
        reading.start();
        std::unique_ptr<Document> scan = modelScene(QFile::decodeName(argv[2]), &error);
        if (!scan)
            return fail(error);
        const double readMilliseconds = double(reading.nsecsElapsed()) / 1e6;
        Document empty;
        const Figures reference = orbit(view, empty, frames, Orbit::Still);
        const Figures still = orbit(view, *scan, frames, Orbit::Still);
        const Figures dragging = orbit(view, *scan, frames, Orbit::Dragging);
        std::printf("SceneView 960 x 600, orbiting; %d frames; the model read in %.0f ms\n",
                    frames,
                    readMilliseconds);
        print("empty scene (reference)", reference, reference);
        print("the model, still", still, reference);
        print("the model, dragging", dragging, reference);
        return 0;
    }
    std::unique_ptr<Document> demo = demoScene(&error);
    if (!demo)
        return fail(QStringLiteral("the demo's scene: %1").arg(error.trimmed()));
    std::unique_ptr<Document> grid = gridScene();
    Document empty;

    const int gridFrames = std::max(3, frames / 3);
    const Figures reference = orbit(view, empty, frames, Orbit::Still);
    const Figures demoStill = orbit(view, *demo, frames, Orbit::Still);
    const Figures demoDragging = orbit(view, *demo, frames, Orbit::Dragging);
    const Figures gridStill = orbit(view, *grid, gridFrames, Orbit::Still);
    const Figures gridDragging = orbit(view, *grid, gridFrames, Orbit::Dragging);
    std::printf("SceneView 960 x 600, orbiting; drawn and finished frame by frame; %d frames "
                "(grid %d)\n",
                frames,
                gridFrames);
    std::printf("  OpenGL: %s\n", reinterpret_cast<const char *>([&view] {
                    view.makeCurrent();
                    return view.context()->functions()->glGetString(GL_RENDERER);
                }()));
    print("empty scene (reference)", reference, reference);
    print("demo scene, still", demoStill, reference);
    print("demo scene, dragging", demoDragging, reference);
    print("grid of 30 x 30 x 30 boxes, still", gridStill, reference);
    print("grid of 30 x 30 x 30 boxes, dragging", gridDragging, reference);
    bool hit = false;
    const double pick = pickMilliseconds(view, *grid, &hit);
    std::printf("  a click's pick in the grid: %.1f ms (%s)\n", pick, hit ? "a box" : "nothing");
    return 0;
}
