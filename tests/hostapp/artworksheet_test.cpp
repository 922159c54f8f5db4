// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Artwork sheets against the meshes made from them: every triangle prints from one face's
// region, each printed face is covered exactly once, and each region has the real size of the
// surface it lands on.

#include "hostapp/core/scene/artworksheet.h"
#include "hostapp/core/scene/shapegenerator.h"
#include "tests/hostapp/generatorchecks.h"

#include <gtest/gtest.h>

#include <QString>

#include <cmath>
#include <map>
#include <string>

using namespace vantrel::host;
using namespace vantrel::test;

namespace {

struct Uv
{
    double u, v; // centimetres on the sheet
};

double uvArea(const Uv &a, const Uv &b, const Uv &c)
{
    return 0.5 * std::abs((b.u - a.u) * (c.v - a.v) - (c.u - a.u) * (b.v - a.v));
}

double loopArea(const QPolygonF &loop)
{
    double twice = 0.;
    for (int i = 0; i + 1 < loop.size(); ++i)
        twice += loop[i].x() * loop[i + 1].y() - loop[i + 1].x() * loop[i].y();
    return 0.5 * std::abs(twice);
}

double outlineArea(const ArtworkSheet::Face &face)
{
    double area = loopArea(face.outline.value(0));
    for (int i = 1; i < face.outline.size(); ++i)
        area -= loopArea(face.outline[i]); // holes
    return area;
}

// What the triangles printing from one face add up to.
struct Printed
{
    double uvArea = 0.;   // cm² on the sheet
    double meshArea = 0.; // cm² on the shape
    double uMin = 1e30, uMax = -1e30, vMin = 1e30, vMax = -1e30;
};

// Faces whose print is projected onto a curved surface, so the surface is larger than the print.
bool projectedOntoCurve(const std::string &id, const QString &face)
{
    return (id == "generator.Book.HardCover" || id == "generator.Book.Magazine")
           && face == QLatin1String("spine");
}

void checkSheetAgainstMesh(const ShapeGenerator &generator)
{
    const std::string id = generator.GetTypeId();
    const ArtworkSheet sheet = generator.artworkSheet();
    ASSERT_FALSE(sheet.isEmpty()) << id;
    const double width = sheet.width(), height = sheet.height();
    const QVector<ArtworkSheet::Face> &faces = sheet.faces();
    for (int i = 0; i < faces.size(); ++i) {
        for (int j = i + 1; j < faces.size(); ++j) {
            const QRectF common = faces[i].region.intersected(faces[j].region);
            EXPECT_LT(common.width() * common.height(), 1e-4)
                << id << ": " << faces[i].name.toStdString() << " overlaps "
                << faces[j].name.toStdString();
        }
    }
    const double slack = 1e-4 * std::max(width, height) + 1e-5;
    std::map<int, Printed> printed;
    int strays = 0;
    for (const IMeshPart *p : generator.mesh()->parts()) {
        const MeshPart &part = meshPart(p);
        const auto &vertices = part.GetVertices();
        const auto &indices = part.indices();
        for (std::size_t t = 0; t + 2 < indices.size(); t += 3) {
            Uv uv[3];
            Vec at[3];
            for (int k = 0; k < 3; ++k) {
                const VertexRecord &vertex = vertices[indices[t + std::size_t(k)]];
                uv[k] = {vertex.texCoord[0] * width, vertex.texCoord[1] * height};
                at[k] = vec(vertex.position);
            }
            // The face under the triangle's middle owns it; all its corners must lie on that face.
            const QPointF middle((uv[0].u + uv[1].u + uv[2].u) / 3,
                                 (uv[0].v + uv[1].v + uv[2].v) / 3);
            int owner = -1;
            for (const double margin : {0., slack}) {
                for (int f = 0; f < faces.size() && owner < 0; ++f) {
                    if (faces[f].region.adjusted(-margin, -margin, margin, margin).contains(middle))
                        owner = f;
                }
            }
            const QRectF r
                = owner < 0 ? QRectF() : faces[owner].region.adjusted(-slack, -slack, slack, slack);
            if (owner < 0 || !r.contains(uv[0].u, uv[0].v) || !r.contains(uv[1].u, uv[1].v)
                || !r.contains(uv[2].u, uv[2].v)) {
                ++strays;
                continue;
            }
            Printed &sum = printed[owner];
            sum.uvArea += uvArea(uv[0], uv[1], uv[2]);
            sum.meshArea += 0.5 * norm(cross(at[1] - at[0], at[2] - at[0]));
            for (const Uv &c : uv) {
                sum.uMin = std::min(sum.uMin, c.u);
                sum.uMax = std::max(sum.uMax, c.u);
                sum.vMin = std::min(sum.vMin, c.v);
                sum.vMax = std::max(sum.vMax, c.v);
            }
        }
    }
    EXPECT_EQ(strays, 0) << id << ": triangles printing across faces";
    for (int f = 0; f < faces.size(); ++f) {
        const ArtworkSheet::Face &face = faces[f];
        const std::string label = id + " " + face.name.toStdString();
        ASSERT_TRUE(printed.count(f)) << label << ": no triangle prints from it";
        if (face.name == QLatin1String("plain"))
            continue; // shared by the unprinted surfaces, stretched as they come
        const Printed &sum = printed[f];
        const QRectF &r = face.region;
        EXPECT_NEAR(sum.uMin, r.left(), slack) << label;
        EXPECT_NEAR(sum.uMax, r.right(), slack) << label;
        EXPECT_NEAR(sum.vMin, r.top(), slack) << label;
        EXPECT_NEAR(sum.vMax, r.bottom(), slack) << label;
        const double area = outlineArea(face);
        EXPECT_NEAR(sum.uvArea, area, 2e-3 * area) << label << ": printed exactly once";
        if (projectedOntoCurve(id, face.name))
            EXPECT_GT(sum.meshArea, area) << label;
        else
            EXPECT_NEAR(sum.meshArea, area, 2e-3 * area) << label << ": real size";
    }
}

} // namespace

TEST(ArtworkSheet, EveryFacePrintsFromItsOwnRegionAtRealSize)
{
    for (const char *id : s_identifiers) {
        if (std::string(id) == "generator.external.model")
            continue;
        auto generator = make(id);
        ASSERT_TRUE(generator);
        checkSheetAgainstMesh(*generator);
        // Shapes far from their defaults: long, flat and thin, where rounding and limits bite.
        generator->setProperty("width", 3.f);
        generator->setProperty("height", 90.f);
        generator->setProperty("diameter", 30.f);
        checkSheetAgainstMesh(*generator);
    }
}

TEST(ArtworkSheet, RegionsHaveTheSizesOfThePackagingTheyPrint)
{
    // Worked out from the shapes' descriptions: a carton's panels, a book's cover spread
    // (the hard cover's boards start at the rounded spine, 0.6 cm in), a paperback's spine
    // between its two 0.3 mm cover cards, a disc's 12 cm label.
    struct Expected
    {
        const char *id;
        const char *face;
        double width, height;
    };
    const Expected table[] = {
        {"generator.Boxes.Box", "front", 20., 30.},
        {"generator.Boxes.Box", "left", 10., 30.},
        {"generator.Boxes.Box", "top", 20., 10.},
        {"generator.Book.HardCover", "front", 15., 23.4},
        {"generator.Book.HardCover", "spine", 3., 23.4},
        {"generator.Book.Paperback", "spine", 1.94, 19.8},
        {"generator.Book.Paperback", "back", 12.9, 19.8},
        {"generator.DiscBox.Disc", "label", 12., 12.},
        {"generator.DiscBox.DVD", "front", 13.5, 19.},
        {"generator.DiscBox.DVD", "spine", 1.4, 18.},
        {"generator.canvas.simple", "left edge", 2., 30.},
    };
    for (const Expected &e : table) {
        const ArtworkSheet sheet = make(e.id)->artworkSheet();
        const ArtworkSheet::Face *face = sheet.face(QString::fromLatin1(e.face));
        ASSERT_TRUE(face) << e.id << " " << e.face;
        EXPECT_NEAR(face->region.width(), e.width, 1e-4) << e.id << " " << e.face;
        EXPECT_NEAR(face->region.height(), e.height, 1e-4) << e.id << " " << e.face;
    }
    const ArtworkSheet box = make("generator.Boxes.Box")->artworkSheet();
    EXPECT_NEAR(box.width(), 60., 1e-4) << "left, front, right and back in a row";
    EXPECT_NEAR(box.height(), 50., 1e-4) << "top, front and bottom in a column";
    const ArtworkSheet disc = make("generator.DiscBox.Disc")->artworkSheet();
    const ArtworkSheet::Face *label = disc.face("label");
    ASSERT_EQ(label->outline.size(), 2) << "the label is cut round the centre hole";
    EXPECT_NEAR(outlineArea(*label), 3.14159265 * (36. - 0.5625), 0.01 * 36.);
    EXPECT_TRUE(make("generator.external.model")->artworkSheet().isEmpty());
}
