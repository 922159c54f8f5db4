// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/scene/generators/sizedshapegenerator.h"

namespace vantrel::host {

// A paperback whose fore-edge corners are die-cut round (covers and pages alike), standing
// upright with its square spine at x = -width / 2 (width runs from spine to fore-edge) and its
// front cover facing -y. Parts: front cover, back cover, spine, page block.
// cornerRadius is limited to 0..MaximumLength (lengthlimits.h), and in the mesh to half the
// shorter side.
class VANTREL_HOST_EXPORT RoundCornerBookGenerator : public SizedShapeGenerator
{
    Q_OBJECT
    Q_PROPERTY(float cornerRadius READ cornerRadius WRITE setCornerRadius) // of the fore-edge

public:
    static constexpr char s_typeId[] = "generator.Book.PaperbackRoundCorners";

    explicit RoundCornerBookGenerator(const char *typeId);

    float cornerRadius() const { return value("cornerRadius").toFloat(); }
    void setCornerRadius(float cornerRadius);

    ArtworkSheet artworkSheet() const override;

    ParameterRange parameterRange(const QByteArray &name) const override;

protected:
    MeshPtr build() const override;
    std::unique_ptr<ShapeGenerator> create() const override;

private:
    static constexpr int s_segments = 8; // per rounded corner
    MeshBuilder::CornerRadii cornerRadii() const;
    MeshBuilder::Outline pageBlockOutline() const;
};

} // namespace vantrel::host
