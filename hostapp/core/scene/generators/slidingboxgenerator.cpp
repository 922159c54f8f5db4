// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/generators/slidingboxgenerator.h"

#include "hostapp/core/scene/meshbuilder.h"

#include <algorithm>

namespace vantrel::host {

// A gift-size slide box: a little larger than a phone.
SlidingBoxGenerator::SlidingBoxGenerator(const char *typeId)
    : SizedShapeGenerator(typeId, DepthName::Depth, {16.f, 4.f, 10.f})
{
    initValue("slide", 0.f);
}

void SlidingBoxGenerator::setSlide(float slide)
{
    setValue("slide", QVariant(qBound(0.f, slide, 1.f)));
}

MeshPtr SlidingBoxGenerator::build() const
{
    const float w = width(), h = height(), d = depth();
    // Board of 1 mm, thinner on very small boxes so that the tray always keeps room inside.
    const float wall = std::min(0.1f, 0.1f * std::min({w, h, d}));
    MeshBuilder builder;

    builder.beginPart(); // the sleeve: front and back panels, floor and lid
    builder.addBox(Vector3(-w / 2, -d / 2, 0.f), Vector3(w / 2, -d / 2 + wall, h));
    builder.addBox(Vector3(-w / 2, d / 2 - wall, 0.f), Vector3(w / 2, d / 2, h));
    builder.addBox(Vector3(-w / 2, -d / 2 + wall, 0.f), Vector3(w / 2, d / 2 - wall, wall));
    builder.addBox(Vector3(-w / 2, -d / 2 + wall, h - wall), Vector3(w / 2, d / 2 - wall, h));

    // The tray fills the sleeve's opening exactly and has the sleeve's length.
    builder.beginPart();
    const float x0 = -w / 2 + slide() * w, x1 = x0 + w;
    const float y0 = -d / 2 + wall, y1 = d / 2 - wall;
    const float z0 = wall, z1 = h - wall;
    builder.addBox(Vector3(x0, y0, z0), Vector3(x1, y1, z0 + wall));        // bottom
    builder.addBox(Vector3(x0, y0, z0 + wall), Vector3(x1, y0 + wall, z1)); // front
    builder.addBox(Vector3(x0, y1 - wall, z0 + wall), Vector3(x1, y1, z1)); // back
    builder.addBox(Vector3(x0, y0 + wall, z0 + wall), Vector3(x0 + wall, y1 - wall, z1));
    builder.addBox(Vector3(x1 - wall, y0 + wall, z0 + wall), Vector3(x1, y1 - wall, z1));
    return builder.build();
}

std::unique_ptr<ShapeGenerator> SlidingBoxGenerator::create() const
{
    return std::make_unique<SlidingBoxGenerator>(GetTypeId());
}

} // namespace vantrel::host
