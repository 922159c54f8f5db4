// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/shapegenerator.h"

namespace vantrel::host {

// A soft-cover book standing upright with its spine at x = -width / 2 and its front cover facing
// -y; the front cover can be shown opened, hinged at the spine's outer front edge. Parts: front
// cover, back cover, spine, page block.
// - "generator.Book.Paperback": covers trimmed flush with the pages.
// - "generator.Book.Stepback": the front cover is 5 % shorter than the page block, so the top of
//   the first page (the step-back art) shows above it.
// Lengths are in centimetres and limited to MinimumLength..MaximumLength (lengthlimits.h).
class VANTREL_HOST_EXPORT PaperbackGenerator : public ShapeGenerator
{
    Q_OBJECT
    Q_PROPERTY(float width READ width WRITE setWidth)             // spine to fore-edge, along x
    Q_PROPERTY(float height READ height WRITE setHeight)          // along z, from the floor up
    Q_PROPERTY(float thickness READ thickness WRITE setThickness) // along y, centred on y = 0
    // The front cover: 0 closed, 1 opened 30 degrees, 2 folded fully open (180 degrees).
    Q_PROPERTY(int type READ type WRITE setType)

public:
    static constexpr char s_paperbackId[] = "generator.Book.Paperback";
    static constexpr char s_stepbackId[] = "generator.Book.Stepback";

    // Any other identifier gets a plain paperback.
    explicit PaperbackGenerator(const char *typeId);

    float width() const { return value("width").toFloat(); }
    void setWidth(float width);
    float height() const { return value("height").toFloat(); }
    void setHeight(float height);
    float thickness() const { return value("thickness").toFloat(); }
    void setThickness(float thickness);
    int type() const { return value("type").toInt(); }
    void setType(int type);

protected:
    MeshPtr build() const override;
    std::unique_ptr<ShapeGenerator> create() const override;
};

} // namespace vantrel::host
