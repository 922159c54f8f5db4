// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/generators/externalmodelgenerator.h"

#include "hostapp/core/models/modelfile.h"

#include <QDir>

namespace vantrel::host {

ExternalModelGenerator::ExternalModelGenerator(const char *typeId)
    : ShapeGenerator(typeId)
{
    initValue("path", QString());
}

void ExternalModelGenerator::setPath(const QString &path)
{
    if (path == this->path()) {
        setValue("path", QVariant(path)); // nothing to load, and nothing to record
        return;
    }
    // A write reads the file as it is now (the cache makes an unchanged file cheap); only undo
    // and redo fall back on the meshes kept below.
    if (!path.isEmpty()) {
        QString error;
        MeshPtr mesh = ModelFile::load(resolve(path), &error);
        if (!mesh) {
            refuse(error);
            return;
        }
        m_meshes.insert(path, std::move(mesh));
    }
    setValue("path", QVariant(path));
}

QString ExternalModelGenerator::resolve(const QString &path) const
{
    // filePath joins without tidying, so a message shows the user's own text at its end.
    return QDir(m_baseDirectory.isEmpty() ? QDir::currentPath() : m_baseDirectory).filePath(path);
}

void ExternalModelGenerator::setModelMesh(MeshPtr mesh)
{
    if (mesh)
        m_meshes.insert(path(), std::move(mesh));
    else
        m_meshes.remove(path());
    setMesh(build());
}

MeshPtr ExternalModelGenerator::build() const
{
    if (MeshPtr mesh = m_meshes.value(path()))
        return mesh;
    return std::make_shared<const Mesh>(std::vector<std::unique_ptr<MeshPart>>());
}

std::unique_ptr<ShapeGenerator> ExternalModelGenerator::create() const
{
    auto copy = std::make_unique<ExternalModelGenerator>(GetTypeId());
    copy->m_baseDirectory = m_baseDirectory;
    copy->m_meshes = m_meshes;
    return copy;
}

ShapeGenerator::ParameterRange ExternalModelGenerator::parameterRange(const QByteArray &name) const
{
    if (name == "path")
        return {ParameterUnit::ModelFile, 0.0, 0.0};
    return ShapeGenerator::parameterRange(name);
}

} // namespace vantrel::host
