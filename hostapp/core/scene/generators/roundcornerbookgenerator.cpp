// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/generators/roundcornerbookgenerator.h"

#include "hostapp/core/scene/generators/lengthlimits.h"
#include "hostapp/core/scene/generators/softcovercard.h"
#include "hostapp/core/scene/meshbuilder.h"

namespace vantrel::host {

// A trade paperback (12.9 x 19.8 cm) with 6 mm corners.
RoundCornerBookGenerator::RoundCornerBookGenerator(const char *typeId)
    : SizedShapeGenerator(typeId, DepthName::Thickness, {12.9f, 19.8f, 2.5f})
{
    initValue("cornerRadius", 0.6f);
}

void RoundCornerBookGenerator::setCornerRadius(float cornerRadius)
{
    setValue("cornerRadius", QVariant(limited("cornerRadius", cornerRadius)));
}

MeshPtr RoundCornerBookGenerator::build() const
{
    const float w = width(), h = height(), t = depth();
    const float cover = softCoverCard(w, t);

    MeshBuilder builder;
    builder.setSheet(artworkSheet());
    const QString plain = QStringLiteral("plain");
    SheetSides sides = SheetSides::all(plain);
    sides.front = QStringLiteral("front");
    builder.setSides(sides);
    const MeshBuilder::Outline page = frontOutline(cornerRadii(), s_segments);
    builder.beginPart(); // front cover
    builder.addPrism(page, -t / 2, -t / 2 + cover);
    sides = SheetSides::all(plain);
    sides.back = QStringLiteral("back");
    builder.setSides(sides);
    builder.beginPart(); // back cover
    builder.addPrism(page, t / 2 - cover, t / 2);
    sides = SheetSides::all(plain);
    sides.left = QStringLiteral("spine");
    builder.setSides(sides);
    builder.beginPart(); // spine
    builder.addBox(Vector3(-w / 2, -t / 2 + cover, 0.f), Vector3(-w / 2 + cover, t / 2 - cover, h));
    sides = SheetSides::all(plain);
    sides.wall = QStringLiteral("page edges");
    builder.setSides(sides);
    builder.beginPart(); // page block, cut together with the covers
    builder.addPrism(pageBlockOutline(), -t / 2 + cover, t / 2 - cover);
    return builder.build();
}

MeshBuilder::CornerRadii RoundCornerBookGenerator::cornerRadii() const
{
    MeshBuilder::CornerRadii radii;
    radii.bottomRight = radii.topRight = cornerRadius(); // the fore-edge is at +x
    return radii;
}

MeshBuilder::Outline RoundCornerBookGenerator::pageBlockOutline() const
{
    const float w = width();
    return roundedRectangleOutline(
        -w / 2 + softCoverCard(w, depth()), 0.f, w / 2, height(), cornerRadii(), s_segments);
}

ArtworkSheet RoundCornerBookGenerator::artworkSheet() const
{
    // The cover as printed, back | spine | front, with the rounded corners cut at the fore-edge
    // (on the left of the back, seen from behind); below it the page block's edge, one strip
    // all round the block at its real length.
    const float w = width(), h = height(), t = depth();
    const float cover = softCoverCard(w, t);
    const float spine = t - 2 * cover;
    const MeshBuilder::Outline page = frontOutline(cornerRadii(), s_segments);
    ArtworkSheet sheet;
    sheet.addOutline(QStringLiteral("back"), 0.f, 0.f, page, true);
    sheet.addRectangle(QStringLiteral("spine"), w, 0.f, spine, h);
    sheet.addOutline(QStringLiteral("front"), w + spine, 0.f, page);
    const float around = outlinePerimeter(cleanOutline(pageBlockOutline()));
    sheet.addRectangle(QStringLiteral("page edges"), 0.f, h, around, spine);
    sheet.addPlain(around, h);
    return sheet;
}

std::unique_ptr<ShapeGenerator> RoundCornerBookGenerator::create() const
{
    return std::make_unique<RoundCornerBookGenerator>(GetTypeId());
}

ShapeGenerator::ParameterRange
RoundCornerBookGenerator::parameterRange(const QByteArray &name) const
{
    if (name == "cornerRadius")
        return {ParameterUnit::Centimetres, 0.0, MaximumLength};
    return SizedShapeGenerator::parameterRange(name);
}

} // namespace vantrel::host
