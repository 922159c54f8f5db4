// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/generators/imagegenerator.h"

#include "hostapp/core/scene/meshbuilder.h"

namespace vantrel::host {

// A 20 x 15 cm photo print on half a millimetre of card.
ImageGenerator::ImageGenerator(const char *typeId)
    : SizedShapeGenerator(typeId, DepthName::Thickness, {20.f, 15.f, 0.05f})
{
    initValue("bend", 0.f);
}

void ImageGenerator::setBend(float bend)
{
    setValue("bend", QVariant(qBound(-180.f, bend, 180.f)));
}

MeshPtr ImageGenerator::build() const
{
    MeshBuilder builder;
    builder.addCurvedSheet(width(), height(), depth(), bend());
    return builder.build();
}

std::unique_ptr<ShapeGenerator> ImageGenerator::create() const
{
    return std::make_unique<ImageGenerator>(GetTypeId());
}

} // namespace vantrel::host
