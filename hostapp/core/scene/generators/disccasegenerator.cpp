// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/generators/disccasegenerator.h"

#include "hostapp/core/scene/generators/styletable.h"
#include "hostapp/core/scene/meshbuilder.h"

namespace vantrel::host {

namespace {

struct CaseStyle
{
    const char *typeId;
    SizedShapeGenerator::Size defaults;
    float coverShare;   // the cover's share of the closed thickness
    float cornerRadius; // of the case seen from the front, centimetres
};

const CaseStyle s_styles[] = {
    {DiscCaseGenerator::s_dvdId, {13.5f, 19.f, 1.4f}, 0.5f, 0.5f},
    {DiscCaseGenerator::s_digipakDvdId, {13.5f, 19.f, 1.f}, 0.2f, 0.f},
    {DiscCaseGenerator::s_digipakCdId, {14.2f, 12.5f, 0.8f}, 0.2f, 0.f},
    {DiscCaseGenerator::s_slimCdId, {14.2f, 12.5f, 0.5f}, 0.5f, 0.1f},
    {DiscCaseGenerator::s_bluRayId, {12.8f, 14.8f, 1.2f}, 0.5f, 0.6f},
};

} // namespace

DiscCaseGenerator::DiscCaseGenerator(const char *typeId)
    : SizedShapeGenerator(typeId, DepthName::Thickness, styleFor(s_styles, typeId).defaults)
{
    initValue("coverAngle", 0.f);
}

void DiscCaseGenerator::setCoverAngle(float coverAngle)
{
    setValue("coverAngle", QVariant(limited("coverAngle", coverAngle)));
}

MeshPtr DiscCaseGenerator::build() const
{
    const CaseStyle &style = styleFor(s_styles, GetTypeId());
    const float w = width(), t = depth();
    const float cover = style.coverShare * t;
    const float r = style.cornerRadius; // the outline keeps it within small cases
    const MeshBuilder::Outline front = frontOutline(MeshBuilder::CornerRadii{r, r, r, r}, 6);

    const float h = height();
    MeshBuilder builder;
    builder.setSheet(artworkSheet());
    // The spine is printed on the flat of both halves' left walls, between the corners.
    const auto printSpine = [&](const MeshBuilder::Mark &from) {
        builder.projectSince(from,
                             QStringLiteral("spine"),
                             Vector3(-w / 2, t / 2, h - r),
                             Vector3(0.f, -t, 0.f),
                             Vector3(0.f, 0.f, -(h - 2 * r)));
    };
    const QString plain = QStringLiteral("plain");
    builder.setSides(
        {QStringLiteral("front"), QStringLiteral("booklet"), plain, plain, plain, plain, plain});
    builder.beginPart(); // cover
    const MeshBuilder::Mark coverStart = builder.mark();
    builder.addPrism(front, -t / 2, -t / 2 + cover);
    printSpine(coverStart);
    // Hinged on the outer edge, the cover clears the back half at every angle.
    if (coverAngle() > 0.f)
        builder.transformSince(coverStart,
                               MeshBuilder::hingeRotation(-w / 2, -t / 2, coverAngle()));
    builder.setSides(
        {QStringLiteral("tray"), QStringLiteral("back"), plain, plain, plain, plain, plain});
    builder.beginPart(); // back half
    const MeshBuilder::Mark backStart = builder.mark();
    builder.addPrism(front, -t / 2 + cover, t / 2);
    printSpine(backStart);
    return builder.build();
}

ArtworkSheet DiscCaseGenerator::artworkSheet() const
{
    // The inlay as printed, back | spine | front; below it the booklet (the cover's inside,
    // read when the cover is open) and the tray the disc lies on. The spine is the flat of the
    // case's side, between its rounded corners.
    const CaseStyle &style = styleFor(s_styles, GetTypeId());
    const float w = width(), h = height(), t = depth();
    const float r = style.cornerRadius;
    const MeshBuilder::Outline front = frontOutline(MeshBuilder::CornerRadii{r, r, r, r}, 6);
    ArtworkSheet sheet;
    sheet.addOutline(QStringLiteral("back"), 0.f, 0.f, front, true);
    sheet.addRectangle(QStringLiteral("spine"), w, r, t, h - 2 * r);
    sheet.addOutline(QStringLiteral("front"), w + t, 0.f, front);
    sheet.addOutline(QStringLiteral("booklet"), 0.f, h, front, true);
    sheet.addOutline(QStringLiteral("tray"), w + t, h, front);
    sheet.addPlain(2 * w + t, 0.f);
    return sheet;
}

std::unique_ptr<ShapeGenerator> DiscCaseGenerator::create() const
{
    return std::make_unique<DiscCaseGenerator>(GetTypeId());
}

ShapeGenerator::ParameterRange DiscCaseGenerator::parameterRange(const QByteArray &name) const
{
    if (name == "coverAngle")
        return {ParameterUnit::Degrees, 0.0, 180.0};
    return SizedShapeGenerator::parameterRange(name);
}

} // namespace vantrel::host
