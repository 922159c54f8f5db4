// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/scene/generators/sizedshapegenerator.h"

namespace vantrel::host {

// A disc case standing upright, spine at x = -width / 2: the front half (the cover, first part)
// swings open towards -y about the spine's outer front edge; the back half is the second part.
// thickness is that of the closed case.
// - "generator.DiscBox.DVD" and "generator.DiscBox.BluRay": moulded keep cases with rounded
//   corners, split in two halves of equal thickness;
// - "generator.DiscBox.SlimCD": a slim jewel case;
// - "generator.DiscBox.DigipakDVD" and "generator.DiscBox.DigipakCD": a card front panel over a
//   tray block, square cut.
class VANTREL_HOST_EXPORT DiscCaseGenerator : public SizedShapeGenerator
{
    Q_OBJECT
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

    float coverAngle() const { return value("coverAngle").toFloat(); }
    void setCoverAngle(float coverAngle);

    ArtworkSheet artworkSheet() const override;

    ParameterRange parameterRange(const QByteArray &name) const override;

protected:
    MeshPtr build() const override;
    std::unique_ptr<ShapeGenerator> create() const override;
};

} // namespace vantrel::host
