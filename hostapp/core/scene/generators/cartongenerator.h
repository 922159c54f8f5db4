// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/scene/shapegenerator.h"

namespace vantrel::host {

// The base of the shapes sized like a carton: the boxes, and the canvas, whose stretcher frame
// makes it a shallow box. It owns their three sizes, in centimetres, each limited to
// MinimumLength..MaximumLength (lengthlimits.h). They are the first three parameters; the
// parameters a derived class declares follow them.
class VANTREL_HOST_EXPORT CartonGenerator : public ShapeGenerator
{
    Q_OBJECT
    Q_PROPERTY(float width READ width WRITE setWidth)    // along x, centred on x = 0
    Q_PROPERTY(float height READ height WRITE setHeight) // along z, from the floor up
    Q_PROPERTY(float depth READ depth WRITE setDepth)    // along y, centred on y = 0

public:
    // A shape's default sizes, in centimetres.
    struct Size
    {
        float width = 0.f;
        float height = 0.f;
        float depth = 0.f;
    };

    float width() const { return value("width").toFloat(); }
    void setWidth(float width);
    float height() const { return value("height").toFloat(); }
    void setHeight(float height);
    float depth() const { return value("depth").toFloat(); }
    void setDepth(float depth);

protected:
    CartonGenerator(const char *typeId, const Size &defaults);
};

} // namespace vantrel::host
