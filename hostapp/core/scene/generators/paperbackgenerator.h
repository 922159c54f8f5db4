// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/scene/generators/sizedshapegenerator.h"

namespace vantrel::host {

// A soft-cover book standing upright with its spine at x = -width / 2 (width runs from spine to
// fore-edge) and its front cover facing -y; the front cover can be shown opened, hinged at the
// spine's outer front edge. Parts: front cover, back cover, spine, page block.
// - "generator.Book.Paperback": covers trimmed flush with the pages.
// - "generator.Book.Stepback": the front cover is 5 % shorter than the page block, so the top of
//   the first page (the step-back art) shows above it.
class VANTREL_HOST_EXPORT PaperbackGenerator : public SizedShapeGenerator
{
    Q_OBJECT
    // The front cover: 0 closed, 1 opened 30 degrees, 2 folded fully open (180 degrees).
    Q_PROPERTY(int type READ type WRITE setType)

public:
    static constexpr char s_paperbackId[] = "generator.Book.Paperback";
    static constexpr char s_stepbackId[] = "generator.Book.Stepback";

    // Any other identifier gets a plain paperback.
    explicit PaperbackGenerator(const char *typeId);

    int type() const { return value("type").toInt(); }
    void setType(int type);

    ArtworkSheet artworkSheet() const override;

    ParameterRange parameterRange(const QByteArray &name) const override;

protected:
    MeshPtr build() const override;
    std::unique_ptr<ShapeGenerator> create() const override;
};

} // namespace vantrel::host
