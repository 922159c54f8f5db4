// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/generators/imagegenerator.h"

#include "hostapp/core/scene/meshbuilder.h"

namespace vantrel::host {

// A 20 x 15 cm photo print on half a millimetre of card.
ImageGenerator::ImageGenerator(const char *typeId)
    : SizedShapeGenerator(typeId, DepthName::Thickness, {20.f, 15.f, 0.05f})
{
    initValue("bend", 0.f);
}

void ImageGenerator::setBend(float bend)
{
    setValue("bend", QVariant(limited("bend", bend)));
}

MeshPtr ImageGenerator::build() const
{
    MeshBuilder builder;
    builder.setSheet(artworkSheet());
    SheetSides sides = SheetSides::all(QStringLiteral("plain"));
    sides.front = QStringLiteral("picture");
    sides.back = QStringLiteral("back");
    builder.setSides(sides);
    builder.addCurvedSheet(width(), height(), depth(), bend());
    return builder.build();
}

ArtworkSheet ImageGenerator::artworkSheet() const
{
    // The picture and the print's back side at the flat size; bent, the print follows the arc.
    const float w = width(), h = height();
    ArtworkSheet sheet;
    sheet.addRectangle(QStringLiteral("picture"), 0.f, 0.f, w, h);
    sheet.addRectangle(QStringLiteral("back"), w, 0.f, w, h);
    sheet.addPlain(2 * w, 0.f);
    return sheet;
}

std::unique_ptr<ShapeGenerator> ImageGenerator::create() const
{
    return std::make_unique<ImageGenerator>(GetTypeId());
}

ShapeGenerator::ParameterRange ImageGenerator::parameterRange(const QByteArray &name) const
{
    if (name == "bend")
        return {ParameterUnit::Degrees, -180.0, 180.0};
    return SizedShapeGenerator::parameterRange(name);
}

} // namespace vantrel::host
