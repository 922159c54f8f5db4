// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/generators/slidingboxgenerator.h"

#include "hostapp/core/scene/meshbuilder.h"

#include <algorithm>

namespace vantrel::host {

namespace {

// Board of 1 mm, thinner on very small boxes so that the tray always keeps room inside.
float wallOf(float w, float h, float d)
{
    return std::min(0.1f, 0.1f * std::min({w, h, d}));
}

} // namespace

// A gift-size slide box: a little larger than a phone.
SlidingBoxGenerator::SlidingBoxGenerator(const char *typeId)
    : SizedShapeGenerator(typeId, DepthName::Depth, {16.f, 4.f, 10.f})
{
    initValue("slide", 0.f);
}

void SlidingBoxGenerator::setSlide(float slide)
{
    setValue("slide", QVariant(limited("slide", slide)));
}

MeshPtr SlidingBoxGenerator::build() const
{
    const float w = width(), h = height(), d = depth();
    const float wall = wallOf(w, h, d);
    MeshBuilder builder;
    builder.setSheet(artworkSheet());
    const QString plain = QStringLiteral("plain");
    // Prints one outer side of the next board, and leaves its others plain.
    const auto print = [&](QString SheetSides::*side, const char *face) {
        SheetSides sides = SheetSides::all(plain);
        sides.*side = QString::fromLatin1(face);
        builder.setSides(sides);
    };

    builder.beginPart(); // the sleeve: front and back panels, floor and lid
    print(&SheetSides::front, "front");
    builder.addBox(Vector3(-w / 2, -d / 2, 0.f), Vector3(w / 2, -d / 2 + wall, h));
    print(&SheetSides::back, "back");
    builder.addBox(Vector3(-w / 2, d / 2 - wall, 0.f), Vector3(w / 2, d / 2, h));
    print(&SheetSides::bottom, "bottom");
    builder.addBox(Vector3(-w / 2, -d / 2 + wall, 0.f), Vector3(w / 2, d / 2 - wall, wall));
    print(&SheetSides::top, "top");
    builder.addBox(Vector3(-w / 2, -d / 2 + wall, h - wall), Vector3(w / 2, d / 2 - wall, h));

    // The tray fills the sleeve's opening exactly and has the sleeve's length; its two end
    // panels show at the openings.
    builder.beginPart();
    builder.setSides(SheetSides::all(plain));
    const float x0 = -w / 2 + slide() * w, x1 = x0 + w;
    const float y0 = -d / 2 + wall, y1 = d / 2 - wall;
    const float z0 = wall, z1 = h - wall;
    builder.addBox(Vector3(x0, y0, z0), Vector3(x1, y1, z0 + wall));        // bottom
    builder.addBox(Vector3(x0, y0, z0 + wall), Vector3(x1, y0 + wall, z1)); // front
    builder.addBox(Vector3(x0, y1 - wall, z0 + wall), Vector3(x1, y1, z1)); // back
    print(&SheetSides::left, "tray left");
    builder.addBox(Vector3(x0, y0 + wall, z0 + wall), Vector3(x0 + wall, y1 - wall, z1));
    print(&SheetSides::right, "tray right");
    builder.addBox(Vector3(x1 - wall, y0 + wall, z0 + wall), Vector3(x1, y1 - wall, z1));
    return builder.build();
}

ArtworkSheet SlidingBoxGenerator::artworkSheet() const
{
    // The sleeve's band top | front | bottom runs down the first column, each panel meeting its
    // neighbour along their shared fold; the back and the tray's end panels stand on their own.
    const float w = width(), h = height(), d = depth();
    const float wall = wallOf(w, h, d);
    const float lid = d - 2 * wall;
    const float endWidth = d - 4 * wall, endHeight = h - 3 * wall;
    ArtworkSheet sheet;
    sheet.addRectangle(QStringLiteral("top"), 0.f, 0.f, w, lid);
    sheet.addRectangle(QStringLiteral("front"), 0.f, lid, w, h);
    sheet.addRectangle(QStringLiteral("bottom"), 0.f, lid + h, w, lid);
    sheet.addRectangle(QStringLiteral("back"), 0.f, 2 * lid + h, w, h);
    sheet.addRectangle(QStringLiteral("tray left"), w, 0.f, endWidth, endHeight);
    sheet.addRectangle(QStringLiteral("tray right"), w + endWidth, 0.f, endWidth, endHeight);
    sheet.addPlain(w, endHeight);
    return sheet;
}

std::unique_ptr<ShapeGenerator> SlidingBoxGenerator::create() const
{
    return std::make_unique<SlidingBoxGenerator>(GetTypeId());
}

ShapeGenerator::ParameterRange SlidingBoxGenerator::parameterRange(const QByteArray &name) const
{
    if (name == "slide")
        return {ParameterUnit::None, 0.0, 1.0};
    return SizedShapeGenerator::parameterRange(name);
}

} // namespace vantrel::host
