// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/types.h"
#include "hostapp/render/renderexport.h"

#include <QJsonObject>
#include <QQuaternion>

namespace vantrel::host {
class Camera;
class LightNode;
class SceneNode;
} // namespace vantrel::host

namespace vantrel::render {

// Where things go in an exported glTF scene. The host is Z up in centimetres with row-vector
// matrices; glTF is Y up in metres with column vectors. The scene tree is written unchanged under
// one root node that carries the change of axes and units (a quarter turn about x and a scale of
// 0.01), so every node keeps exactly the position, rotation and scale the host shows. The camera
// sits outside that root, directly in glTF's world, where its near and far planes are metres.

// glTF's world point (metres, Y up) for a host world point (centimetres, Z up).
VANTREL_RENDER_EXPORT Vector3 toGltfWorld(const Vector3 &hostWorld);

// The rotation glTF's column-vector convention needs for the host's Euler angles (degrees, about
// x then y then z, applied to row vectors): the transpose of the host's rotation matrix.
VANTREL_RENDER_EXPORT QQuaternion gltfRotation(const Vector3 &anglesDegrees);

// The node's translation, rotation and scale as glTF properties; values that equal glTF's
// defaults are left out.
QJsonObject gltfTransform(const host::SceneNode &node);

// The root node carrying the change of axes and units, without its children.
QJsonObject gltfAxesRoot();

// KHR_lights_punctual's light for the host light, white. hostWorld is where it is, sceneCentre
// the centre of the shapes (host world). See docs/export.md for how intensity maps.
QJsonObject
gltfLight(const host::LightNode &light, const Vector3 &hostWorld, const Vector3 &sceneCentre);

// The rotation that turns a node's -z axis towards direction (in that node's own frame), which is
// how a glTF directional light points.
QQuaternion gltfPointing(const Vector3 &direction);

// The perspective camera and the node that places it at the eye, looking at the target with the
// image's top up; depth is the near and far planes in centimetres.
QJsonObject gltfCamera(const host::Camera &camera, float nearPlane, float farPlane);
QJsonObject gltfCameraNode(const host::Camera &camera, int cameraIndex);

} // namespace vantrel::render
