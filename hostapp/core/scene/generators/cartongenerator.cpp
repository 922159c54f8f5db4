// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/generators/cartongenerator.h"

#include "hostapp/core/scene/generators/lengthlimits.h"

namespace vantrel::host {

CartonGenerator::CartonGenerator(const char *typeId, const Size &defaults)
    : ShapeGenerator(typeId)
{
    initValue("width", defaults.width);
    initValue("height", defaults.height);
    initValue("depth", defaults.depth);
}

void CartonGenerator::setWidth(float width)
{
    setValue("width", QVariant(qBound(MinimumLength, width, MaximumLength)));
}

void CartonGenerator::setHeight(float height)
{
    setValue("height", QVariant(qBound(MinimumLength, height, MaximumLength)));
}

void CartonGenerator::setDepth(float depth)
{
    setValue("depth", QVariant(qBound(MinimumLength, depth, MaximumLength)));
}

} // namespace vantrel::host
