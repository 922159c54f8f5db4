// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/generators/bookgenerator.h"

#include "hostapp/core/scene/generators/styletable.h"
#include "hostapp/core/scene/meshbuilder.h"

#include <algorithm>
#include <cmath>

namespace vantrel::host {

namespace {

struct BookStyle
{
    const char *typeId;
    SizedShapeGenerator::Size defaults;
    float board;    // cover thickness, centimetres
    float overhang; // of the covers past the page block, centimetres
};

// A royal octavo hard cover and an A4 magazine.
const BookStyle s_styles[] = {
    {BookGenerator::s_hardCoverId, {15.6f, 23.4f, 3.f}, 0.25f, 0.3f},
    {BookGenerator::s_magazineId, {21.f, 29.7f, 0.4f}, 0.02f, 0.f},
};

} // namespace

BookGenerator::BookGenerator(const char *typeId)
    : SizedShapeGenerator(typeId, DepthName::Thickness, styleFor(s_styles, typeId).defaults)
{}

MeshPtr BookGenerator::build() const
{
    const BookStyle &style = styleFor(s_styles, GetTypeId());
    const float w = width(), h = height(), t = depth();
    // Boards never take more than half the thickness, nor the overhang a tenth of the page.
    const float board = std::min(style.board, 0.25f * t);
    const float overhang = std::min({style.overhang, 0.1f * w, 0.1f * h});
    // How far the rounded spine bulges out past the boards' hinge line.
    const float bulge = std::min(0.2f * t, 0.1f * w);
    const float hinge = -w / 2 + bulge;

    MeshBuilder builder;
    builder.beginPart(); // front cover
    builder.addBox(Vector3(hinge, -t / 2, 0.f), Vector3(w / 2, -t / 2 + board, h));
    builder.beginPart(); // back cover
    builder.addBox(Vector3(hinge, t / 2 - board, 0.f), Vector3(w / 2, t / 2, h));

    // The spine's cross-section is half an ellipse in the xy-plane. It is extruded along y as a
    // prism and then turned so that the extrusion runs up z: the turn takes y to z and z to -y,
    // so the section is drawn with z = -y.
    builder.beginPart();
    const MeshBuilder::Mark spineStart = builder.mark();
    MeshBuilder::Outline section;
    const int segments = 16;
    for (int i = 0; i <= segments; ++i) {
        const float phi = 3.14159265f * (float(i) / float(segments) - 0.5f);
        section.push_back({hinge - bulge * std::cos(phi), -(t / 2) * std::sin(phi)});
    }
    builder.addPrism(section, 0.f, h);
    Matrix upright; // rows are the images of x, y and z
    upright[5] = 0.f;
    upright[6] = 1.f;
    upright[9] = -1.f;
    upright[10] = 0.f;
    builder.transformSince(spineStart, upright);

    builder.beginPart(); // page block, set back from the covers' edges by the overhang
    builder.addBox(Vector3(hinge, -t / 2 + board, overhang),
                   Vector3(w / 2 - overhang, t / 2 - board, h - overhang));
    return builder.build();
}

std::unique_ptr<ShapeGenerator> BookGenerator::create() const
{
    return std::make_unique<BookGenerator>(GetTypeId());
}

} // namespace vantrel::host
