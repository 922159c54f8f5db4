// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/scene/generators/sizedshapegenerator.h"

namespace vantrel::host {

// A bound book with a rounded spine, standing upright with its spine at x = -width / 2 (width
// runs from spine to fore-edge) and its front cover facing -y. Parts: front cover, back cover,
// spine, page block.
// - "generator.Book.HardCover": 2.5 mm boards that overhang the page block by 3 mm at the top,
//   bottom and fore-edge.
// - "generator.Book.Magazine": a thin saddle-stitched magazine; the cover is a sheet of card
//   folded round the pages, trimmed flush with them.
class VANTREL_HOST_EXPORT BookGenerator : public SizedShapeGenerator
{
    Q_OBJECT

public:
    static constexpr char s_hardCoverId[] = "generator.Book.HardCover";
    static constexpr char s_magazineId[] = "generator.Book.Magazine";

    // Any other identifier gets the hard cover's proportions.
    explicit BookGenerator(const char *typeId);

    ArtworkSheet artworkSheet() const override;

protected:
    MeshPtr build() const override;
    std::unique_ptr<ShapeGenerator> create() const override;
};

} // namespace vantrel::host
