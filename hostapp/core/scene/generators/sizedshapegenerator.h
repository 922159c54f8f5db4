// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/scene/meshbuilder.h"
#include "hostapp/core/scene/shapegenerator.h"

namespace vantrel::host {

// The base of the shapes sized by three lengths, in centimetres, each limited to
// MinimumLength..MaximumLength (lengthlimits.h): width along x (centred on x = 0), height along z
// (from the floor up) and the size along y (centred on y = 0). They are the first three
// parameters; the parameters a derived class declares follow them.
//
// The size along y goes by the name people use for the shape: "depth" for the shapes sized like
// a carton (the boxes, and the canvas, whose stretcher frame makes it a shallow box), "thickness"
// for the sheets and slabs standing upright and facing -y (books, disc cases, devices, printed
// sheets). Both names are declared below, and the one the shape was not made with says it is not
// stored, so it is no parameter of the shape: not in parameterNames(), scripts or scene files.
class VANTREL_HOST_EXPORT SizedShapeGenerator : public ShapeGenerator
{
    Q_OBJECT
    Q_PROPERTY(float width READ width WRITE setWidth)
    Q_PROPERTY(float height READ height WRITE setHeight)
    Q_PROPERTY(float depth READ depth WRITE setDepth STORED namedDepth)
    Q_PROPERTY(float thickness READ depth WRITE setDepth STORED namedThickness)

public:
    // The name of the size along y.
    enum class DepthName { Depth, Thickness };

    // A shape's default sizes, in centimetres.
    struct Size
    {
        float width = 0.f;
        float height = 0.f;
        float depth = 0.f; // along y, by whichever name
    };

    float width() const { return value("width").toFloat(); }
    void setWidth(float width);
    float height() const { return value("height").toFloat(); }
    void setHeight(float height);
    // The size along y, whatever the shape calls it.
    float depth() const { return value(depthKey()).toFloat(); }
    void setDepth(float depth);

    ParameterRange parameterRange(const QByteArray &name) const override;

protected:
    SizedShapeGenerator(const char *typeId, DepthName depthName, const Size &defaults);

    // Every sized shape is built from its identifier and values alone; a derived class that
    // keeps other state its build() reads must say false.
    bool meshFollowsParameters() const override { return true; }

    // The outline of the front, x from -width / 2 to width / 2 and z from 0 to height, with the
    // given corners, for slabs that MeshBuilder::addPrism extrudes along y.
    MeshBuilder::Outline frontOutline(const MeshBuilder::CornerRadii &radii,
                                      int segmentsPerCorner) const;

private:
    const char *depthKey() const;
    bool namedDepth() const { return m_depthName == DepthName::Depth; }
    bool namedThickness() const { return m_depthName == DepthName::Thickness; }

    DepthName m_depthName;
};

} // namespace vantrel::host
