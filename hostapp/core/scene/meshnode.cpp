// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/meshnode.h"

#include "hostapp/core/document/document.h"

namespace vantrel::host {

MeshNode::MeshNode(Document *document, QString name, std::unique_ptr<ShapeGenerator> generator)
    : SceneNode(document, MeshNodeType, std::move(name))
    , m_generator(std::move(generator))
{
    m_generator->setRecorder(&recorder());
}

MeshNode::~MeshNode() = default;

const std::vector<IMeshPart *> &MeshNode::GetMeshParts() const
{
    // The generator keeps the mesh alive until a parameter changes, so the reference stays valid
    // as long as the caller does not change the shape.
    return m_generator->mesh()->parts();
}

void MeshNode::applyArtwork(QString path, ArtworkImagePtr image)
{
    m_artwork = std::move(path);
    m_artworkImage = std::move(image);
}

std::unique_ptr<BaseNode> MeshNode::cloneNode() const
{
    auto copy = std::make_unique<MeshNode>(document(), GetName(), m_generator->clone());
    copySceneState(*copy);
    copy->applyArtwork(m_artwork, m_artworkImage);
    return copy;
}

} // namespace vantrel::host
