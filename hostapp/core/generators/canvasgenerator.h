// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/shapegenerator.h"

namespace vantrel::host {

// A stretched canvas hanging or standing upright, print facing -y: the canvas sheet (first part)
// over a wooden stretcher frame whose open back shows the bars (second part).
// Lengths are in centimetres and limited to MinimumLength..MaximumLength (lengthlimits.h).
class VANTREL_HOST_EXPORT CanvasGenerator : public ShapeGenerator
{
    Q_OBJECT
    Q_PROPERTY(float width READ width WRITE setWidth)    // along x, centred on x = 0
    Q_PROPERTY(float height READ height WRITE setHeight) // along z, from the floor up
    Q_PROPERTY(float depth READ depth WRITE setDepth)    // of sheet and frame, along y, centred

public:
    static constexpr char s_typeId[] = "generator.canvas.simple";

    explicit CanvasGenerator(const char *typeId);

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
