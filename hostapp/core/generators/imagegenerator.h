// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/shapegenerator.h"

namespace vantrel::host {

// A printed sheet (a photo, a poster, a flyer) standing upright, print facing -y, optionally
// bent around a vertical axis like a sheet curling in the hand. One part.
// Lengths are in centimetres and limited to MinimumLength..MaximumLength (lengthlimits.h); bend
// to -180..180 degrees, and in the mesh to width / thickness radians so that it cannot fold.
class VANTREL_HOST_EXPORT ImageGenerator : public ShapeGenerator
{
    Q_OBJECT
    Q_PROPERTY(float width READ width WRITE setWidth)             // arc length, along x when flat
    Q_PROPERTY(float height READ height WRITE setHeight)          // along z, from the floor up
    Q_PROPERTY(float thickness READ thickness WRITE setThickness) // along y, centred when flat
    // The total arc of the sheet in degrees; 0 is flat, positive curls the side edges back (+y).
    Q_PROPERTY(float bend READ bend WRITE setBend)

public:
    static constexpr char s_typeId[] = "generator.Images.Image";

    explicit ImageGenerator(const char *typeId);

    float width() const { return value("width").toFloat(); }
    void setWidth(float width);
    float height() const { return value("height").toFloat(); }
    void setHeight(float height);
    float thickness() const { return value("thickness").toFloat(); }
    void setThickness(float thickness);
    float bend() const { return value("bend").toFloat(); }
    void setBend(float bend);

protected:
    MeshPtr build() const override;
    std::unique_ptr<ShapeGenerator> create() const override;
};

} // namespace vantrel::host
