// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/scene/generators/sizedshapegenerator.h"

namespace vantrel::host {

// A closed carton: a plain box standing on the floor, one part per panel (front, back, left,
// right, top, bottom) so that each panel carries its own artwork.
class VANTREL_HOST_EXPORT BoxGenerator : public SizedShapeGenerator
{
    Q_OBJECT

public:
    static constexpr char s_typeId[] = "generator.Boxes.Box";

    explicit BoxGenerator(const char *typeId);

    ArtworkSheet artworkSheet() const override;

protected:
    MeshPtr build() const override;
    std::unique_ptr<ShapeGenerator> create() const override;
};

} // namespace vantrel::host
