// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/generators/boxgenerator.h"

#include "hostapp/core/scene/generators/cartonsheet.h"
#include "hostapp/core/scene/meshbuilder.h"

namespace vantrel::host {

BoxGenerator::BoxGenerator(const char *typeId)
    : SizedShapeGenerator(typeId, DepthName::Depth, {20.f, 30.f, 10.f})
{}

MeshPtr BoxGenerator::build() const
{
    const float w = width(), h = height(), d = depth();
    MeshBuilder builder;
    builder.setSheet(artworkSheet());
    builder.setSides(cartonSides());
    builder.addBox(Vector3(-w / 2, -d / 2, 0.f), Vector3(w / 2, d / 2, h), true);
    return builder.build();
}

ArtworkSheet BoxGenerator::artworkSheet() const
{
    ArtworkSheet sheet;
    addCartonPanels(sheet, width(), height(), depth());
    return sheet;
}

std::unique_ptr<ShapeGenerator> BoxGenerator::create() const
{
    return std::make_unique<BoxGenerator>(GetTypeId());
}

} // namespace vantrel::host
