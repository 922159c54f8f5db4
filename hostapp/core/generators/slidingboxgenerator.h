// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/shapegenerator.h"

namespace vantrel::host {

// A slide box, like a matchbox: a sleeve open at both ends (first part) and an open-topped drawer
// tray inside it (second part) that can be pulled out along +x.
// Lengths are in centimetres and limited to MinimumLength..MaximumLength (lengthlimits.h); slide
// is limited to 0..1.
class VANTREL_HOST_EXPORT SlidingBoxGenerator : public ShapeGenerator
{
    Q_OBJECT
    Q_PROPERTY(float width READ width WRITE setWidth)    // along x, centred on x = 0
    Q_PROPERTY(float height READ height WRITE setHeight) // along z, from the floor up
    Q_PROPERTY(float depth READ depth WRITE setDepth)    // along y, centred on y = 0
    // How far the tray is pulled out, as a fraction of the width: 0 closed, 1 clear of the sleeve.
    Q_PROPERTY(float slide READ slide WRITE setSlide)

public:
    static constexpr char s_typeId[] = "generator.Boxes.SlidingBox";

    explicit SlidingBoxGenerator(const char *typeId);

    float width() const { return value("width").toFloat(); }
    void setWidth(float width);
    float height() const { return value("height").toFloat(); }
    void setHeight(float height);
    float depth() const { return value("depth").toFloat(); }
    void setDepth(float depth);
    float slide() const { return value("slide").toFloat(); }
    void setSlide(float slide);

protected:
    MeshPtr build() const override;
    std::unique_ptr<ShapeGenerator> create() const override;
};

} // namespace vantrel::host
