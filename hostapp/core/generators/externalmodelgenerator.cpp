// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/generators/externalmodelgenerator.h"

namespace vantrel::host {

ExternalModelGenerator::ExternalModelGenerator(const char *typeId)
    : ShapeGenerator(typeId)
{
    initValue("path", QString());
}

void ExternalModelGenerator::setPath(const QString &path)
{
    setValue("path", QVariant(path));
}

void ExternalModelGenerator::setModelMesh(MeshPtr mesh)
{
    m_modelMesh = std::move(mesh);
    setMesh(build());
}

MeshPtr ExternalModelGenerator::build() const
{
    if (m_modelMesh)
        return m_modelMesh;
    return std::make_shared<const Mesh>(std::vector<std::unique_ptr<MeshPart>>());
}

std::unique_ptr<ShapeGenerator> ExternalModelGenerator::create() const
{
    auto copy = std::make_unique<ExternalModelGenerator>(GetTypeId());
    copy->m_modelMesh = m_modelMesh;
    return copy;
}

} // namespace vantrel::host
