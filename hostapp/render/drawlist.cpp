// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/render/drawlist.h"

#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "host/ilightnode.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/generators/lengthlimits.h"
#include "hostapp/core/scene/meshnode.h"

#include <QByteArray>
#include <QCryptographicHash>
#include <QVariantMap>

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <unordered_set>

namespace vantrel::render {

namespace {

// Muted print colours (sRGB): cloth, board and paper rather than plastic primaries, so that the
// shading stays readable on every one of them.
constexpr float Palette[][3] = {
    {0.66f, 0.25f, 0.22f}, // brick red
    {0.22f, 0.33f, 0.55f}, // navy
    {0.80f, 0.62f, 0.26f}, // ochre
    {0.30f, 0.52f, 0.38f}, // bottle green
    {0.86f, 0.82f, 0.70f}, // cream
    {0.50f, 0.32f, 0.48f}, // plum
    {0.22f, 0.53f, 0.58f}, // teal
    {0.45f, 0.47f, 0.52f}, // slate
};

DrawLight sceneLight(const INode *node, const ILightNode *light)
{
    Matrix world;
    GetNodeGlobalMatrix(world, node);
    DrawLight result;
    result.position = Vector3(world[12], world[13], world[14]);
    result.directional = light->GetLightMode() == ILightNode::DirectionalLight;
    if (result.directional) {
        const Vector3 p = result.position;
        const float length = std::sqrt(p.x * p.x + p.y * p.y + p.z * p.z);
        // A directional light standing at the origin has no direction: it shines straight down.
        result.position
            = length > 0.f ? Vector3(p.x / length, p.y / length, p.z / length) : Vector3(0, 0, 1);
    }
    result.intensity = std::max(0.f, light->GetIntensity());
    // Scripts can write any number; NaN softens nothing and the softening ends at ten metres.
    const float blur = light->GetShadowBlur();
    result.shadowBlur = blur > 0.f ? std::min(blur, host::MaximumLength) : 0.f;
    result.castsShadows = light->GetCastShadows();
    return result;
}

} // namespace

void extendByMesh(TBBox<float> &box, const host::Mesh &mesh, const Matrix &world)
{
    const TBBox<float> &local = mesh.localBox();
    if (IsBoxEmpty(local))
        return;
    for (int corner = 0; corner < 8; ++corner) {
        Vector3 p((corner & 1) ? local.max[0] : local.min[0],
                  (corner & 2) ? local.max[1] : local.min[1],
                  (corner & 4) ? local.max[2] : local.min[2]);
        TransformPoint(p, world);
        if (std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z))
            ExtendBox(box, p);
    }
}

float toLinear(float srgb)
{
    return std::pow(std::clamp(srgb, 0.f, 1.f), 2.2f);
}

LinearColour shapeColour(const host::MeshNode &node)
{
    // The identifier and the values in name order (QVariantMap is sorted), numbers written out
    // alike whatever their type, so that a 20 stored as an integer and as a double are one shape.
    // A model's values name its file: one file, one colour.
    const host::ShapeGenerator &generator = *node.generator();
    QByteArray key(generator.GetTypeId());
    const QVariantMap values = generator.parameters();
    for (auto value = values.begin(); value != values.end(); ++value) {
        key += '\n' + value.key().toUtf8() + '=';
        bool number = false;
        const double d = value.value().toDouble(&number);
        key += number && value.value().type() != QVariant::String
                   ? QByteArray::number(d, 'g', 7)
                   : value.value().toString().toUtf8();
    }
    // A cryptographic digest of the key gives the same colour on every machine and in every run;
    // qHash would not (a per-process seed, and a CPU-dependent function for strings).
    const QByteArray digest = QCryptographicHash::hash(key, QCryptographicHash::Sha1);
    const auto check = quint8(digest.at(0));
    const float *srgb = Palette[check % (sizeof Palette / sizeof Palette[0])];
    return LinearColour{toLinear(srgb[0]), toLinear(srgb[1]), toLinear(srgb[2])};
}

DrawList collectDrawList(const host::Document &document)
{
    DrawList list;
    list.ambient = std::max(0.f, document.GetAmbientIntensity());
    const std::vector<INode *> nodes = CollectAllChildren(MakeListOfNodes(document.GetRootNode()));
    int shadowLights = 0;
    // Shapes that share a mesh are copies of one shape (or of one kind and values), so the
    // colour is worked out once per mesh: a grid of thousands of copies reads its values once.
    std::unordered_map<const host::Mesh *, LinearColour> colours;
    const std::unordered_set<const INode *> selection(document.GetSelection().begin(),
                                                      document.GetSelection().end());
    auto isSelected = [&selection](const INode *node) {
        for (; node && !selection.empty(); node = node->GetParent()) {
            if (selection.count(node))
                return true;
        }
        return false;
    };
    for (INode *node : nodes) {
        if (!node->IsVisible())
            continue;
        if (auto *meshNode = qobject_cast<host::MeshNode *>(node)) {
            DrawItem item;
            item.mesh = meshNode->mesh();
            GetNodeGlobalMatrix(item.world, node);
            auto colour = colours.find(item.mesh.get());
            if (colour == colours.end())
                colour = colours.emplace(item.mesh.get(), shapeColour(*meshNode)).first;
            item.albedo = colour->second;
            if (meshNode->artworkImage() && !meshNode->artworkImage()->isNull())
                item.artwork = meshNode->artworkImage();
            item.node = meshNode;
            item.selected = isSelected(node);
            extendByMesh(list.bounds, *item.mesh, item.world);
            list.items.push_back(std::move(item));
        } else if (const auto *light = qobject_cast<ILightNode *>(node)) {
            if (document.lightingMode() != host::Document::SceneLights
                || int(list.lights.size()) >= MaxLights)
                continue;
            DrawLight drawn = sceneLight(node, light);
            const Vector3 &p = drawn.position;
            if (!std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.z))
                continue; // a light nowhere lights nothing
            drawn.castsShadows = drawn.castsShadows && shadowLights < MaxShadowLights;
            shadowLights += drawn.castsShadows ? 1 : 0;
            list.lights.push_back(drawn);
        }
    }
    if (document.lightingMode() == host::Document::HeadLight) {
        DrawLight head;
        head.position = document.camera()->position();
        head.intensity = std::max(0.f, 1.f - list.ambient);
        list.lights.push_back(head);
    }
    return list;
}

} // namespace vantrel::render
