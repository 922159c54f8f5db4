// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/render/gltfexporter.h"

#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/lightnode.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/render/drawlist.h"
#include "hostapp/render/framing.h"
#include "hostapp/render/gltfplacement.h"

#include <QBuffer>
#include <QImageWriter>
#include <QJsonDocument>
#include <QtEndian>

#include <cmath>

namespace vantrel::render {

namespace {

constexpr int LinearFilter = 9729;
constexpr int LinearMipmapLinearFilter = 9987;
constexpr int ClampToEdge = 33071;

// The base colour: a shape without artwork gets the colour the host's pictures give it (so a grid
// of copies stays one colour); with artwork the texture gives the colour, multiplied by white.
LinearColour baseColour(const host::MeshNode &node)
{
    return node.artworkImage() ? LinearColour{1.f, 1.f, 1.f} : shapeColour(node);
}

// The vertex attributes of one part as glTF wants them: normals of unit length (a zero normal,
// which the validator refuses, becomes +z).
QJsonObject writePart(GltfBuffer &buffer, const host::MeshPart &part)
{
    const std::vector<VertexRecord> &vertices = part.GetVertices();
    std::vector<float> positions, normals, texCoords;
    positions.reserve(3 * vertices.size());
    normals.reserve(3 * vertices.size());
    texCoords.reserve(2 * vertices.size());
    for (const VertexRecord &v : vertices) {
        positions.insert(positions.end(), v.position, v.position + 3);
        const Vector3 n = NormaliseVector(
            Vector3{v.normal[0], v.normal[1], v.normal[2]}, Vector3{0.f, 0.f, 1.f}, 1e-12f);
        normals.insert(normals.end(), {n.x, n.y, n.z});
        texCoords.insert(texCoords.end(), v.texCoord, v.texCoord + 2);
    }
    const QJsonObject attributes{
        {QStringLiteral("POSITION"), buffer.addFloats(positions, 3, true)},
        {QStringLiteral("NORMAL"), buffer.addFloats(normals, 3, false)},
        {QStringLiteral("TEXCOORD_0"), buffer.addFloats(texCoords, 2, false)}};
    return QJsonObject{{QStringLiteral("attributes"), attributes},
                       {QStringLiteral("indices"), buffer.addIndices(part.indices())}};
}

void insertIfAny(QJsonObject &object, const char *key, const QJsonArray &array)
{
    if (!array.isEmpty()) // glTF refuses empty arrays
        object.insert(QLatin1String(key), array);
}

} // namespace

GltfExporter::GltfExporter(const host::Document &document)
{
    for (INode *node : CollectAllChildren(MakeListOfNodes(document.GetRootNode()))) {
        if (auto *shape = qobject_cast<host::MeshNode *>(node); shape && shape->IsVisible()) {
            Matrix world;
            GetNodeGlobalMatrix(world, shape);
            extendByMesh(m_bounds, *shape->mesh(), world);
        }
    }
    if (!IsBoxEmpty(m_bounds)) {
        m_sceneCentre = Vector3{(m_bounds.min[0] + m_bounds.max[0]) / 2,
                                (m_bounds.min[1] + m_bounds.max[1]) / 2,
                                (m_bounds.min[2] + m_bounds.max[2]) / 2};
    }
    QJsonObject root = gltfAxesRoot();
    m_nodes.append(root);
    QJsonArray children;
    for (INode *child : document.root()->GetChildren())
        children.append(addNode(*static_cast<host::BaseNode *>(child)));
    if (!children.isEmpty())
        root.insert(QStringLiteral("children"), children);
    m_nodes.replace(0, root);
    m_sceneNodes.append(0);
    addCamera(document);
}

int GltfExporter::addNode(const host::BaseNode &node)
{
    const int index = m_nodes.size();
    m_nodes.append(QJsonObject()); // the index is the parent's before the children take theirs
    QJsonObject written;
    if (auto *placed = qobject_cast<const host::SceneNode *>(&node))
        written = gltfTransform(*placed);
    written.insert(QStringLiteral("name"), node.GetName());
    if (auto *shape = qobject_cast<const host::MeshNode *>(&node)) {
        if (shape->IsVisible()) {
            if (const int mesh = meshFor(*shape); mesh >= 0)
                written.insert(QStringLiteral("mesh"), mesh);
        }
    } else if (auto *light = qobject_cast<const host::LightNode *>(&node)) {
        if (light->IsVisible())
            addLight(*light, written);
    }
    QJsonArray children = written.value(QStringLiteral("children")).toArray();
    for (INode *child : node.GetChildren())
        children.append(addNode(*static_cast<host::BaseNode *>(child)));
    if (!children.isEmpty())
        written.insert(QStringLiteral("children"), children);
    m_nodes.replace(index, written);
    return index;
}

void GltfExporter::addLight(const host::LightNode &light, QJsonObject &node)
{
    Matrix world;
    GetNodeGlobalMatrix(world, &light);
    const Vector3 place{world[12], world[13], world[14]};
    if (!std::isfinite(place.x) || !std::isfinite(place.y) || !std::isfinite(place.z))
        return; // a light nowhere lights nothing, as in the pictures
    m_lights.append(gltfLight(light, place, m_sceneCentre));
    const QJsonObject extension{{QStringLiteral("KHR_lights_punctual"),
                                 QJsonObject{{QStringLiteral("light"), m_lights.size() - 1}}}};
    if (light.GetLightMode() != ILightNode::DirectionalLight) {
        node.insert(QStringLiteral("extensions"), extension);
        return;
    }
    // A directional light shines from its place towards the world origin; glTF's points along
    // its node's -z. A child node turns that axis: the world direction taken back into the
    // light's own frame (by the inverse of its world matrix, so that any turn or scale of its
    // parents is undone) is the direction the child's -z must take.
    Vector3 direction = NormaliseVector(ScaleVector(place, -1.f), Vector3{0.f, 0.f, -1.f});
    Matrix inverse;
    MakeIdentity(inverse);
    InvertMatrix(inverse, world);
    TransformDirection(direction, inverse);
    const QQuaternion turn = gltfPointing(direction);
    m_nodes.append(QJsonObject{
        {QStringLiteral("name"), light.GetName() + QStringLiteral(" (direction)")},
        {QStringLiteral("rotation"),
         QJsonArray{double(turn.x()), double(turn.y()), double(turn.z()), double(turn.scalar())}},
        {QStringLiteral("extensions"), extension}});
    QJsonArray children = node.value(QStringLiteral("children")).toArray();
    children.append(m_nodes.size() - 1);
    node.insert(QStringLiteral("children"), children);
}

const QJsonArray &GltfExporter::primitivesOf(const host::Mesh &mesh)
{
    auto found = m_primitives.find(&mesh);
    if (found != m_primitives.end())
        return found->second;
    QJsonArray primitives;
    for (const std::unique_ptr<host::MeshPart> &part : mesh.meshParts()) {
        if (!part->GetVertices().empty() && !part->indices().empty())
            primitives.append(writePart(m_buffer, *part));
    }
    return m_primitives.emplace(&mesh, primitives).first->second;
}

int GltfExporter::meshFor(const host::MeshNode &node)
{
    const host::Mesh *mesh = node.mesh().get();
    if (!mesh)
        return -1;
    const QJsonArray &primitives = primitivesOf(*mesh);
    if (primitives.isEmpty())
        return -1; // glTF has no mesh without primitives
    // The same vertex data with another material is another glTF mesh over the same accessors.
    const int material = materialFor(node);
    const auto key = std::make_pair(mesh, material);
    if (auto found = m_meshIndex.find(key); found != m_meshIndex.end())
        return found->second;
    QJsonArray withMaterial;
    for (const QJsonValue &primitive : primitives) {
        QJsonObject p = primitive.toObject();
        p.insert(QStringLiteral("material"), material);
        withMaterial.append(p);
    }
    m_meshes.append(QJsonObject{{QStringLiteral("name"), node.GetName()},
                                {QStringLiteral("primitives"), withMaterial}});
    return m_meshIndex[key] = m_meshes.size() - 1;
}

int GltfExporter::materialFor(const host::MeshNode &node)
{
    const LinearColour colour = baseColour(node);
    const QImage *image = node.artworkImage().get();
    const int texture = image && !image->isNull() ? textureFor(*image) : -1;
    if (texture < 0)
        image = nullptr; // an image that cannot be encoded is left out, the colour stays
    const auto key = std::make_tuple(colour.r, colour.g, colour.b, image);
    if (auto found = m_materialIndex.find(key); found != m_materialIndex.end())
        return found->second;
    QJsonObject pbr{{QStringLiteral("baseColorFactor"),
                     QJsonArray{double(colour.r), double(colour.g), double(colour.b), 1.0}},
                    {QStringLiteral("metallicFactor"), 0.0},
                    {QStringLiteral("roughnessFactor"), 0.8}}; // printed board and paper
    if (texture >= 0)
        pbr.insert(QStringLiteral("baseColorTexture"),
                   QJsonObject{{QStringLiteral("index"), texture}});
    const QString name = image ? node.artwork() : QStringLiteral("Plain");
    m_materials.append(
        QJsonObject{{QStringLiteral("name"), name}, {QStringLiteral("pbrMetallicRoughness"), pbr}});
    return m_materialIndex[key] = m_materials.size() - 1;
}

int GltfExporter::textureFor(const QImage &image)
{
    if (auto found = m_textureIndex.find(&image); found != m_textureIndex.end())
        return found->second;
    QByteArray png;
    QBuffer device(&png);
    device.open(QIODevice::WriteOnly);
    QImageWriter writer(&device, "png");
    if (!writer.write(image))
        return m_textureIndex[&image] = -1;
    m_images.append(QJsonObject{{QStringLiteral("bufferView"), m_buffer.addBytes(png)},
                                {QStringLiteral("mimeType"), QStringLiteral("image/png")}});
    m_textures.append(QJsonObject{{QStringLiteral("sampler"), 0},
                                  {QStringLiteral("source"), m_images.size() - 1}});
    return m_textureIndex[&image] = m_textures.size() - 1;
}

void GltfExporter::addCamera(const host::Document &document)
{
    const host::Camera &camera = *document.camera();
    Matrix view;
    CalculateViewMatrix(view, camera.GetGlobalMatrix());
    const DepthRange depth = depthRange(m_bounds, view);
    m_cameras.append(gltfCamera(camera, depth.nearPlane, depth.farPlane));
    m_nodes.append(gltfCameraNode(camera, m_cameras.size() - 1));
    m_sceneNodes.append(m_nodes.size() - 1);
}

QJsonObject GltfExporter::asset(const QJsonObject &buffer) const
{
    QJsonObject gltf{{QStringLiteral("asset"),
                      QJsonObject{{QStringLiteral("version"), QStringLiteral("2.0")},
                                  {QStringLiteral("generator"), QStringLiteral("vantrel")}}},
                     {QStringLiteral("scene"), 0},
                     {QStringLiteral("scenes"),
                      QJsonArray{QJsonObject{{QStringLiteral("name"), QStringLiteral("Scene")},
                                             {QStringLiteral("nodes"), m_sceneNodes}}}},
                     {QStringLiteral("nodes"), m_nodes}};
    insertIfAny(gltf, "meshes", m_meshes);
    insertIfAny(gltf, "materials", m_materials);
    insertIfAny(gltf, "textures", m_textures);
    insertIfAny(gltf, "images", m_images);
    insertIfAny(gltf, "cameras", m_cameras);
    insertIfAny(gltf, "accessors", m_buffer.accessors());
    insertIfAny(gltf, "bufferViews", m_buffer.bufferViews());
    if (!m_textures.isEmpty()) {
        gltf.insert(QStringLiteral("samplers"),
                    QJsonArray{QJsonObject{{QStringLiteral("magFilter"), LinearFilter},
                                           {QStringLiteral("minFilter"), LinearMipmapLinearFilter},
                                           {QStringLiteral("wrapS"), ClampToEdge},
                                           {QStringLiteral("wrapT"), ClampToEdge}}});
    }
    if (!m_buffer.data().isEmpty())
        gltf.insert(QStringLiteral("buffers"), QJsonArray{buffer});
    if (!m_lights.isEmpty()) {
        gltf.insert(QStringLiteral("extensionsUsed"),
                    QJsonArray{QStringLiteral("KHR_lights_punctual")});
        gltf.insert(QStringLiteral("extensions"),
                    QJsonObject{{QStringLiteral("KHR_lights_punctual"),
                                 QJsonObject{{QStringLiteral("lights"), m_lights}}}});
    }
    return gltf;
}

QByteArray GltfExporter::gltf() const
{
    // Qt 5's JSON classes hold at most about 128 MB, which big artwork would pass once in base64:
    // the data goes in after the text is made, right after the URI's prefix (the only place
    // where a quote follows "uri": unescaped, so no name can be taken for it).
    static const QByteArray prefix = QByteArrayLiteral("data:application/octet-stream;base64,");
    const QJsonObject buffer{{QStringLiteral("byteLength"), double(m_buffer.data().size())},
                             {QStringLiteral("uri"), QString::fromLatin1(prefix)}};
    QByteArray text = QJsonDocument(asset(buffer)).toJson(QJsonDocument::Indented);
    if (!m_buffer.data().isEmpty()) {
        const QByteArray key = "\"uri\": \"" + prefix;
        const int at = text.indexOf(key);
        Q_ASSERT(at >= 0);
        text.insert(at + key.size(), m_buffer.data().toBase64());
    }
    return text;
}

QByteArray GltfExporter::glb() const
{
    const QJsonObject buffer{{QStringLiteral("byteLength"), double(m_buffer.data().size())}};
    QByteArray json = QJsonDocument(asset(buffer)).toJson(QJsonDocument::Compact);
    while (json.size() % 4)
        json.append(' '); // the JSON chunk is padded with spaces, the binary one with zeros
    const QByteArray &binary = m_buffer.data(); // already a multiple of 4 bytes
    auto word = [](quint32 value) {
        const quint32 little = qToLittleEndian(value);
        return QByteArray(reinterpret_cast<const char *>(&little), 4);
    };
    const quint32 length = 12 + 8 + json.size() + (binary.isEmpty() ? 0 : 8 + binary.size());
    QByteArray glb = word(0x46546C67) + word(2) + word(length); // "glTF", version 2
    glb += word(json.size()) + word(0x4E4F534A) + json;         // "JSON"
    if (!binary.isEmpty())
        glb += word(binary.size()) + word(0x004E4942) + binary; // "BIN\0"
    return glb;
}

} // namespace vantrel::render
