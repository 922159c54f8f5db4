// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/generators/bookgenerator.h"

#include "hostapp/core/scene/generators/styletable.h"
#include "hostapp/core/scene/meshbuilder.h"

#include <algorithm>
#include <cmath>

namespace vantrel::host {

namespace {

struct BookStyle
{
    const char *typeId;
    SizedShapeGenerator::Size defaults;
    float board;    // cover thickness, centimetres
    float overhang; // of the covers past the page block, centimetres
};

// A royal octavo hard cover and an A4 magazine.
const BookStyle s_styles[] = {
    {BookGenerator::s_hardCoverId, {15.6f, 23.4f, 3.f}, 0.25f, 0.3f},
    {BookGenerator::s_magazineId, {21.f, 29.7f, 0.4f}, 0.02f, 0.f},
};

// The book's proportions, shared by its mesh and its artwork sheet.
struct BookLayout
{
    float board, overhang, bulge, hinge;
    float boardWidth;                           // hinge line to fore-edge
    float pageWidth, pageThickness, pageHeight; // the page block
};

BookLayout layoutOf(const BookStyle &style, float w, float h, float t)
{
    BookLayout l;
    // Boards never take more than half the thickness, nor the overhang a tenth of the page.
    l.board = std::min(style.board, 0.25f * t);
    l.overhang = std::min({style.overhang, 0.1f * w, 0.1f * h});
    // How far the rounded spine bulges out past the boards' hinge line.
    l.bulge = std::min(0.2f * t, 0.1f * w);
    l.hinge = -w / 2 + l.bulge;
    l.boardWidth = w / 2 - l.hinge;
    l.pageWidth = l.boardWidth - l.overhang;
    l.pageThickness = t - 2 * l.board;
    l.pageHeight = h - 2 * l.overhang;
    return l;
}

} // namespace

BookGenerator::BookGenerator(const char *typeId)
    : SizedShapeGenerator(typeId, DepthName::Thickness, styleFor(s_styles, typeId).defaults)
{}

MeshPtr BookGenerator::build() const
{
    const BookStyle &style = styleFor(s_styles, GetTypeId());
    const float w = width(), h = height(), t = depth();
    const BookLayout l = layoutOf(style, w, h, t);
    const float board = l.board, overhang = l.overhang, bulge = l.bulge, hinge = l.hinge;
    const QString plain = QStringLiteral("plain");

    MeshBuilder builder;
    builder.setSheet(artworkSheet());
    SheetSides sides = SheetSides::all(plain);
    sides.front = QStringLiteral("front");
    builder.setSides(sides);
    builder.beginPart(); // front cover
    builder.addBox(Vector3(hinge, -t / 2, 0.f), Vector3(w / 2, -t / 2 + board, h));
    sides = SheetSides::all(plain);
    sides.back = QStringLiteral("back");
    builder.setSides(sides);
    builder.beginPart(); // back cover
    builder.addBox(Vector3(hinge, t / 2 - board, 0.f), Vector3(w / 2, t / 2, h));

    // The spine's cross-section is half an ellipse in the xy-plane. It is extruded along y as a
    // prism and then turned so that the extrusion runs up z: the turn takes y to z and z to -y,
    // so the section is drawn with z = -y.
    builder.setSides(SheetSides::all(plain)); // the spine's print is projected onto it below
    builder.beginPart();
    const MeshBuilder::Mark spineStart = builder.mark();
    MeshBuilder::Outline section;
    const int segments = 16;
    for (int i = 0; i <= segments; ++i) {
        const float phi = 3.14159265f * (float(i) / float(segments) - 0.5f);
        section.push_back({hinge - bulge * std::cos(phi), -(t / 2) * std::sin(phi)});
    }
    builder.addPrism(section, 0.f, h);
    Matrix upright; // rows are the images of x, y and z
    upright[5] = 0.f;
    upright[6] = 1.f;
    upright[9] = -1.f;
    upright[10] = 0.f;
    builder.transformSince(spineStart, upright);
    // Seen from the left, the spine's print runs from the back cover's edge to the front's.
    builder.projectSince(spineStart,
                         QStringLiteral("spine"),
                         Vector3(hinge - bulge, t / 2, h),
                         Vector3(0.f, -t, 0.f),
                         Vector3(0.f, 0.f, -h),
                         bulge);

    sides = SheetSides::all(plain);
    sides.right = QStringLiteral("fore edge");
    sides.top = QStringLiteral("head");
    sides.bottom = QStringLiteral("tail");
    builder.setSides(sides);
    builder.beginPart(); // page block, set back from the covers' edges by the overhang
    builder.addBox(Vector3(hinge, -t / 2 + board, overhang),
                   Vector3(w / 2 - overhang, t / 2 - board, h - overhang));
    return builder.build();
}

ArtworkSheet BookGenerator::artworkSheet() const
{
    // The cover as printed, back | spine | front, with the page block's edges below it.
    const float h = height(), t = depth();
    const BookLayout l = layoutOf(styleFor(s_styles, GetTypeId()), width(), h, t);
    ArtworkSheet sheet;
    sheet.addRectangle(QStringLiteral("back"), 0.f, 0.f, l.boardWidth, h);
    sheet.addRectangle(QStringLiteral("spine"), l.boardWidth, 0.f, t, h);
    sheet.addRectangle(QStringLiteral("front"), l.boardWidth + t, 0.f, l.boardWidth, h);
    const float pw = l.pageWidth, pt = l.pageThickness;
    sheet.addRectangle(QStringLiteral("fore edge"), 0.f, h, pt, l.pageHeight);
    sheet.addRectangle(QStringLiteral("head"), pt, h, pw, pt);
    sheet.addRectangle(QStringLiteral("tail"), pt + pw, h, pw, pt);
    sheet.addPlain(pt + 2 * pw, h);
    return sheet;
}

std::unique_ptr<ShapeGenerator> BookGenerator::create() const
{
    return std::make_unique<BookGenerator>(GetTypeId());
}

} // namespace vantrel::host
