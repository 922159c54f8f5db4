// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/scene/shapegenerator.h"

#include <QHash>
#include <QString>

namespace vantrel::host {

// A shape whose mesh comes from a model file (ModelFile lists the formats) rather than from
// parameters.
//
// The path is kept exactly as the user gave it, and scene files store it that way. A relative
// path is resolved against the shape's base folder: the folder of the scene file the shape was
// read from, or the working directory for shapes made any other way. A path whose file cannot
// be read is refused (refusal() names the file and the reason) and the shape keeps its previous
// path and mesh. An empty path shows nothing.
class VANTREL_HOST_EXPORT ExternalModelGenerator : public ShapeGenerator
{
    Q_OBJECT
    Q_PROPERTY(QString path READ path WRITE setPath) // the model file, any form the user gave

public:
    static constexpr char s_typeId[] = "generator.external.model";

    explicit ExternalModelGenerator(const char *typeId);

    QString path() const { return value("path").toString(); }
    // Reads the file (on the GUI thread, before returning) and shows its mesh, or refuses.
    void setPath(const QString &path);
    ParameterRange parameterRange(const QByteArray &name) const override;

    // The folder relative paths start from; empty for the working directory at the time of
    // each write. Set it before the path. Clones keep it.
    QString baseDirectory() const { return m_baseDirectory; }
    void setBaseDirectory(const QString &directory) { m_baseDirectory = directory; }

    // The file a path stands for: absolute paths as they are, relative ones below the base
    // folder.
    QString resolve(const QString &path) const;

    // Replaces the mesh shown for the current path (null: an empty mesh), for meshes that come
    // from no file. This is not a parameter: the change is not recorded for undo, and clones
    // made afterwards show the same mesh.
    void setModelMesh(MeshPtr mesh);

protected:
    MeshPtr build() const override;
    std::unique_ptr<ShapeGenerator> create() const override;

private:
    QString m_baseDirectory;
    // The mesh of every path this shape has shown (clones inherit the list), so that undo and
    // redo of a path change switch meshes without reading a file that may have changed or gone
    // since. Every path the value can take went through setPath, or is the empty default.
    QHash<QString, MeshPtr> m_meshes;
};

} // namespace vantrel::host
