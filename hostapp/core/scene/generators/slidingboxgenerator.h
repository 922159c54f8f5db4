// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/scene/generators/sizedshapegenerator.h"

namespace vantrel::host {

// A slide box, like a matchbox: a sleeve open at both ends (first part) and an open-topped drawer
// tray inside it (second part) that can be pulled out along +x. slide is limited to 0..1.
class VANTREL_HOST_EXPORT SlidingBoxGenerator : public SizedShapeGenerator
{
    Q_OBJECT
    // How far the tray is pulled out, as a fraction of the width: 0 closed, 1 clear of the sleeve.
    Q_PROPERTY(float slide READ slide WRITE setSlide)

public:
    static constexpr char s_typeId[] = "generator.Boxes.SlidingBox";

    explicit SlidingBoxGenerator(const char *typeId);

    float slide() const { return value("slide").toFloat(); }
    void setSlide(float slide);

    ArtworkSheet artworkSheet() const override;

    ParameterRange parameterRange(const QByteArray &name) const override;

protected:
    MeshPtr build() const override;
    std::unique_ptr<ShapeGenerator> create() const override;
};

} // namespace vantrel::host
