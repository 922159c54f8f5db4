// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/generators/taggedboxgenerator.h"

#include "hostapp/core/scene/generators/lengthlimits.h"
#include "hostapp/core/scene/meshbuilder.h"

#include <algorithm>

namespace vantrel::host {

// The size of a boxed accessory on a peg hook.
TaggedBoxGenerator::TaggedBoxGenerator(const char *typeId)
    : SizedShapeGenerator(typeId, DepthName::Depth, {12.f, 18.f, 4.f})
{
    initValue("tagHeight", 4.f);
}

void TaggedBoxGenerator::setTagHeight(float tagHeight)
{
    setValue("tagHeight", QVariant(qBound(MinimumLength, tagHeight, MaximumLength)));
}

MeshPtr TaggedBoxGenerator::build() const
{
    const float w = width(), h = height(), d = depth(), tag = tagHeight();
    MeshBuilder builder;
    builder.addBox(Vector3(-w / 2, -d / 2, 0.f), Vector3(w / 2, d / 2, h), true);

    // Half a millimetre of card, glued to the back panel's top flap. The hole sits a little
    // above the tab's middle, where a peg hook takes the weight, and leaves card all round it.
    builder.beginPart();
    const float tabWidth = 0.5f * w;
    const float card = std::min(0.05f, 0.5f * d);
    const float smaller = std::min(tabWidth, tag);
    const float rounding = 0.25f * smaller;
    MeshBuilder::CornerRadii radii;
    radii.topLeft = radii.topRight = rounding;
    builder.addPrismWithHole(
        roundedRectangleOutline(-tabWidth / 2, h, tabWidth / 2, h + tag, radii, 6),
        circleOutline(0.f, h + 0.55f * tag, 0.2f * smaller, 32),
        d / 2 - card,
        d / 2);
    return builder.build();
}

std::unique_ptr<ShapeGenerator> TaggedBoxGenerator::create() const
{
    return std::make_unique<TaggedBoxGenerator>(GetTypeId());
}

} // namespace vantrel::host
