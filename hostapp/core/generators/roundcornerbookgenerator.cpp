// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/generators/roundcornerbookgenerator.h"

#include "hostapp/core/generators/lengthlimits.h"
#include "hostapp/core/meshbuilder.h"

#include <algorithm>

namespace vantrel::host {

RoundCornerBookGenerator::RoundCornerBookGenerator(const char *typeId)
    : ShapeGenerator(typeId)
{
    // A trade paperback (12.9 x 19.8 cm) with 6 mm corners.
    initValue("width", 12.9f);
    initValue("height", 19.8f);
    initValue("thickness", 2.5f);
    initValue("cornerRadius", 0.6f);
}

void RoundCornerBookGenerator::setWidth(float width)
{
    setValue("width", QVariant(qBound(MinimumLength, width, MaximumLength)));
}

void RoundCornerBookGenerator::setHeight(float height)
{
    setValue("height", QVariant(qBound(MinimumLength, height, MaximumLength)));
}

void RoundCornerBookGenerator::setThickness(float thickness)
{
    setValue("thickness", QVariant(qBound(MinimumLength, thickness, MaximumLength)));
}

void RoundCornerBookGenerator::setCornerRadius(float cornerRadius)
{
    setValue("cornerRadius", QVariant(qBound(0.f, cornerRadius, MaximumLength)));
}

MeshPtr RoundCornerBookGenerator::build() const
{
    const float w = width(), h = height(), t = thickness();
    // 300 g/m² card, thinner only where the book is too small to hold it.
    const float cover = std::min({0.03f, 0.25f * t, 0.25f * w});
    MeshBuilder::CornerRadii radii;
    radii.bottomRight = radii.topRight = cornerRadius(); // the fore-edge is at +x
    const int segments = 8;

    MeshBuilder builder;
    const MeshBuilder::Outline page
        = MeshBuilder::roundedRectangle(-w / 2, 0.f, w / 2, h, radii, segments);
    builder.beginPart(); // front cover
    builder.addPrism(page, -t / 2, -t / 2 + cover);
    builder.beginPart(); // back cover
    builder.addPrism(page, t / 2 - cover, t / 2);
    builder.beginPart(); // spine
    builder.addBox(Vector3(-w / 2, -t / 2 + cover, 0.f), Vector3(-w / 2 + cover, t / 2 - cover, h));
    builder.beginPart(); // page block, cut together with the covers
    builder.addPrism(MeshBuilder::roundedRectangle(-w / 2 + cover, 0.f, w / 2, h, radii, segments),
                     -t / 2 + cover,
                     t / 2 - cover);
    return builder.build();
}

std::unique_ptr<ShapeGenerator> RoundCornerBookGenerator::create() const
{
    return std::make_unique<RoundCornerBookGenerator>(GetTypeId());
}

} // namespace vantrel::host
