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
    setValue("diameter", QVariant(qBound(MinimumLength, diameter, MaximumLength)));
}

void DiscGenerator::setHoleDiameter(float holeDiameter)
{
    setValue("holeDiameter", QVariant(qBound(0.f, holeDiameter, MaximumLength)));
}

void DiscGenerator::setThickness(float thickness)
{
    setValue("thickness", QVariant(qBound(MinimumLength, thickness, MaximumLength)));
}

MeshPtr DiscGenerator::build() const
{
    const float radius = diameter() / 2, t = thickness();
    const float holeRadius = std::min(holeDiameter() / 2, 0.9f * radius);
    // 96 sides: the polygon's area is within 0.1 % of the circle's and its outline within
    // 0.05 % of the radius, finer than a pixel at any sensible zoom.
    MeshBuilder builder;
    builder.addCylinder(0.f, radius, radius, holeRadius, -t / 2, t / 2, 96);
    return builder.build();
}

std::unique_ptr<ShapeGenerator> DiscGenerator::create() const
{
    return std::make_unique<DiscGenerator>(GetTypeId());
}

} // namespace vantrel::host
