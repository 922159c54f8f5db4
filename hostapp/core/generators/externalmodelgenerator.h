// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/shapegenerator.h"

#include <QString>

namespace vantrel::host {

// A shape whose mesh comes from a model file rather than from parameters. The file name is
// kept (scene files store it) but not read yet: until the loader exists, the mesh is whatever
// was handed over with setModelMesh(), or an empty mesh.
class VANTREL_HOST_EXPORT ExternalModelGenerator : public ShapeGenerator
{
    Q_OBJECT
    Q_PROPERTY(QString path READ path WRITE setPath) // the model file, any form the user gave

public:
    static constexpr char s_typeId[] = "generator.external.model";

    explicit ExternalModelGenerator(const char *typeId);

    QString path() const { return value("path").toString(); }
    void setPath(const QString &path);

    // Replaces the mesh this shape shows (null: an empty mesh). This is not a parameter: the
    // change is not recorded for undo, and clones made afterwards show the same mesh.
    void setModelMesh(MeshPtr mesh);

protected:
    MeshPtr build() const override;
    std::unique_ptr<ShapeGenerator> create() const override;

private:
    MeshPtr m_modelMesh;
};

} // namespace vantrel::host
