// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/imeshnode.h"
#include "hostapp/core/scene/artworkimage.h"
#include "hostapp/core/scene/scenenode.h"
#include "hostapp/core/scene/shapegenerator.h"

namespace vantrel::host {

// A shape (kind 1): a generator and the mesh it builds. Parameter writes on the generator are
// recorded in the document's undo history.
class VANTREL_HOST_EXPORT MeshNode final : public SceneNode, public IMeshNode
{
    Q_OBJECT
    Q_INTERFACES(IMeshNode)

public:
    MeshNode(Document *document, QString name, std::unique_ptr<ShapeGenerator> generator);
    ~MeshNode() override;

    TBBox<float> GetLocalBBox() const override { return m_generator->mesh()->localBox(); }
    const std::vector<IMeshPart *> &GetMeshParts() const override;
    QObject *GetGenerator() const override { return m_generator.get(); }

    ShapeGenerator *generator() const { return m_generator.get(); }
    MeshPtr mesh() const { return m_generator->mesh(); }

    // The artwork printed on the shape through its texture coordinates: the path as it was
    // given ("" for none) and the image read from it (null for none). Copies share the image.
    const QString &artwork() const { return m_artwork; }
    const ArtworkImagePtr &artworkImage() const { return m_artworkImage; }
    // Sets both without reading or recording (the scene reader and undo use it).
    void applyArtwork(QString path, ArtworkImagePtr image);
    // Reads the image at path (through ArtworkFile's cache, on the calling thread) and shows it,
    // recorded as one change that undo and redo replay without reading again; "" removes the
    // artwork. False with *error set ("<file>: <reason>") and nothing changed when the image
    // cannot be read. The path is kept as given; a relative one names a file below
    // artworkDirectory().
    bool setArtwork(const QString &path, QString *error);

    // The folder relative artwork paths start from: the folder of the scene file the shape was
    // read from, or empty for the working directory at the time of each write. Copies keep it.
    const QString &artworkDirectory() const { return m_artworkDirectory; }
    void setArtworkDirectory(const QString &directory) { m_artworkDirectory = directory; }
    // The file a path stands for: absolute paths as they are, relative ones below the folder.
    QString resolveArtwork(const QString &path) const;

protected:
    std::unique_ptr<BaseNode> cloneNode() const override;

private:
    // The path and image together, as one recorded value.
    struct ArtworkState
    {
        QString path;
        ArtworkImagePtr image;
    };
    void applyArtworkState(ArtworkState state);

    std::unique_ptr<ShapeGenerator> m_generator;
    QString m_artwork;
    ArtworkImagePtr m_artworkImage;
    QString m_artworkDirectory;
};

} // namespace vantrel::host
