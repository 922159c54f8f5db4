// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/generators/boxgenerator.h"

#include "hostapp/core/generators/lengthlimits.h"
#include "hostapp/core/meshbuilder.h"

namespace vantrel::host {

BoxGenerator::BoxGenerator(const char *typeId)
    : ShapeGenerator(typeId)
{
    initValue("width", 20.f);
    initValue("height", 30.f);
    initValue("depth", 10.f);
}

void BoxGenerator::setWidth(float width)
{
    setValue("width", QVariant(qBound(MinimumLength, width, MaximumLength)));
}

void BoxGenerator::setHeight(float height)
{
    setValue("height", QVariant(qBound(MinimumLength, height, MaximumLength)));
}

void BoxGenerator::setDepth(float depth)
{
    setValue("depth", QVariant(qBound(MinimumLength, depth, MaximumLength)));
}

MeshPtr BoxGenerator::build() const
{
    const float w = width(), h = height(), d = depth();
    MeshBuilder builder;
    builder.addBox(Vector3(-w / 2, -d / 2, 0.f), Vector3(w / 2, d / 2, h), true);
    return builder.build();
}

std::unique_ptr<ShapeGenerator> BoxGenerator::create() const
{
    return std::make_unique<BoxGenerator>(GetTypeId());
}

} // namespace vantrel::host
