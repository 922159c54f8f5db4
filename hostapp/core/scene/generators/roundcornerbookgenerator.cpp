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
    setValue("cornerRadius", QVariant(qBound(0.f, cornerRadius, MaximumLength)));
}

MeshPtr RoundCornerBookGenerator::build() const
{
    const float w = width(), h = height(), t = depth();
    const float cover = softCoverCard(w, t);
    MeshBuilder::CornerRadii radii;
    radii.bottomRight = radii.topRight = cornerRadius(); // the fore-edge is at +x
    const int segments = 8;

    MeshBuilder builder;
    const MeshBuilder::Outline page = frontOutline(radii, segments);
    builder.beginPart(); // front cover
    builder.addPrism(page, -t / 2, -t / 2 + cover);
    builder.beginPart(); // back cover
    builder.addPrism(page, t / 2 - cover, t / 2);
    builder.beginPart(); // spine
    builder.addBox(Vector3(-w / 2, -t / 2 + cover, 0.f), Vector3(-w / 2 + cover, t / 2 - cover, h));
    builder.beginPart(); // page block, cut together with the covers
    builder.addPrism(roundedRectangleOutline(-w / 2 + cover, 0.f, w / 2, h, radii, segments),
                     -t / 2 + cover,
                     t / 2 - cover);
    return builder.build();
}

std::unique_ptr<ShapeGenerator> RoundCornerBookGenerator::create() const
{
    return std::make_unique<RoundCornerBookGenerator>(GetTypeId());
}

} // namespace vantrel::host
