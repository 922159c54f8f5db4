// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/generators/imagegenerator.h"

#include "hostapp/core/generators/lengthlimits.h"
#include "hostapp/core/meshbuilder.h"

namespace vantrel::host {

ImageGenerator::ImageGenerator(const char *typeId)
    : ShapeGenerator(typeId)
{
    // A 20 x 15 cm photo print on half a millimetre of card.
    initValue("width", 20.f);
    initValue("height", 15.f);
    initValue("thickness", 0.05f);
    initValue("bend", 0.f);
}

void ImageGenerator::setWidth(float width)
{
    setValue("width", QVariant(qBound(MinimumLength, width, MaximumLength)));
}

void ImageGenerator::setHeight(float height)
{
    setValue("height", QVariant(qBound(MinimumLength, height, MaximumLength)));
}

void ImageGenerator::setThickness(float thickness)
{
    setValue("thickness", QVariant(qBound(MinimumLength, thickness, MaximumLength)));
}

void ImageGenerator::setBend(float bend)
{
    setValue("bend", QVariant(qBound(-180.f, bend, 180.f)));
}

MeshPtr ImageGenerator::build() const
{
    MeshBuilder builder;
    builder.addCurvedSheet(width(), height(), thickness(), bend());
    return builder.build();
}

std::unique_ptr<ShapeGenerator> ImageGenerator::create() const
{
    return std::make_unique<ImageGenerator>(GetTypeId());
}

} // namespace vantrel::host
