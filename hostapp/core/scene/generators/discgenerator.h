// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/scene/shapegenerator.h"

namespace vantrel::host {

// An optical disc standing on its edge like a coin: axis along y, centred on x = 0, touching the
// floor at z = 0. One part; the label side faces -y.
// diameter and thickness are limited to MinimumLength..MaximumLength (lengthlimits.h);
// holeDiameter to 0..MaximumLength, and in the mesh to 90 % of the diameter. 0 gives no hole.
class VANTREL_HOST_EXPORT DiscGenerator : public ShapeGenerator
{
    Q_OBJECT
    Q_PROPERTY(float diameter READ diameter WRITE setDiameter)             // centimetres
    Q_PROPERTY(float holeDiameter READ holeDiameter WRITE setHoleDiameter) // centimetres
    Q_PROPERTY(float thickness READ thickness WRITE setThickness)          // along y, centred

public:
    static constexpr char s_typeId[] = "generator.DiscBox.Disc";

    explicit DiscGenerator(const char *typeId);

    float diameter() const { return value("diameter").toFloat(); }
    void setDiameter(float diameter);
    float holeDiameter() const { return value("holeDiameter").toFloat(); }
    void setHoleDiameter(float holeDiameter);
    float thickness() const { return value("thickness").toFloat(); }
    void setThickness(float thickness);

    ArtworkSheet artworkSheet() const override;

    ParameterRange parameterRange(const QByteArray &name) const override;

protected:
    MeshPtr build() const override;
    bool meshFollowsParameters() const override { return true; }
    std::unique_ptr<ShapeGenerator> create() const override;

private:
    // The polygon standing for the circles: within 0.1 % of the circle's area and 0.05 % of its
    // radius, finer than a pixel at any sensible zoom.
    static constexpr int s_segments = 96;
};

} // namespace vantrel::host
