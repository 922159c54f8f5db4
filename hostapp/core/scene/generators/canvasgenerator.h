// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/scene/generators/sizedshapegenerator.h"

namespace vantrel::host {

// A stretched canvas hanging or standing upright, print facing -y: the canvas sheet (first part)
// over a wooden stretcher frame whose open back shows the bars (second part). depth is that of
// sheet and frame together.
class VANTREL_HOST_EXPORT CanvasGenerator : public SizedShapeGenerator
{
    Q_OBJECT

public:
    static constexpr char s_typeId[] = "generator.canvas.simple";

    explicit CanvasGenerator(const char *typeId);

    ArtworkSheet artworkSheet() const override;

protected:
    MeshPtr build() const override;
    std::unique_ptr<ShapeGenerator> create() const override;
};

} // namespace vantrel::host
