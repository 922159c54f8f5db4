// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/scene/generators/sizedshapegenerator.h"

namespace vantrel::host {

// A retail box with a hang tab: the carton's six panels (one part each, as for a plain box) and,
// standing on the lid flush with the back panel, a card tab with rounded top corners and a round
// hang hole (the seventh part). The tab is half as wide as the box. height is the carton's,
// without the tab; tagHeight is limited to MinimumLength..MaximumLength (lengthlimits.h).
class VANTREL_HOST_EXPORT TaggedBoxGenerator : public SizedShapeGenerator
{
    Q_OBJECT
    Q_PROPERTY(float tagHeight READ tagHeight WRITE setTagHeight) // of the tab above the lid

public:
    static constexpr char s_typeId[] = "generator.Boxes.TaggedBox";

    explicit TaggedBoxGenerator(const char *typeId);

    float tagHeight() const { return value("tagHeight").toFloat(); }
    void setTagHeight(float tagHeight);

    ArtworkSheet artworkSheet() const override;

    ParameterRange parameterRange(const QByteArray &name) const override;

protected:
    MeshPtr build() const override;
    std::unique_ptr<ShapeGenerator> create() const override;
};

} // namespace vantrel::host
