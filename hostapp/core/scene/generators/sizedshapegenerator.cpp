// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/generators/sizedshapegenerator.h"

#include "hostapp/core/scene/generators/lengthlimits.h"

namespace vantrel::host {

SizedShapeGenerator::SizedShapeGenerator(const char *typeId,
                                         DepthName depthName,
                                         const Size &defaults)
    : ShapeGenerator(typeId)
    , m_depthName(depthName)
{
    initValue("width", defaults.width);
    initValue("height", defaults.height);
    initValue(depthKey(), defaults.depth);
}

const char *SizedShapeGenerator::depthKey() const
{
    return m_depthName == DepthName::Depth ? "depth" : "thickness";
}

void SizedShapeGenerator::setWidth(float width)
{
    setValue("width", QVariant(limited("width", width)));
}

void SizedShapeGenerator::setHeight(float height)
{
    setValue("height", QVariant(limited("height", height)));
}

void SizedShapeGenerator::setDepth(float depth)
{
    setValue(depthKey(), QVariant(limited(depthKey(), depth)));
}

MeshBuilder::Outline SizedShapeGenerator::frontOutline(const MeshBuilder::CornerRadii &radii,
                                                       int segmentsPerCorner) const
{
    const float w = width();
    return roundedRectangleOutline(-w / 2, 0.f, w / 2, height(), radii, segmentsPerCorner);
}

ShapeGenerator::ParameterRange SizedShapeGenerator::parameterRange(const QByteArray &name) const
{
    if (name == "width" || name == "height" || name == depthKey())
        return {ParameterUnit::Centimetres, MinimumLength, MaximumLength};
    return ShapeGenerator::parameterRange(name);
}

} // namespace vantrel::host
