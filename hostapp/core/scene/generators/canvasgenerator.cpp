// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/generators/canvasgenerator.h"

#include "hostapp/core/scene/meshbuilder.h"

#include <algorithm>

namespace vantrel::host {

CanvasGenerator::CanvasGenerator(const char *typeId)
    : SizedShapeGenerator(typeId, DepthName::Depth, {40.f, 30.f, 2.f})
{}

MeshPtr CanvasGenerator::build() const
{
    const float w = width(), h = height(), d = depth();
    const float sheet = std::min(0.05f, 0.25f * d); // half a millimetre of primed cotton
    // Stretcher bars are 4 cm wide, narrower on small canvases so that the back stays open.
    const float bar = std::min({4.f, 0.25f * w, 0.25f * h});

    MeshBuilder builder;
    builder.setSheet(artworkSheet());
    SheetSides sides = SheetSides::all(QStringLiteral("plain"));
    sides.front = QStringLiteral("picture");
    builder.setSides(sides);
    builder.beginPart();
    const MeshBuilder::Mark start = builder.mark();
    builder.addBox(Vector3(-w / 2, -d / 2, 0.f), Vector3(w / 2, -d / 2 + sheet, h));
    builder.setSides(SheetSides::all(QStringLiteral("plain")));
    builder.beginPart();
    builder.addPrismWithHole(rectangleOutline(-w / 2, 0.f, w / 2, h),
                             rectangleOutline(-w / 2 + bar, bar, w / 2 - bar, h - bar),
                             -d / 2 + sheet,
                             d / 2);
    // The canvas wraps round the stretcher, so each side takes one print across the cotton's
    // edge and the bar's: each seen from outside, upright, its edge at the picture's edge.
    const QString edge = QStringLiteral(" edge");
    builder.projectSince(start,
                         QStringLiteral("left") + edge,
                         Vector3(-w / 2, d / 2, h),
                         Vector3(0.f, -d, 0.f),
                         Vector3(0.f, 0.f, -h));
    builder.projectSince(start,
                         QStringLiteral("right") + edge,
                         Vector3(w / 2, -d / 2, h),
                         Vector3(0.f, d, 0.f),
                         Vector3(0.f, 0.f, -h));
    builder.projectSince(start,
                         QStringLiteral("top") + edge,
                         Vector3(-w / 2, d / 2, h),
                         Vector3(w, 0.f, 0.f),
                         Vector3(0.f, -d, 0.f));
    builder.projectSince(start,
                         QStringLiteral("bottom") + edge,
                         Vector3(-w / 2, -d / 2, 0.f),
                         Vector3(w, 0.f, 0.f),
                         Vector3(0.f, d, 0.f));
    return builder.build();
}

ArtworkSheet CanvasGenerator::artworkSheet() const
{
    // A gallery wrap: the picture with its four edges folded out round it; the back (stretcher
    // bars and the cotton's back) is plain.
    const float w = width(), h = height(), d = depth();
    ArtworkSheet sheet;
    sheet.addRectangle(QStringLiteral("top edge"), d, 0.f, w, d);
    sheet.addRectangle(QStringLiteral("left edge"), 0.f, d, d, h);
    sheet.addRectangle(QStringLiteral("picture"), d, d, w, h);
    sheet.addRectangle(QStringLiteral("right edge"), d + w, d, d, h);
    sheet.addRectangle(QStringLiteral("bottom edge"), d, d + h, w, d);
    sheet.addPlain(2 * d + w, 0.f);
    return sheet;
}

std::unique_ptr<ShapeGenerator> CanvasGenerator::create() const
{
    return std::make_unique<CanvasGenerator>(GetTypeId());
}

} // namespace vantrel::host
