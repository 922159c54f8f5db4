// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/shapegenerator.h"

namespace vantrel::host {

// A bound book with a rounded spine, standing upright with its spine at x = -width / 2 and its
// front cover facing -y. Parts: front cover, back cover, spine, page block.
// - "generator.Book.HardCover": 2.5 mm boards that overhang the page block by 3 mm at the top,
//   bottom and fore-edge.
// - "generator.Book.Magazine": a thin saddle-stitched magazine; the cover is a sheet of card
//   folded round the pages, trimmed flush with them.
// Lengths are in centimetres and limited to MinimumLength..MaximumLength (lengthlimits.h).
class VANTREL_HOST_EXPORT BookGenerator : public ShapeGenerator
{
    Q_OBJECT
    Q_PROPERTY(float width READ width WRITE setWidth)             // spine to fore-edge, along x
    Q_PROPERTY(float height READ height WRITE setHeight)          // along z, from the floor up
    Q_PROPERTY(float thickness READ thickness WRITE setThickness) // along y, centred on y = 0

public:
    static constexpr char s_hardCoverId[] = "generator.Book.HardCover";
    static constexpr char s_magazineId[] = "generator.Book.Magazine";

    // Any other identifier gets the hard cover's proportions.
    explicit BookGenerator(const char *typeId);

    float width() const { return value("width").toFloat(); }
    void setWidth(float width);
    float height() const { return value("height").toFloat(); }
    void setHeight(float height);
    float thickness() const { return value("thickness").toFloat(); }
    void setThickness(float thickness);

protected:
    MeshPtr build() const override;
    std::unique_ptr<ShapeGenerator> create() const override;
};

} // namespace vantrel::host
