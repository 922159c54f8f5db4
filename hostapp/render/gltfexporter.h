// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/types.h"
#include "hostapp/render/gltfbuffer.h"
#include "hostapp/render/renderexport.h"

#include <QJsonArray>
#include <QJsonObject>

#include <map>
#include <tuple>

class QImage;

namespace vantrel::host {
class BaseNode;
class Document;
class LightNode;
class Mesh;
class MeshNode;
} // namespace vantrel::host

namespace vantrel::render {

// A document as a glTF 2.0 asset, read on the GUI thread when constructed: the scene tree with its
// names and transforms, every distinct mesh once (copies share it), materials with the artwork
// as textures, the visible lights (KHR_lights_punctual) and the camera. Axes and units are in
// gltfplacement.h; what is written and what is not is in docs/export.md.
class VANTREL_RENDER_EXPORT GltfExporter
{
public:
    explicit GltfExporter(const host::Document &document);

    // The binary form (.glb): the JSON chunk, then the buffer with the images in it.
    QByteArray glb() const;
    // The text form (.gltf), in one file: the buffer as a base64 data: URI.
    QByteArray gltf() const;

private:
    int addNode(const host::BaseNode &node);
    void addLight(const host::LightNode &light, QJsonObject &node);
    int meshFor(const host::MeshNode &node);
    int materialFor(const host::MeshNode &node);
    int textureFor(const QImage &image);
    const QJsonArray &primitivesOf(const host::Mesh &mesh);
    void addCamera(const host::Document &document);
    QJsonObject asset(const QJsonObject &buffer) const;

    GltfBuffer m_buffer;
    QJsonArray m_sceneNodes; // the scene's top nodes: the axes root, the camera
    QJsonArray m_nodes, m_meshes, m_materials, m_textures, m_images, m_lights, m_cameras;
    // Keys are the host's shared objects: alive as long as the document, which outlives this.
    std::map<const host::Mesh *, QJsonArray> m_primitives; // without material, one per part
    std::map<std::pair<const host::Mesh *, int>, int> m_meshIndex;
    std::map<std::tuple<float, float, float, const QImage *>, int> m_materialIndex;
    std::map<const QImage *, int> m_textureIndex;
    TBBox<float> m_bounds; // world box of the visible shapes (host units)
    Vector3 m_sceneCentre;
};

} // namespace vantrel::render
