// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/generators/canvasgenerator.h"

#include "hostapp/core/scene/meshbuilder.h"

#include <algorithm>

namespace vantrel::host {

CanvasGenerator::CanvasGenerator(const char *typeId)
    : SizedShapeGenerator(typeId, DepthName::Depth, {40.f, 30.f, 2.f})
{}

MeshPtr CanvasGenerator::build() const
{
    const float w = width(), h = height(), d = depth();
    const float sheet = std::min(0.05f, 0.25f * d); // half a millimetre of primed cotton
    // Stretcher bars are 4 cm wide, narrower on small canvases so that the back stays open.
    const float bar = std::min({4.f, 0.25f * w, 0.25f * h});

    MeshBuilder builder;
    builder.beginPart();
    builder.addBox(Vector3(-w / 2, -d / 2, 0.f), Vector3(w / 2, -d / 2 + sheet, h));
    builder.beginPart();
    builder.addPrismWithHole(rectangleOutline(-w / 2, 0.f, w / 2, h),
                             rectangleOutline(-w / 2 + bar, bar, w / 2 - bar, h - bar),
                             -d / 2 + sheet,
                             d / 2);
    return builder.build();
}

std::unique_ptr<ShapeGenerator> CanvasGenerator::create() const
{
    return std::make_unique<CanvasGenerator>(GetTypeId());
}

} // namespace vantrel::host
