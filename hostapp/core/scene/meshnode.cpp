// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/meshnode.h"

#include "hostapp/core/document/document.h"
#include "hostapp/core/models/artworkfile.h"
#include "hostapp/core/undo/change.h"

#include <QDir>

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

void MeshNode::applyArtworkState(ArtworkState state)
{
    applyArtwork(std::move(state.path), std::move(state.image));
}

bool MeshNode::setArtwork(const QString &path, QString *error)
{
    if (path == m_artwork)
        return true; // nothing to read, and nothing to record
    ArtworkImagePtr image;
    if (!path.isEmpty()) {
        image = ArtworkFile::load(resolveArtwork(path), error);
        if (!image)
            return false;
    }
    // The change keeps both images, so undo and redo never read a file that may have changed or
    // gone since.
    recorder().apply(std::make_unique<ValueChange<MeshNode, ArtworkState>>(
        this,
        &MeshNode::applyArtworkState,
        ArtworkState{m_artwork, m_artworkImage},
        ArtworkState{path, std::move(image)}));
    return true;
}

QString MeshNode::resolveArtwork(const QString &path) const
{
    // filePath joins without tidying, so a message shows the user's own text at its end.
    return QDir(m_artworkDirectory.isEmpty() ? QDir::currentPath() : m_artworkDirectory)
        .filePath(path);
}

std::unique_ptr<BaseNode> MeshNode::cloneNode() const
{
    auto copy = std::make_unique<MeshNode>(document(), GetName(), m_generator->clone());
    copySceneState(*copy);
    copy->applyArtwork(m_artwork, m_artworkImage);
    copy->m_artworkDirectory = m_artworkDirectory;
    return copy;
}

} // namespace vantrel::host
