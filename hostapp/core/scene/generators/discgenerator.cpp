// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/generators/discgenerator.h"

#include "hostapp/core/scene/generators/lengthlimits.h"
#include "hostapp/core/scene/meshbuilder.h"

#include <algorithm>

namespace vantrel::host {

DiscGenerator::DiscGenerator(const char *typeId)
    : ShapeGenerator(typeId)
{
    // A CD, DVD or Blu-ray disc: 120 mm across, 15 mm centre hole, 1.2 mm thick.
    initValue("diameter", 12.f);
    initValue("holeDiameter", 1.5f);
    initValue("thickness", 0.12f);
}

void DiscGenerator::setDiameter(float diameter)
{
    setValue("diameter", QVariant(limited("diameter", diameter)));
}

void DiscGenerator::setHoleDiameter(float holeDiameter)
{
    setValue("holeDiameter", QVariant(limited("holeDiameter", holeDiameter)));
}

void DiscGenerator::setThickness(float thickness)
{
    setValue("thickness", QVariant(limited("thickness", thickness)));
}

MeshPtr DiscGenerator::build() const
{
    const float radius = diameter() / 2, t = thickness();
    const float holeRadius = std::min(holeDiameter() / 2, 0.9f * radius);
    MeshBuilder builder;
    builder.setSheet(artworkSheet());
    SheetSides sides = SheetSides::all(QStringLiteral("plain"));
    sides.front = QStringLiteral("label");
    builder.setSides(sides);
    builder.addCylinder(0.f, radius, radius, holeRadius, -t / 2, t / 2, s_segments);
    return builder.build();
}

ArtworkSheet DiscGenerator::artworkSheet() const
{
    // The label is the printed side, cut round with the centre hole; the data side and the rim
    // are plain. The outlines are the mesh's own polygons.
    const float radius = diameter() / 2;
    const float holeRadius = std::min(holeDiameter() / 2, 0.9f * radius);
    QVector<Outline> holes;
    if (holeRadius > DuplicateFraction * radius)
        holes.push_back(circleOutline(0.f, radius, holeRadius, s_segments));
    ArtworkSheet sheet;
    sheet.addOutline(QStringLiteral("label"),
                     0.f,
                     0.f,
                     circleOutline(0.f, radius, radius, s_segments),
                     false,
                     holes);
    sheet.addPlain(2 * radius, 0.f);
    return sheet;
}

std::unique_ptr<ShapeGenerator> DiscGenerator::create() const
{
    return std::make_unique<DiscGenerator>(GetTypeId());
}

ShapeGenerator::ParameterRange DiscGenerator::parameterRange(const QByteArray &name) const
{
    if (name == "diameter")
        return {ParameterUnit::Centimetres, MinimumLength, MaximumLength};
    if (name == "holeDiameter")
        return {ParameterUnit::Centimetres, 0.0, MaximumLength};
    if (name == "thickness")
        return {ParameterUnit::Centimetres, MinimumLength, MaximumLength};
    return ShapeGenerator::parameterRange(name);
}

} // namespace vantrel::host
