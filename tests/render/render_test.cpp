// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Pictures of real scenes, judged by properties that hold on every OpenGL driver: where the
// shapes' silhouette lies, which side of a shape its shadow falls on, how wide the shadow's edge
// is, and whether two pictures are the same. These tests need an X display (ctest runs under
// xvfb-run in ./setup.sh test).
#include "host/ilightnode.h"
#include "host/imeshnode.h"
#include "host/imeshpart.h"
#include "host/inode.h"
#include "host/itool.h"
#include "hostapp/core/commands/session.h"
#include "hostapp/render/renderer.h"
#include "hostapp/ui/panelaccess.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDialog>
#include <QImage>
#include <QPushButton>

#include <array>
#include <cmath>

using namespace vantrel::host;
using vantrel::render::RenderOptions;

namespace {

using Point = std::array<double, 3>;

// A background no shading of the palette's colours can produce.
const QColor Magenta(255, 0, 255);

// Every vertex of every visible shape in world space, through each node's chain of local
// matrices in double precision (row vectors: the node's own matrix first, then its parents').
std::vector<Point> visibleWorldVertices(const INode *root)
{
    std::vector<Point> points;
    std::vector<const INode *> pending{root};
    while (!pending.empty()) {
        const INode *node = pending.back();
        pending.pop_back();
        for (const INode *child : node->GetChildren())
            pending.push_back(child);
        const auto *mesh = qobject_cast<IMeshNode *>(const_cast<INode *>(node));
        if (!mesh || !node->IsVisible())
            continue;
        for (const IMeshPart *part : mesh->GetMeshParts()) {
            for (const VertexRecord &v : part->GetVertices()) {
                Point p{v.position[0], v.position[1], v.position[2]};
                for (const INode *n = node; n; n = n->GetParent()) {
                    const Matrix &m = n->GetLocalMatrix();
                    const Point in = p;
                    for (int c = 0; c < 3; ++c)
                        p[c] = in[0] * m[c] + in[1] * m[4 + c] + in[2] * m[8 + c] + m[12 + c];
                }
                points.push_back(p);
            }
        }
    }
    return points;
}

// Where the camera shows a world point, in pixels (x to the right, y down), worked out from the
// camera's documented axes (global matrix rows: forward, left, up, position), its vertical field
// of view and its frame fitted into the picture.
QPointF pixelOf(const Camera &camera, const QSize &size, const Point &p)
{
    const Matrix &g = camera.GetGlobalMatrix();
    const double d[3] = {p[0] - g[12], p[1] - g[13], p[2] - g[14]};
    auto along = [&](int row) {
        return d[0] * g[4 * row] + d[1] * g[4 * row + 1] + d[2] * g[4 * row + 2];
    };
    const double depth = along(0), right = -along(1), up = along(2);
    const double frame = camera.GetAspectRatio();
    const double picture = double(size.width()) / double(size.height());
    // Half the frame's height at depth 1; the frame fills the picture's height when the picture is
    // wider than the frame, and its width otherwise.
    double halfHeight = std::tan(double(camera.GetFieldOfView()) * M_PI / 360.0);
    double halfWidth = halfHeight * frame;
    if (picture >= frame)
        halfWidth = halfHeight * picture;
    else
        halfHeight = halfWidth / picture;
    const double x = right / depth / halfWidth, y = up / depth / halfHeight;
    return QPointF((x + 1.0) * 0.5 * size.width(), (1.0 - y) * 0.5 * size.height());
}

// The smallest rectangle of pixels that differ from the background.
QRect silhouette(const QImage &picture, const QColor &background)
{
    int left = picture.width(), right = -1, top = picture.height(), bottom = -1;
    for (int y = 0; y < picture.height(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            if ((row[x] & 0xffffff) == (background.rgb() & 0xffffff))
                continue;
            left = std::min(left, x);
            right = std::max(right, x);
            top = std::min(top, y);
            bottom = std::max(bottom, y);
        }
    }
    return QRect(QPoint(left, top), QPoint(right, bottom));
}

// The light reaching the floor around a pixel, in linear units: the picture stores light with a
// 2.2 power, so it is undone before averaging a 5 x 5 patch.
double lightAt(const QImage &picture, const QPointF &where)
{
    double sum = 0.0;
    int count = 0;
    for (int dy = -2; dy <= 2; ++dy) {
        for (int dx = -2; dx <= 2; ++dx) {
            const QPoint p(int(std::lround(where.x())) + dx, int(std::lround(where.y())) + dy);
            if (!picture.rect().contains(p))
                continue;
            const QRgb c = picture.pixel(p);
            sum += std::pow((qRed(c) + qGreen(c) + qBlue(c)) / (3.0 * 255.0), 2.2);
            ++count;
        }
    }
    return count ? sum / count : NAN;
}

class PictureTest : public ::testing::Test
{
protected:
    PictureTest()
    {
        QString error;
        EXPECT_TRUE(m_session.loadToolsPlugin(QStringLiteral(VANTREL_TOOLS_PLUGIN), &error))
            << error.toStdString();
        EXPECT_TRUE(m_renderer.initialize(&error)) << error.toStdString();
    }

    // Runs the script; a failure fails the test with the script's message.
    void run(const QString &program)
    {
        QString error;
        EXPECT_TRUE(m_session.runner().evaluate(program, QStringLiteral("test.js"), &error))
            << error.toStdString() << "\nin: " << program.toStdString();
    }

    QImage picture(const RenderOptions &options = RenderOptions())
    {
        QString error;
        QImage image = m_renderer.render(m_session.document(), options, &error);
        EXPECT_FALSE(image.isNull()) << error.toStdString();
        return image;
    }

    QImage withoutFloor(int width = 480)
    {
        RenderOptions options;
        options.width = width;
        options.floor = false;
        options.background = Magenta;
        return picture(options);
    }

    const Camera &camera() { return *m_session.document().camera(); }

    // The first node of that name in pre-order, or null.
    INode *findNode(const QString &name, INode *from = nullptr)
    {
        if (!from)
            from = m_session.document().GetRootNode();
        if (from->GetName() == name)
            return from;
        for (INode *child : from->GetChildren()) {
            if (INode *found = findNode(name, child))
                return found;
        }
        return nullptr;
    }

    Session m_session;
    vantrel::render::Renderer m_renderer;
};

// A shadow-casting block standing on the floor, 20 wide (x), 60 deep (y) and 40 high, seen from
// the front (-y) and above, so that the floor on both sides of it shows.
class BlockPictureTest : public PictureTest
{
protected:
    BlockPictureTest()
    {
        run(QStringLiteral(
            "document.root.addShape('generator.Boxes.Box', 'Block', {width: 20, depth: 60, "
            "height: 40});"
            "var c = document.camera; c.target = [0, 0, 10]; c.yaw = -90; c.pitch = 35;"
            "c.distance = 260; c.fieldOfView = 40; c.aspectRatio = 1.5;"));
    }

    // The light on the floor at (x, y), from the given picture.
    double floorLight(const QImage &image, double x, double y)
    {
        return lightAt(image, pixelOf(camera(), image.size(), Point{x, y, 0.0}));
    }

    Point lightPosition()
    {
        const Matrix &m = findNode(QStringLiteral("EasyLight"))->GetLocalMatrix();
        return Point{m[12], m[13], m[14]};
    }

    // How squarely a point light shines on the floor at (x, y): the cosine between the floor's
    // normal and the direction to the light.
    static double facing(const Point &light, double x, double y)
    {
        return light[2]
               / std::sqrt((light[0] - x) * (light[0] - x) + (light[1] - y) * (light[1] - y)
                           + light[2] * light[2]);
    }

    double ambient() { return double(m_session.document().GetAmbientIntensity()); }
    double intensity()
    {
        return double(
            qobject_cast<ILightNode *>(findNode(QStringLiteral("EasyLight")))->GetIntensity());
    }
};

} // namespace

TEST_F(PictureTest, FitToViewFramesTheSilhouetteExactly)
{
    run(QStringLiteral(
        "document.root.addShape('generator.Book.HardCover', 'Atlas', {}).rotation = [0, 0, 35];"
        "var dvd = document.root.addShape('generator.DiscBox.DVD', 'Case', {coverAngle: 60});"
        "dvd.position = [30, 10, 0]; dvd.rotation = [0, 0, -20];"
        "var key = document.root.addLight('Key'); key.position = [-50, -60, 90];"));
    const std::vector<Point> vertices = visibleWorldVertices(m_session.document().GetRootNode());
    ASSERT_FALSE(vertices.empty());

    struct Fit
    {
        const char *call;
        double padding;
    };
    for (const Fit &fit : {Fit{"tools.fitToView({padding: 0})", 0.0},
                           Fit{"tools.fitToView({padding: 0, keepAspect: true})", 0.0},
                           Fit{"tools.fitToView({padding: 0.5})", 0.5}}) {
        SCOPED_TRACE(fit.call);
        run(QString::fromLatin1(fit.call));
        const QImage image = withoutFloor();
        const QRect drawn = silhouette(image, Magenta);
        ASSERT_TRUE(drawn.isValid()) << "nothing was drawn";
        double left = HUGE_VAL, right = -HUGE_VAL, top = HUGE_VAL, bottom = -HUGE_VAL;
        for (const Point &p : vertices) {
            const QPointF at = pixelOf(camera(), image.size(), p);
            left = std::min(left, at.x());
            right = std::max(right, at.x());
            top = std::min(top, at.y());
            bottom = std::max(bottom, at.y());
        }
        // A pixel is drawn when the shape covers part of it: pixel columns floor(left) to
        // ceil(right) - 1, give or take the edge smoothing.
        EXPECT_NEAR(drawn.left(), std::floor(left), 2.0) << "left edge";
        EXPECT_NEAR(drawn.right(), std::ceil(right) - 1.0, 2.0) << "right edge";
        EXPECT_NEAR(drawn.top(), std::floor(top), 2.0) << "top edge";
        EXPECT_NEAR(drawn.bottom(), std::ceil(bottom) - 1.0, 2.0) << "bottom edge";

        const int w = image.width(), h = image.height();
        const int margins[4]
            = {drawn.left(), w - 1 - drawn.right(), drawn.top(), h - 1 - drawn.bottom()};
        if (fit.padding == 0.0) {
            const bool acrossTheWidth = margins[0] <= 2 && margins[1] <= 2;
            const bool acrossTheHeight = margins[2] <= 2 && margins[3] <= 2;
            EXPECT_TRUE(acrossTheWidth || acrossTheHeight)
                << "margins " << margins[0] << ", " << margins[1] << ", " << margins[2] << ", "
                << margins[3];
        } else {
            // Half again the distance shrinks the shapes to about two thirds: a sixth of the
            // picture on each side of the tight direction, less for parts nearer the camera.
            EXPECT_GT(margins[0], w / 20) << "left margin";
            EXPECT_GT(margins[1], w / 20) << "right margin";
            EXPECT_GT(margins[2], h / 20) << "top margin";
            EXPECT_GT(margins[3], h / 20) << "bottom margin";
        }
    }
}

TEST_F(PictureTest, HiddenShapesAndLightsLeaveNoTrace)
{
    run(QStringLiteral(
        "document.root.addShape('generator.Boxes.Box', 'Gift', {});"
        "var atlas = document.root.addShape('generator.Book.HardCover', 'Atlas', {});"
        "atlas.position = [35, 0, 0];"
        "var group = document.root.addGroup('Shelf'); group.visible = false;"
        "group.addShape('generator.Book.Paperback', 'Novel', {}).position = [-35, 0, 0];"
        "var key = document.root.addLight('Key'); key.position = [-120, -40, 60];"
        "key.intensity = 0.9; key.castShadows = true;"
        "tools.easyLighting({hangle: 60, vangle: 50});"
        "tools.fitToView({padding: 0.3, keepAspect: true});"));
    ASSERT_FALSE(findNode(QStringLiteral("Key"))->IsVisible())
        << "Easy Lighting hides the other lights";
    RenderOptions small;
    small.width = 400;

    const QImage keyHidden = picture(small);
    run(QStringLiteral("document.findNode('Key').visible = true;"));
    EXPECT_FALSE(picture(small) == keyHidden) << "the key light, shown, lights the scene";
    run(QStringLiteral("document.findNode('Key').remove();"));
    EXPECT_TRUE(picture(small) == keyHidden) << "a hidden light is as good as none";

    run(QStringLiteral("document.findNode('Atlas').visible = false;"));
    const QImage atlasHidden = picture(small);
    EXPECT_FALSE(atlasHidden == keyHidden) << "the book and its shadow go";
    run(QStringLiteral("document.findNode('Atlas').remove();"));
    EXPECT_TRUE(picture(small) == atlasHidden) << "a hidden shape is as good as none";

    // Each node's own flag counts: the book in the hidden group is drawn.
    run(QStringLiteral("document.findNode('Novel').remove();"));
    EXPECT_FALSE(picture(small) == atlasHidden) << "the visible book below the hidden group showed";
}

TEST_F(BlockPictureTest, TheShadowFallsAwayFromEasyLight)
{
    for (const int hangle : {0, 180}) {
        SCOPED_TRACE(hangle);
        run(QStringLiteral("tools.easyLighting({hangle: %1, vangle: 35, blur: 0, contrast: 0.8});")
                .arg(hangle));
        const QImage image = picture();
        // Easy Lighting's angle 0 puts the light on the +x side, 180 on the -x side.
        const double side = hangle == 0 ? 30.0 : -30.0;
        const double lit = floorLight(image, side, 0.0), shadowed = floorLight(image, -side, 0.0);
        // The floor in the shadow gets the ambient light only, the floor beside the block that
        // and the light times the cosine of its angle of incidence.
        const double expected
            = (ambient() + intensity() * facing(lightPosition(), side, 0.0)) / ambient();
        EXPECT_NEAR(lit / shadowed, expected, 0.05 * expected)
            << "lit " << lit << ", shadowed " << shadowed;
    }
}

TEST_F(BlockPictureTest, TheShadowEdgeWidensWithTheBlur)
{
    run(QStringLiteral("tools.easyLighting({hangle: 0, vangle: 60, contrast: 0.8});"));
    const Point light = lightPosition();
    // The block's top edge at y = 30 runs along x, and so does its shadow on the floor: the light
    // stands at y = 0 and casts the edge outwards by the factor t. The line across it is taken
    // half-way along the shadow of the top face, away from its other edges.
    ASSERT_NEAR(light[1], 0.0, 1e-3);
    const double t = light[2] / (light[2] - 40.0);
    const double edgeY = 30.0 * t;
    const double x0 = light[0] + t * (0.0 - light[0]);

    // The share of the light that gets through at each point: the picture shows
    // albedo * (ambient + intensity * facing * share), and deep in the shadow albedo * ambient.
    auto edgeWidth = [&](const QImage &image) {
        std::vector<double> shares;
        const double albedo = floorLight(image, x0, edgeY - 22.0) / ambient();
        for (double s = -22.0; s <= 22.0; s += 0.25) {
            double sum = 0.0;
            for (double a = -4.0; a <= 4.0; a += 2.0)
                sum += floorLight(image, x0 + a, edgeY + s);
            shares.push_back((sum / 5.0 / albedo - ambient())
                             / (intensity() * facing(light, x0, edgeY + s)));
        }
        EXPECT_NEAR(shares.front(), 0.0, 0.05) << "the line starts in the shadow";
        EXPECT_NEAR(shares.back(), 1.0, 0.1) << "and ends in the light";
        auto crossing = [&](double share) {
            for (std::size_t i = 1; i < shares.size(); ++i) {
                if (shares[i] >= share)
                    return -22.0 + 0.25 * double(i);
            }
            return double(NAN);
        };
        return crossing(0.75) - crossing(0.25);
    };
    // A disk of radius r slid across a straight edge: the share of it beyond the edge at distance
    // d from its centre is (acos(d / r) - (d / r) sqrt(1 - (d / r)^2)) / pi, a quarter at
    // d = 0.4040 r, so the light rises from a quarter to three quarters over 0.808 r.
    for (const double blur : {0.1, 8.0, 16.0}) {
        SCOPED_TRACE(blur);
        run(QStringLiteral("document.findNode('EasyLight').shadowBlur = %1;").arg(blur));
        const double width = edgeWidth(picture());
        if (blur < 1.0)
            EXPECT_LT(width, 1.5) << "a sharp edge";
        else
            EXPECT_NEAR(width, 0.808 * blur, 0.12 * 0.808 * blur);
    }
}

TEST_F(PictureTest, ACancelledToolWindowLeavesThePictureAsItWas)
{
    run(QStringLiteral("document.root.addShape('generator.Book.Paperback', 'Novel', {});"
                       "var key = document.root.addLight('Key'); key.position = [-50, -60, 90];"
                       "key.castShadows = true;"));
    RenderOptions small;
    small.width = 400;
    const QImage before = picture(small);

    // The window as a user works it: picked from the tool list, two sliders moved, Cancel.
    ITool *tool = m_session.tools().findTool(QStringLiteral("Easy Lighting..."));
    ASSERT_NE(tool, nullptr);
    tool->Execute(m_session.context());
    QDialog *window = m_session.userInterface().openWindow();
    ASSERT_NE(window, nullptr);
    PanelAccess *panel = FindPanel(window);
    ASSERT_NE(panel, nullptr);
    EXPECT_TRUE(panel->setPanelValue(QStringLiteral("angleH"), 120.0));
    EXPECT_TRUE(panel->setPanelValue(QStringLiteral("blur"), 0.9));
    EXPECT_FALSE(picture(small) == before) << "the open window's preview shows in the picture";
    window->findChild<QPushButton *>(QStringLiteral("cancel"))->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QImage after = picture(small);
    ASSERT_EQ(after.size(), before.size());
    EXPECT_TRUE(after == before) << "the picture after Cancel differs from the one before";

    // The same through the script API, in one evaluation (an open window closes at its end).
    run(QStringLiteral("document.runTool('Easy Lighting...');"
                       "document.window.set('angleV', 20); document.window.set('contrast', 1);"
                       "document.window.cancel();"));
    after = picture(small);
    EXPECT_TRUE(after == before) << "the picture after the script's Cancel differs";
}
