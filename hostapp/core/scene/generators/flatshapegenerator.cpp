// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/generators/flatshapegenerator.h"

#include "hostapp/core/scene/generators/lengthlimits.h"

namespace vantrel::host {

FlatShapeGenerator::FlatShapeGenerator(const char *typeId, const Size &defaults)
    : ShapeGenerator(typeId)
{
    initValue("width", defaults.width);
    initValue("height", defaults.height);
    initValue("thickness", defaults.thickness);
}

void FlatShapeGenerator::setWidth(float width)
{
    setValue("width", QVariant(qBound(MinimumLength, width, MaximumLength)));
}

void FlatShapeGenerator::setHeight(float height)
{
    setValue("height", QVariant(qBound(MinimumLength, height, MaximumLength)));
}

void FlatShapeGenerator::setThickness(float thickness)
{
    setValue("thickness", QVariant(qBound(MinimumLength, thickness, MaximumLength)));
}

MeshBuilder::Outline FlatShapeGenerator::frontOutline(const MeshBuilder::CornerRadii &radii,
                                                      int segmentsPerCorner) const
{
    const float w = width();
    return roundedRectangleOutline(-w / 2, 0.f, w / 2, height(), radii, segmentsPerCorner);
}

} // namespace vantrel::host
