// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/shapegenerator.h"

namespace vantrel::host {

// A closed carton: a plain box standing on the floor, one part per panel (front, back, left,
// right, top, bottom) so that each panel carries its own artwork.
// Lengths are in centimetres and limited to MinimumLength..MaximumLength (lengthlimits.h).
class VANTREL_HOST_EXPORT BoxGenerator : public ShapeGenerator
{
    Q_OBJECT
    Q_PROPERTY(float width READ width WRITE setWidth)    // along x, centred on x = 0
    Q_PROPERTY(float height READ height WRITE setHeight) // along z, from the floor up
    Q_PROPERTY(float depth READ depth WRITE setDepth)    // along y, centred on y = 0

public:
    static constexpr char s_typeId[] = "generator.Boxes.Box";

    explicit BoxGenerator(const char *typeId);

    float width() const { return value("width").toFloat(); }
    void setWidth(float width);
    float height() const { return value("height").toFloat(); }
    void setHeight(float height);
    float depth() const { return value("depth").toFloat(); }
    void setDepth(float depth);

protected:
    MeshPtr build() const override;
    std::unique_ptr<ShapeGenerator> create() const override;
};

} // namespace vantrel::host
