// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/scene/generators/sizedshapegenerator.h"

namespace vantrel::host {

// A tablet or phone standing upright, screen facing -y: a slab with rounded corners (first part)
// and the screen (second part), set half a millimetre into the front face. The screen keeps the
// real device's proportion of the front and shrinks where large corners would cut into it.
// cornerRadius is limited to 0..MaximumLength (lengthlimits.h), and in the mesh to half the
// shorter side.
class VANTREL_HOST_EXPORT DeviceGenerator : public SizedShapeGenerator
{
    Q_OBJECT
    Q_PROPERTY(float cornerRadius READ cornerRadius WRITE setCornerRadius) // seen from the front

public:
    static constexpr char s_iPadId[] = "generator.Devices.iPad";
    static constexpr char s_iPhone4Id[] = "generator.Devices.iPhone4";
    static constexpr char s_iPhone5Id[] = "generator.Devices.iPhone5";

    // Any other identifier gets the tablet's proportions.
    explicit DeviceGenerator(const char *typeId);

    float cornerRadius() const { return value("cornerRadius").toFloat(); }
    void setCornerRadius(float cornerRadius);

    ArtworkSheet artworkSheet() const override;

    ParameterRange parameterRange(const QByteArray &name) const override;

protected:
    MeshPtr build() const override;
    std::unique_ptr<ShapeGenerator> create() const override;

private:
    // cornerRadius as the mesh uses it: at most half the shorter side.
    float clampedRadius() const;
    // The screen's opening on the front, in the xz-plane.
    MeshBuilder::Outline screenOutline() const;
};

} // namespace vantrel::host
