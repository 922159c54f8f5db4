// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/generators/paperbackgenerator.h"

#include "hostapp/core/generators/lengthlimits.h"
#include "hostapp/core/meshbuilder.h"

#include <algorithm>
#include <cstring>

namespace vantrel::host {

namespace {

struct PaperbackStyle
{
    const char *typeId;
    float width, height, thickness; // defaults, centimetres
    float coverHeight;              // of the front cover, as a fraction of the height
};

// A trade paperback and a mass-market stepback.
const PaperbackStyle s_styles[] = {
    {PaperbackGenerator::s_paperbackId, 12.9f, 19.8f, 2.f, 1.f},
    {PaperbackGenerator::s_stepbackId, 10.8f, 17.5f, 2.5f, 0.95f},
};

const PaperbackStyle &styleFor(const char *typeId)
{
    for (const PaperbackStyle &style : s_styles) {
        if (std::strcmp(style.typeId, typeId) == 0)
            return style;
    }
    return s_styles[0];
}

// Front cover angle in degrees for each value of type.
const float s_coverAngles[] = {0.f, 30.f, 180.f};

} // namespace

PaperbackGenerator::PaperbackGenerator(const char *typeId)
    : ShapeGenerator(typeId)
{
    const PaperbackStyle &style = styleFor(typeId);
    initValue("width", style.width);
    initValue("height", style.height);
    initValue("thickness", style.thickness);
    initValue("type", 0);
}

void PaperbackGenerator::setWidth(float width)
{
    setValue("width", QVariant(qBound(MinimumLength, width, MaximumLength)));
}

void PaperbackGenerator::setHeight(float height)
{
    setValue("height", QVariant(qBound(MinimumLength, height, MaximumLength)));
}

void PaperbackGenerator::setThickness(float thickness)
{
    setValue("thickness", QVariant(qBound(MinimumLength, thickness, MaximumLength)));
}

void PaperbackGenerator::setType(int type)
{
    setValue("type", QVariant(qBound(0, type, 2)));
}

MeshPtr PaperbackGenerator::build() const
{
    const PaperbackStyle &style = styleFor(GetTypeId());
    const float w = width(), h = height(), t = thickness();
    // 300 g/m² card, thinner only where the book is too small to hold it.
    const float cover = std::min({0.03f, 0.25f * t, 0.25f * w});

    MeshBuilder builder;
    builder.beginPart(); // front cover
    const MeshBuilder::Mark frontStart = builder.mark();
    builder.addBox(Vector3(-w / 2, -t / 2, 0.f),
                   Vector3(w / 2, -t / 2 + cover, style.coverHeight * h));
    // The cover bends along the spine's outer front edge and swings towards the viewer (-y),
    // clear of the pages at every angle.
    const float angle = s_coverAngles[qBound(0, type(), 2)];
    if (angle != 0.f)
        builder.transformSince(frontStart, MeshBuilder::hingeRotation(-w / 2, -t / 2, angle));

    builder.beginPart(); // back cover
    builder.addBox(Vector3(-w / 2, t / 2 - cover, 0.f), Vector3(w / 2, t / 2, h));
    builder.beginPart(); // spine
    builder.addBox(Vector3(-w / 2, -t / 2 + cover, 0.f), Vector3(-w / 2 + cover, t / 2 - cover, h));
    builder.beginPart(); // page block
    builder.addBox(Vector3(-w / 2 + cover, -t / 2 + cover, 0.f), Vector3(w / 2, t / 2 - cover, h));
    return builder.build();
}

std::unique_ptr<ShapeGenerator> PaperbackGenerator::create() const
{
    return std::make_unique<PaperbackGenerator>(GetTypeId());
}

} // namespace vantrel::host
