// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The meshes the shape generators build: well formed, of the sizes and volumes of the solids
// they model, and following their parameters.
#include "tests/hostapp/generatorchecks.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <map>
#include <string>
#include <utility>
#include <vector>

using namespace vantrel::host;
using namespace vantrel::test;

namespace {

constexpr double Pi = 3.14159265358979323846;

} // namespace

TEST(GeneratorMeshes, EveryShapeIsClosedOutwardFacingAndWellFormed)
{
    for (const char *id : s_identifiers) {
        std::unique_ptr<ShapeGenerator> generator = make(id);
        const MeshPtr mesh = generator->mesh();
        if (hasParameter(*generator, "path")) {
            EXPECT_TRUE(mesh->parts().empty()) << "no model handed over yet";
            continue;
        }
        EXPECT_GE(mesh->parts().size(), 1u) << id;
        expectWellFormed(*mesh, id);
    }
}

TEST(GeneratorMeshes, ExtentsFollowTheParametersAndDefaultsHaveRealWorldSizes)
{
    // Published sizes (along x, z and y) of the products with one standard size; the others
    // vary too much between products to name one.
    const std::map<std::string, std::array<double, 3>> published = {
        {"generator.DiscBox.DigipakDVD", {13.5, 19., 1.}},
        {"generator.DiscBox.DigipakCD", {14.2, 12.5, 0.8}},
        {"generator.DiscBox.DVD", {13.5, 19., 1.4}},
        {"generator.DiscBox.SlimCD", {14.2, 12.5, 0.5}},
        {"generator.DiscBox.BluRay", {12.8, 14.8, 1.2}},
        {"generator.Devices.iPad", {18.57, 24.12, 0.88}},
        {"generator.Devices.iPhone4", {5.86, 11.52, 0.93}},
        {"generator.Devices.iPhone5", {5.86, 12.38, 0.76}},
        {"generator.canvas.simple", {40., 30., 2.}},
        {"generator.Boxes.Box", {20., 30., 10.}},
        {"generator.DiscBox.Disc", {12., 12., 0.12}},
        {"generator.Images.Image", {20., 15., 0.05}},
    };
    // Hand-held packaging and books, in centimetres (not millimetres or metres).
    const double plausible[3][2] = {{5., 40.}, {3., 40.}, {0.1, 15.}};
    for (const char *id : s_identifiers) {
        std::unique_ptr<ShapeGenerator> generator = make(id);
        if (hasParameter(*generator, "path"))
            continue; // the extents are the model's
        // The parameters giving the extents along x, z and y, and one that stands on top.
        const bool disc = hasParameter(*generator, "diameter");
        const char *const names[3] = {disc ? "diameter" : "width",
                                      disc ? "diameter" : "height",
                                      hasParameter(*generator, "depth") ? "depth" : "thickness"};
        const char *extraHeight = hasParameter(*generator, "tagHeight") ? "tagHeight" : nullptr;

        const auto size = published.find(id);
        for (int k = 0; k < 3; ++k) {
            const double value = number(*generator, names[k]);
            if (size != published.end())
                EXPECT_NEAR(value, size->second[k], 1e-5) << id << " " << names[k];
            else
                EXPECT_TRUE(value >= plausible[k][0] && value <= plausible[k][1])
                    << id << " " << names[k] << " = " << value;
        }
        // Defaults first, then every length scaled, to see that the mesh follows.
        for (const double scale : {1., 0.37}) {
            for (const char *name : {names[0], names[1], names[2], extraHeight}) {
                if (name)
                    generator->setProperty(name, number(*generator, name) * scale);
            }
            const double width = number(*generator, names[0]), thick = number(*generator, names[2]);
            const double height = number(*generator, names[1])
                                  + (extraHeight ? number(*generator, extraHeight) : 0.);
            const TBBox<float> box = generator->mesh()->localBox();
            const double tolerance = 1e-5 * (width + height + thick);
            const std::string label = std::string(id) + " scale " + std::to_string(scale);
            const double expected[3][2]
                = {{-width / 2, width / 2}, {-thick / 2, thick / 2}, {0., height}};
            const char *const meaning[3] = {"width on x, centred",
                                            "thickness on y, centred",
                                            "standing on the floor, height on z"};
            for (int a = 0; a < 3; ++a) {
                EXPECT_NEAR(box.min[a], expected[a][0], tolerance) << label << ": " << meaning[a];
                EXPECT_NEAR(box.max[a], expected[a][1], tolerance) << label << ": " << meaning[a];
            }
        }
    }
}

TEST(GeneratorMeshes, VolumesAndNormalsMatchTheSolidsTheyModel)
{
    std::unique_ptr<ShapeGenerator> box = make("generator.Boxes.Box");
    EXPECT_NEAR(signedVolume(*box->mesh()), 20. * 30. * 10., 6000. * 0.01) << "default box";
    box->setProperty("width", 3.);
    box->setProperty("height", 4.);
    box->setProperty("depth", 5.);
    EXPECT_NEAR(signedVolume(*box->mesh()), 60., 0.6) << "3 x 4 x 5 box";
    // A box is convex, so every face points away from its centre.
    const Vec centre = {0., 0., 2.};
    for (const IMeshPart *p : box->mesh()->parts()) {
        const MeshPart &part = meshPart(p);
        for (std::size_t t = 0; t < part.indices().size(); t += 3) {
            double outwards = 0.;
            for (std::size_t k = t; k < t + 3; ++k) {
                const VertexRecord &r = part.GetVertices()[part.indices()[k]];
                outwards += dot(vec(r.normal), vec(r.position) - centre) / 3.;
            }
            EXPECT_GT(outwards, 0.) << "triangle " << t / 3 << " of a box part faces inwards";
        }
    }

    // A ring of 12 cm with a 1.5 cm hole, 1.2 mm thick: pi (R² - r²) t.
    std::unique_ptr<ShapeGenerator> disc = make("generator.DiscBox.Disc");
    const double ring = Pi * (6. * 6. - 0.75 * 0.75) * 0.12;
    EXPECT_NEAR(signedVolume(*disc->mesh()), ring, ring * 0.01) << "disc with its hole";
    disc->setProperty("holeDiameter", 0.);
    EXPECT_NEAR(signedVolume(*disc->mesh()), Pi * 36. * 0.12, Pi * 36. * 0.12 * 0.01) << "no hole";
    expectWellFormed(*disc->mesh(), "disc without a hole");

    // Bending a sheet keeps its volume; at 180 degrees the middle surface is a half circle of
    // radius width / pi, and at 90 degrees a quarter circle of radius 2 width / pi.
    std::unique_ptr<ShapeGenerator> image = make("generator.Images.Image");
    const double w = 20., h = 15., t = 0.05;
    for (const double bend : {180., -180., 90.}) {
        image->setProperty("bend", bend);
        const std::string label = "image bent " + std::to_string(bend);
        const MeshPtr mesh = image->mesh();
        expectWellFormed(*mesh, label);
        EXPECT_NEAR(signedVolume(*mesh), w * h * t, w * h * t * 0.01) << label;
        const double radius = w / (std::abs(bend) * Pi / 180.);
        const double halfSpan = (radius + t / 2) * std::sin(std::abs(bend) * Pi / 360.);
        const TBBox<float> extent = mesh->localBox();
        EXPECT_NEAR(extent.max[0], halfSpan, 1e-3) << label;
        EXPECT_NEAR(extent.min[0], -halfSpan, 1e-3) << label;
        const double edgeDepth = radius * (1. - std::cos(std::abs(bend) * Pi / 360.));
        if (bend > 0.)
            EXPECT_NEAR(extent.max[1], edgeDepth + t / 2 * std::cos(bend * Pi / 360.), 1e-3)
                << label;
        else
            EXPECT_NEAR(extent.min[1], -edgeDepth, 1e-3) << label;
    }
}

TEST(GeneratorMeshes, CoversSwingOpenAboutTheSpine)
{
    struct Opening
    {
        const char *parameter;
        double value;
        double degrees; // how far the cover turns
    };
    std::vector<std::pair<const char *, std::vector<Opening>>> shapes;
    for (const char *id : s_discCases)
        shapes.push_back({id, {{"coverAngle", 90., 90.}, {"coverAngle", 180., 180.}}});
    for (const char *id : s_paperbacks)
        shapes.push_back({id, {{"type", 1., 30.}, {"type", 2., 180.}, {"type", 0., 0.}}});

    for (const auto &[id, openings] : shapes) {
        std::unique_ptr<ShapeGenerator> generator = make(id);
        const double w = number(*generator, "width"), t = number(*generator, "thickness");
        const double closedVolume = signedVolume(*generator->mesh());
        for (const Opening &opening : openings) {
            generator->setProperty(opening.parameter, opening.value);
            const MeshPtr mesh = generator->mesh();
            const std::string label
                = std::string(id) + " " + opening.parameter + " " + std::to_string(opening.value);
            expectWellFormed(*mesh, label);
            EXPECT_NEAR(signedVolume(*mesh), closedVolume, closedVolume * 1e-4)
                << label << ": turned, not bent";
            EXPECT_NEAR(mesh->localBox().max[1], t / 2, 1e-4) << label << ": the back stays put";
            // The cover (the first part) turns about the spine's outer front edge, which
            // therefore stays put.
            int onHinge = 0;
            for (const VertexRecord &v : mesh->parts()[0]->GetVertices())
                onHinge += std::abs(v.position[0] + w / 2) < 1e-4
                           && std::abs(v.position[1] + t / 2) < 1e-4;
            EXPECT_GT(onHinge, 0) << label << ": no cover vertex left on the hinge line";
            if (opening.degrees < 180.)
                EXPECT_NEAR(mesh->localBox().min[1],
                            -t / 2 - w * std::sin(opening.degrees * Pi / 180.),
                            opening.degrees > 0. ? 1e-3 : 1e-4)
                    << label << ": the fore-edge swings out by width * sin(angle)";
            else
                EXPECT_NEAR(mesh->localBox().min[0], -1.5 * w, 1e-3)
                    << label << ": the cover lies open beside the spine";
        }
    }
}
