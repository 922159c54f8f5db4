// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/shapegenerator.h"

namespace vantrel::host {

// A paperback whose fore-edge corners are die-cut round (covers and pages alike), standing
// upright with its square spine at x = -width / 2 and its front cover facing -y. Parts: front
// cover, back cover, spine, page block.
// Lengths are in centimetres and limited to MinimumLength..MaximumLength (lengthlimits.h);
// cornerRadius to 0..MaximumLength, and in the mesh to half the shorter side.
class VANTREL_HOST_EXPORT RoundCornerBookGenerator : public ShapeGenerator
{
    Q_OBJECT
    Q_PROPERTY(float width READ width WRITE setWidth)             // spine to fore-edge, along x
    Q_PROPERTY(float height READ height WRITE setHeight)          // along z, from the floor up
    Q_PROPERTY(float thickness READ thickness WRITE setThickness) // along y, centred on y = 0
    Q_PROPERTY(float cornerRadius READ cornerRadius WRITE setCornerRadius) // of the fore-edge

public:
    static constexpr char s_typeId[] = "generator.Book.PaperbackRoundCorners";

    explicit RoundCornerBookGenerator(const char *typeId);

    float width() const { return value("width").toFloat(); }
    void setWidth(float width);
    float height() const { return value("height").toFloat(); }
    void setHeight(float height);
    float thickness() const { return value("thickness").toFloat(); }
    void setThickness(float thickness);
    float cornerRadius() const { return value("cornerRadius").toFloat(); }
    void setCornerRadius(float cornerRadius);

protected:
    MeshPtr build() const override;
    std::unique_ptr<ShapeGenerator> create() const override;
};

} // namespace vantrel::host
