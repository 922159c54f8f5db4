// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/shapegenerator.h"

namespace vantrel::host {

// A disc case standing upright, spine at x = -width / 2: the front half (the cover, first part)
// swings open towards -y about the spine's outer front edge; the back half is the second part.
// - "generator.DiscBox.DVD" and "generator.DiscBox.BluRay": moulded keep cases with rounded
//   corners, split in two halves of equal thickness;
// - "generator.DiscBox.SlimCD": a slim jewel case;
// - "generator.DiscBox.DigipakDVD" and "generator.DiscBox.DigipakCD": a card front panel over a
//   tray block, square cut.
// Lengths are in centimetres and limited to MinimumLength..MaximumLength (lengthlimits.h).
class VANTREL_HOST_EXPORT DiscCaseGenerator : public ShapeGenerator
{
    Q_OBJECT
    Q_PROPERTY(float width READ width WRITE setWidth)             // along x, centred on x = 0
    Q_PROPERTY(float height READ height WRITE setHeight)          // along z, from the floor up
    Q_PROPERTY(float thickness READ thickness WRITE setThickness) // closed, along y, centred
    // How far the cover is open, in degrees, 0 (closed) to 180 (lying open beside the case).
    Q_PROPERTY(float coverAngle READ coverAngle WRITE setCoverAngle)

public:
    static constexpr char s_digipakDvdId[] = "generator.DiscBox.DigipakDVD";
    static constexpr char s_digipakCdId[] = "generator.DiscBox.DigipakCD";
    static constexpr char s_dvdId[] = "generator.DiscBox.DVD";
    static constexpr char s_slimCdId[] = "generator.DiscBox.SlimCD";
    static constexpr char s_bluRayId[] = "generator.DiscBox.BluRay";

    // Any other identifier gets a DVD keep case.
    explicit DiscCaseGenerator(const char *typeId);

    float width() const { return value("width").toFloat(); }
    void setWidth(float width);
    float height() const { return value("height").toFloat(); }
    void setHeight(float height);
    float thickness() const { return value("thickness").toFloat(); }
    void setThickness(float thickness);
    float coverAngle() const { return value("coverAngle").toFloat(); }
    void setCoverAngle(float coverAngle);

protected:
    MeshPtr build() const override;
    std::unique_ptr<ShapeGenerator> create() const override;
};

} // namespace vantrel::host
