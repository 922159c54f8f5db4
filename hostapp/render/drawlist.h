// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/types.h"
#include "hostapp/core/scene/artworkimage.h"
#include "hostapp/core/scene/mesh.h"
#include "hostapp/render/renderexport.h"

#include <vector>

namespace vantrel::host {
class Document;
class MeshNode;
} // namespace vantrel::host

namespace vantrel::render {

// What a picture shows, read from the document on the GUI thread before anything is drawn.
// Nothing here touches OpenGL, so the rules of what is drawn can be tested without a context.

// The lights the shaders take at most, and how many of them cast shadows.
constexpr int MaxLights = 8;
constexpr int MaxShadowLights = 4;

// A colour in linear light (not sRGB), each channel 0..1.
struct LinearColour
{
    float r = 0.f;
    float g = 0.f;
    float b = 0.f;
};

struct DrawItem
{
    host::MeshPtr mesh;  // shared with the node, kept alive until the picture is done
    Matrix world;        // the node's world matrix (row vectors)
    LinearColour albedo; // the shape's own colour; under its artwork where the image is clear
    host::ArtworkImagePtr artwork;  // the image printed through the texture coordinates, or null
    host::MeshNode *node = nullptr; // the shape drawn, for picking in a view
    bool selected = false;          // the shape or a group above it is in the document's selection
};

struct DrawLight
{
    // A point light's world position; for a directional light, which shines from its place
    // towards the origin, the unit vector pointing back towards the light.
    Vector3 position;
    bool directional = false;
    float intensity = 0.f;
    float shadowBlur = 0.f; // radius of the softening on the floor, scene units
    bool castsShadows = false;
};

struct DrawList
{
    std::vector<DrawItem> items;
    std::vector<DrawLight> lights; // at most MaxLights; at most MaxShadowLights cast shadows
    float ambient = 0.f;
    TBBox<float> bounds; // world box of every drawn mesh (from the meshes' own boxes); may be empty
};

// Grows the box by the eight corners of the mesh's own box in world space (corners that are not
// finite are left out). It is a little larger than the box of the world vertices, which is what
// depth ranges, shadow frames and a pick's first test need: room, not a tight fit.
VANTREL_RENDER_EXPORT void
extendByMesh(TBBox<float> &box, const host::Mesh &mesh, const Matrix &world);

// The nodes a picture shows. A shape or a light is drawn when its own visibility flag is on,
// whatever its ancestors' flags say: the host treats visibility as each node's own flag, and Fit
// To View measures exactly those shapes, so the picture frames what the tool fitted. The first
// MaxLights visible lights in pre-order light the scene, and the first MaxShadowLights of them
// whose cast-shadows flag is on cast shadows. In head-light mode the scene's lights are replaced
// by one light at the camera that casts no shadow, of intensity 1 minus the ambient level.
VANTREL_RENDER_EXPORT DrawList collectDrawList(const host::Document &document);

// The colour of a shape: a muted palette colour chosen by what the shape is, its generator's
// identifier and parameter values (for a model, its file), never by its name: the copies of a
// grid or a stack, each with a name of its own, look alike, and shapes of different kinds or
// sizes usually differ.
VANTREL_RENDER_EXPORT LinearColour shapeColour(const host::MeshNode &node);

// sRGB (0..1) to linear light and back, with the plain 2.2 power the shaders use.
VANTREL_RENDER_EXPORT float toLinear(float srgb);

} // namespace vantrel::render
