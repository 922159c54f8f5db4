// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/scene/meshbuilder.h"
#include "hostapp/core/scene/shapegenerator.h"

namespace vantrel::host {

// The base of the shapes sized like a sheet or a slab standing upright and facing -y: books,
// disc cases, devices and printed sheets. It owns their three sizes, in centimetres, each limited
// to MinimumLength..MaximumLength (lengthlimits.h). They are the first three parameters; the
// parameters a derived class declares follow them.
class VANTREL_HOST_EXPORT FlatShapeGenerator : public ShapeGenerator
{
    Q_OBJECT
    Q_PROPERTY(float width READ width WRITE setWidth)             // along x, centred on x = 0
    Q_PROPERTY(float height READ height WRITE setHeight)          // along z, from the floor up
    Q_PROPERTY(float thickness READ thickness WRITE setThickness) // along y, centred on y = 0

public:
    // A shape's default sizes, in centimetres.
    struct Size
    {
        float width = 0.f;
        float height = 0.f;
        float thickness = 0.f;
    };

    float width() const { return value("width").toFloat(); }
    void setWidth(float width);
    float height() const { return value("height").toFloat(); }
    void setHeight(float height);
    float thickness() const { return value("thickness").toFloat(); }
    void setThickness(float thickness);

protected:
    FlatShapeGenerator(const char *typeId, const Size &defaults);

    // The outline of the front, x from -width / 2 to width / 2 and z from 0 to height, with the
    // given corners, for slabs that MeshBuilder::addPrism extrudes along y.
    MeshBuilder::Outline frontOutline(const MeshBuilder::CornerRadii &radii,
                                      int segmentsPerCorner) const;
};

} // namespace vantrel::host
