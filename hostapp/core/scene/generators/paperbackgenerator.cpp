// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/generators/paperbackgenerator.h"

#include "hostapp/core/scene/generators/softcovercard.h"
#include "hostapp/core/scene/generators/styletable.h"
#include "hostapp/core/scene/meshbuilder.h"

namespace vantrel::host {

namespace {

struct PaperbackStyle
{
    const char *typeId;
    SizedShapeGenerator::Size defaults;
    float coverHeight; // of the front cover, as a fraction of the height
};

// A trade paperback and a mass-market stepback.
const PaperbackStyle s_styles[] = {
    {PaperbackGenerator::s_paperbackId, {12.9f, 19.8f, 2.f}, 1.f},
    {PaperbackGenerator::s_stepbackId, {10.8f, 17.5f, 2.5f}, 0.95f},
};

// Front cover angle in degrees for each value of type.
const float s_coverAngles[] = {0.f, 30.f, 180.f};

} // namespace

PaperbackGenerator::PaperbackGenerator(const char *typeId)
    : SizedShapeGenerator(typeId, DepthName::Thickness, styleFor(s_styles, typeId).defaults)
{
    initValue("type", 0);
}

void PaperbackGenerator::setType(int type)
{
    setValue("type", QVariant(int(limited("type", float(type)))));
}

MeshPtr PaperbackGenerator::build() const
{
    const PaperbackStyle &style = styleFor(s_styles, GetTypeId());
    const float w = width(), h = height(), t = depth();
    const float cover = softCoverCard(w, t);

    MeshBuilder builder;
    builder.setSheet(artworkSheet());
    const QString plain = QStringLiteral("plain");
    SheetSides sides = SheetSides::all(plain);
    sides.front = QStringLiteral("front");
    builder.setSides(sides);
    builder.beginPart(); // front cover
    const MeshBuilder::Mark frontStart = builder.mark();
    builder.addBox(Vector3(-w / 2, -t / 2, 0.f),
                   Vector3(w / 2, -t / 2 + cover, style.coverHeight * h));
    // The cover bends along the spine's outer front edge and swings towards the viewer (-y),
    // clear of the pages at every angle.
    const float angle = s_coverAngles[qBound(0, type(), 2)];
    if (angle != 0.f)
        builder.transformSince(frontStart, MeshBuilder::hingeRotation(-w / 2, -t / 2, angle));

    sides = SheetSides::all(plain);
    sides.back = QStringLiteral("back");
    builder.setSides(sides);
    builder.beginPart(); // back cover
    builder.addBox(Vector3(-w / 2, t / 2 - cover, 0.f), Vector3(w / 2, t / 2, h));
    sides = SheetSides::all(plain);
    sides.left = QStringLiteral("spine");
    builder.setSides(sides);
    builder.beginPart(); // spine
    builder.addBox(Vector3(-w / 2, -t / 2 + cover, 0.f), Vector3(-w / 2 + cover, t / 2 - cover, h));
    sides = SheetSides::all(plain);
    sides.right = QStringLiteral("fore edge");
    sides.top = QStringLiteral("head");
    sides.bottom = QStringLiteral("tail");
    builder.setSides(sides);
    builder.beginPart(); // page block
    builder.addBox(Vector3(-w / 2 + cover, -t / 2 + cover, 0.f), Vector3(w / 2, t / 2 - cover, h));
    return builder.build();
}

ArtworkSheet PaperbackGenerator::artworkSheet() const
{
    // The cover as printed, back | spine | front, the fronts' lower edges in line (a stepback's
    // front is shorter than the book), and the page block's edges below. The spine is the
    // width between the cover cards; their own cut edges are plain.
    const PaperbackStyle &style = styleFor(s_styles, GetTypeId());
    const float w = width(), h = height(), t = depth();
    const float cover = softCoverCard(w, t);
    const float spine = t - 2 * cover, frontHeight = style.coverHeight * h;
    ArtworkSheet sheet;
    sheet.addRectangle(QStringLiteral("back"), 0.f, 0.f, w, h);
    sheet.addRectangle(QStringLiteral("spine"), w, 0.f, spine, h);
    sheet.addRectangle(QStringLiteral("front"), w + spine, h - frontHeight, w, frontHeight);
    const float pageWidth = w - cover;
    sheet.addRectangle(QStringLiteral("fore edge"), 0.f, h, spine, h);
    sheet.addRectangle(QStringLiteral("head"), spine, h, pageWidth, spine);
    sheet.addRectangle(QStringLiteral("tail"), spine + pageWidth, h, pageWidth, spine);
    sheet.addPlain(spine + 2 * pageWidth, h);
    return sheet;
}

std::unique_ptr<ShapeGenerator> PaperbackGenerator::create() const
{
    return std::make_unique<PaperbackGenerator>(GetTypeId());
}

ShapeGenerator::ParameterRange PaperbackGenerator::parameterRange(const QByteArray &name) const
{
    if (name == "type")
        return {ParameterUnit::Code, 0.0, 2.0};
    return SizedShapeGenerator::parameterRange(name);
}

} // namespace vantrel::host
