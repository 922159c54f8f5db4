// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/generators/devicegenerator.h"

#include "hostapp/core/scene/generators/lengthlimits.h"
#include "hostapp/core/scene/generators/styletable.h"
#include "hostapp/core/scene/meshbuilder.h"

#include <algorithm>

namespace vantrel::host {

namespace {

struct DeviceStyle
{
    const char *typeId;
    SizedShapeGenerator::Size defaults;
    float cornerRadius;              // default, centimetres
    float screenWidth, screenHeight; // visible screen on the default size
};

// Screens: 9.7" 4:3, 3.5" 3:2 and 4" 16:9 panels.
const DeviceStyle s_styles[] = {
    {DeviceGenerator::s_iPadId, {18.57f, 24.12f, 0.88f}, 1.3f, 14.78f, 19.71f},
    {DeviceGenerator::s_iPhone4Id, {5.86f, 11.52f, 0.93f}, 0.85f, 4.94f, 7.41f},
    {DeviceGenerator::s_iPhone5Id, {5.86f, 12.38f, 0.76f}, 0.9f, 4.98f, 8.86f},
};

// The largest scale, at most 1, at which a centred screen of half-size (a, c) stays inside the
// body's front (half-size (halfWidth, halfHeight), corners of radius r) with a bezel all round.
float screenScale(float a, float c, float halfWidth, float halfHeight, float r)
{
    const auto fits = [=](float k) {
        const float x = k * a, z = k * c;
        if (x > 0.98f * halfWidth || z > 0.98f * halfHeight)
            return false;
        const float dx = x - (halfWidth - r), dz = z - (halfHeight - r);
        return dx <= 0.f || dz <= 0.f || dx * dx + dz * dz <= 0.9f * r * r;
    };
    if (fits(1.f))
        return 1.f;
    float inside = 0.f, outside = 1.f;
    for (int i = 0; i < 24; ++i) {
        const float k = 0.5f * (inside + outside);
        (fits(k) ? inside : outside) = k;
    }
    return inside;
}

} // namespace

DeviceGenerator::DeviceGenerator(const char *typeId)
    : SizedShapeGenerator(typeId, DepthName::Thickness, styleFor(s_styles, typeId).defaults)
{
    initValue("cornerRadius", styleFor(s_styles, typeId).cornerRadius);
}

void DeviceGenerator::setCornerRadius(float cornerRadius)
{
    setValue("cornerRadius", QVariant(qBound(0.f, cornerRadius, MaximumLength)));
}

MeshPtr DeviceGenerator::build() const
{
    const DeviceStyle &style = styleFor(s_styles, GetTypeId());
    const float w = width(), h = height(), t = depth();
    const float r = std::min(cornerRadius(), 0.5f * std::min(w, h));
    // The cover glass sits half a millimetre below the bezel (less on a wafer-thin slab).
    const float recess = std::min(0.05f, 0.1f * t);

    float screenHalfWidth = 0.5f * w * style.screenWidth / style.defaults.width;
    float screenHalfHeight = 0.5f * h * style.screenHeight / style.defaults.height;
    const float k = screenScale(screenHalfWidth, screenHalfHeight, w / 2, h / 2, r);
    screenHalfWidth *= k;
    screenHalfHeight *= k;

    const MeshBuilder::Outline front = frontOutline(MeshBuilder::CornerRadii{r, r, r, r}, 8);
    const MeshBuilder::Outline screen = rectangleOutline(
        -screenHalfWidth, h / 2 - screenHalfHeight, screenHalfWidth, h / 2 + screenHalfHeight);
    MeshBuilder builder;
    builder.beginPart(); // body: the bezel round the screen opening, then the rest of the slab
    builder.addPrismWithHole(front, screen, -t / 2, -t / 2 + recess);
    builder.addPrism(front, -t / 2 + recess, t / 2);
    builder.beginPart(); // screen, filling half the opening's depth
    builder.addBox(Vector3(-screenHalfWidth, -t / 2 + recess / 2, h / 2 - screenHalfHeight),
                   Vector3(screenHalfWidth, -t / 2 + recess, h / 2 + screenHalfHeight));
    return builder.build();
}

std::unique_ptr<ShapeGenerator> DeviceGenerator::create() const
{
    return std::make_unique<DeviceGenerator>(GetTypeId());
}

} // namespace vantrel::host
