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
    setValue("cornerRadius", QVariant(limited("cornerRadius", cornerRadius)));
}

float DeviceGenerator::clampedRadius() const
{
    return std::min(cornerRadius(), 0.5f * std::min(width(), height()));
}

MeshBuilder::Outline DeviceGenerator::screenOutline() const
{
    const DeviceStyle &style = styleFor(s_styles, GetTypeId());
    const float w = width(), h = height();
    float screenHalfWidth = 0.5f * w * style.screenWidth / style.defaults.width;
    float screenHalfHeight = 0.5f * h * style.screenHeight / style.defaults.height;
    const float k = screenScale(screenHalfWidth, screenHalfHeight, w / 2, h / 2, clampedRadius());
    screenHalfWidth *= k;
    screenHalfHeight *= k;
    return rectangleOutline(
        -screenHalfWidth, h / 2 - screenHalfHeight, screenHalfWidth, h / 2 + screenHalfHeight);
}

MeshPtr DeviceGenerator::build() const
{
    const float t = depth();
    const float r = clampedRadius();
    // The cover glass sits half a millimetre below the bezel (less on a wafer-thin slab).
    const float recess = std::min(0.05f, 0.1f * t);

    const MeshBuilder::Outline front = frontOutline(MeshBuilder::CornerRadii{r, r, r, r}, 8);
    const MeshBuilder::Outline screen = screenOutline();
    const OutlineBounds glass = outlineBounds(screen);
    MeshBuilder builder;
    builder.setSheet(artworkSheet());
    const QString plain = QStringLiteral("plain");
    SheetSides sides = SheetSides::all(plain);
    sides.front = QStringLiteral("front");
    builder.setSides(sides);
    builder.beginPart(); // body: the bezel round the screen opening, then the rest of the slab
    builder.addPrismWithHole(front, screen, -t / 2, -t / 2 + recess);
    sides = SheetSides::all(plain);
    sides.back = QStringLiteral("back");
    builder.setSides(sides);
    builder.addPrism(front, -t / 2 + recess, t / 2);
    sides = SheetSides::all(plain);
    sides.front = QStringLiteral("screen");
    builder.setSides(sides);
    builder.beginPart(); // screen, filling half the opening's depth
    builder.addBox(Vector3(glass.xMin, -t / 2 + recess / 2, glass.zMin),
                   Vector3(glass.xMax, -t / 2 + recess, glass.zMax));
    return builder.build();
}

ArtworkSheet DeviceGenerator::artworkSheet() const
{
    // The body's front (the bezel, with the screen's opening cut out) and back, then the
    // screen's picture on its own; the slab's rim is plain.
    const float w = width(), r = clampedRadius();
    const MeshBuilder::Outline front = frontOutline(MeshBuilder::CornerRadii{r, r, r, r}, 8);
    const MeshBuilder::Outline screen = screenOutline();
    const OutlineBounds glass = outlineBounds(screen);
    ArtworkSheet sheet;
    sheet.addOutline(QStringLiteral("front"), 0.f, 0.f, front, false, {screen});
    sheet.addOutline(QStringLiteral("back"), w, 0.f, front, true);
    sheet.addRectangle(
        QStringLiteral("screen"), 2 * w, 0.f, glass.xMax - glass.xMin, glass.zMax - glass.zMin);
    sheet.addPlain(2 * w, glass.zMax - glass.zMin);
    return sheet;
}

std::unique_ptr<ShapeGenerator> DeviceGenerator::create() const
{
    return std::make_unique<DeviceGenerator>(GetTypeId());
}

ShapeGenerator::ParameterRange DeviceGenerator::parameterRange(const QByteArray &name) const
{
    if (name == "cornerRadius")
        return {ParameterUnit::Centimetres, 0.0, MaximumLength};
    return SizedShapeGenerator::parameterRange(name);
}

} // namespace vantrel::host
