// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/generators/taggedboxgenerator.h"

#include "hostapp/core/scene/generators/cartonsheet.h"
#include "hostapp/core/scene/generators/lengthlimits.h"
#include "hostapp/core/scene/meshbuilder.h"

#include <algorithm>

namespace vantrel::host {

namespace {

// The tab is half the box's width and rounded at the top. The hole sits a little above the
// tab's middle, where a peg hook takes the weight, and leaves card all round it.
Outline tabOutline(float w, float h, float tag)
{
    const float tabWidth = 0.5f * w;
    const float rounding = 0.25f * std::min(tabWidth, tag);
    CornerRadii radii;
    radii.topLeft = radii.topRight = rounding;
    return roundedRectangleOutline(-tabWidth / 2, h, tabWidth / 2, h + tag, radii, 6);
}

Outline tabHole(float w, float h, float tag)
{
    return circleOutline(0.f, h + 0.55f * tag, 0.2f * std::min(0.5f * w, tag), 32);
}

} // namespace

// The size of a boxed accessory on a peg hook.
TaggedBoxGenerator::TaggedBoxGenerator(const char *typeId)
    : SizedShapeGenerator(typeId, DepthName::Depth, {12.f, 18.f, 4.f})
{
    initValue("tagHeight", 4.f);
}

void TaggedBoxGenerator::setTagHeight(float tagHeight)
{
    setValue("tagHeight", QVariant(limited("tagHeight", tagHeight)));
}

MeshPtr TaggedBoxGenerator::build() const
{
    const float w = width(), h = height(), d = depth(), tag = tagHeight();
    MeshBuilder builder;
    builder.setSheet(artworkSheet());
    builder.setSides(cartonSides());
    builder.addBox(Vector3(-w / 2, -d / 2, 0.f), Vector3(w / 2, d / 2, h), true);

    // Half a millimetre of card, glued to the back panel's top flap.
    builder.beginPart();
    const float card = std::min(0.05f, 0.5f * d);
    SheetSides sides = SheetSides::all(QStringLiteral("plain"));
    sides.front = QStringLiteral("tag front");
    sides.back = QStringLiteral("tag back");
    builder.setSides(sides);
    builder.addPrismWithHole(tabOutline(w, h, tag), tabHole(w, h, tag), d / 2 - card, d / 2);
    return builder.build();
}

ArtworkSheet TaggedBoxGenerator::artworkSheet() const
{
    // The carton's cross, with the tag's back standing on the back panel as it does on the box
    // seen from behind, and its front below the cross.
    const float w = width(), h = height(), d = depth(), tag = tagHeight();
    ArtworkSheet sheet;
    addCartonPanels(sheet, w, h, d);
    if (tag > d)
        sheet.shiftDown(tag - d); // room above the back panel
    const float top = std::max(tag, d) - tag;
    const float tabX = 2 * d + w + 0.25f * w;
    sheet.addOutline(
        QStringLiteral("tag back"), tabX, top, tabOutline(w, h, tag), true, {tabHole(w, h, tag)});
    const float below = sheet.height();
    sheet.addOutline(QStringLiteral("tag front"),
                     tabX,
                     below,
                     tabOutline(w, h, tag),
                     false,
                     {tabHole(w, h, tag)});
    sheet.addPlain(tabX + 0.5f * w, below);
    return sheet;
}

std::unique_ptr<ShapeGenerator> TaggedBoxGenerator::create() const
{
    return std::make_unique<TaggedBoxGenerator>(GetTypeId());
}

ShapeGenerator::ParameterRange TaggedBoxGenerator::parameterRange(const QByteArray &name) const
{
    if (name == "tagHeight")
        return {ParameterUnit::Centimetres, MinimumLength, MaximumLength};
    return SizedShapeGenerator::parameterRange(name);
}

} // namespace vantrel::host
