// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/scene/generators/sizedshapegenerator.h"

namespace vantrel::host {

// A printed sheet (a photo, a poster, a flyer) standing upright, print facing -y, optionally
// bent around a vertical axis like a sheet curling in the hand. One part. width is the arc
// length, along x only while the sheet is flat; thickness is centred on y = 0 while flat.
// bend is limited to -180..180 degrees, and in the mesh to width / thickness radians so that it
// cannot fold.
class VANTREL_HOST_EXPORT ImageGenerator : public SizedShapeGenerator
{
    Q_OBJECT
    // The total arc of the sheet in degrees; 0 is flat, positive curls the side edges back (+y).
    Q_PROPERTY(float bend READ bend WRITE setBend)

public:
    static constexpr char s_typeId[] = "generator.Images.Image";

    explicit ImageGenerator(const char *typeId);

    float bend() const { return value("bend").toFloat(); }
    void setBend(float bend);

    ArtworkSheet artworkSheet() const override;

    ParameterRange parameterRange(const QByteArray &name) const override;

protected:
    MeshPtr build() const override;
    std::unique_ptr<ShapeGenerator> create() const override;
};

} // namespace vantrel::host
