// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/render/gltfplacement.h"

#include "geometry/geometry.h"
#include "hostapp/core/scene/camera.h"
#include "hostapp/core/scene/lightnode.h"
#include "hostapp/core/scene/scenenode.h"

#include <QJsonArray>
#include <QMatrix3x3>
#include <QVector3D>

#include <algorithm>
#include <cmath>

namespace vantrel::render {

namespace {

constexpr float MetresPerUnit = 0.01f; // scene units are centimetres

// A direction from the host's axes to glTF's: z up becomes y up, and y (away from the viewer of
// the default camera) becomes -z, which keeps the axes right-handed.
QVector3D toGltfAxes(const Vector3 &v)
{
    return QVector3D(v.x, v.z, -v.y);
}

QJsonArray array3(float x, float y, float z)
{
    return QJsonArray{double(x), double(y), double(z)};
}

QJsonArray quaternionArray(const QQuaternion &q)
{
    // glTF wants unit quaternions; Qt's are within a float's rounding of one.
    const QQuaternion n = q.normalized();
    return QJsonArray{double(n.x()), double(n.y()), double(n.z()), double(n.scalar())};
}

} // namespace

Vector3 toGltfWorld(const Vector3 &hostWorld)
{
    const QVector3D v = toGltfAxes(hostWorld) * MetresPerUnit;
    return Vector3{v.x(), v.y(), v.z()};
}

QQuaternion gltfRotation(const Vector3 &anglesDegrees)
{
    Matrix rotation;
    MakeIdentity(rotation);
    SetRotationDegrees(rotation, anglesDegrees.x, anglesDegrees.y, anglesDegrees.z);
    // The host maps a row vector p to p * R; glTF maps a column vector to M * p, so M = R^T:
    // element (row i, column j) of M is the host's element (j, i).
    float values[9];
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j)
            values[3 * i + j] = rotation[4 * j + i];
    }
    return QQuaternion::fromRotationMatrix(QMatrix3x3(values));
}

QJsonObject gltfTransform(const host::SceneNode &node)
{
    QJsonObject trs;
    const Vector3 &p = node.GetPosition();
    if (p.x != 0.f || p.y != 0.f || p.z != 0.f)
        trs.insert(QStringLiteral("translation"), array3(p.x, p.y, p.z));
    const Vector3 &r = node.GetRotation();
    if (r.x != 0.f || r.y != 0.f || r.z != 0.f)
        trs.insert(QStringLiteral("rotation"), quaternionArray(gltfRotation(r)));
    const Vector3 &s = node.GetScale();
    if (s.x != 1.f || s.y != 1.f || s.z != 1.f)
        trs.insert(QStringLiteral("scale"), array3(s.x, s.y, s.z));
    return trs;
}

QJsonObject gltfAxesRoot()
{
    return QJsonObject{
        {QStringLiteral("name"), QStringLiteral("Scene (Z up, centimetres)")},
        {QStringLiteral("rotation"),
         quaternionArray(QQuaternion::fromAxisAndAngle(1.f, 0.f, 0.f, -90.f))},
        {QStringLiteral("scale"), array3(MetresPerUnit, MetresPerUnit, MetresPerUnit)}};
}

QJsonObject
gltfLight(const host::LightNode &light, const Vector3 &hostWorld, const Vector3 &sceneCentre)
{
    const bool directional = light.GetLightMode() == ILightNode::DirectionalLight;
    // The host's lights do not fade with distance: intensity 1 lights a surface facing it fully
    // wherever it is. A directional light does the same in glTF, in lux. A point light fades with
    // the square of the distance there, so its candela are chosen to give the host's light at the
    // centre of the shapes.
    float intensity = std::max(0.f, light.GetIntensity());
    if (!directional) {
        const float metres = MetresPerUnit
                             * std::sqrt(DotProduct(SubtractVectors(sceneCentre, hostWorld),
                                                    SubtractVectors(sceneCentre, hostWorld)));
        intensity *= std::max(metres, 0.01f) * std::max(metres, 0.01f);
    }
    return QJsonObject{{QStringLiteral("name"), light.GetName()},
                       {QStringLiteral("type"),
                        directional ? QStringLiteral("directional") : QStringLiteral("point")},
                       {QStringLiteral("color"), array3(1.f, 1.f, 1.f)},
                       {QStringLiteral("intensity"), double(intensity)}};
}

QQuaternion gltfPointing(const Vector3 &direction)
{
    return QQuaternion::rotationTo(QVector3D(0.f, 0.f, -1.f),
                                   QVector3D(direction.x, direction.y, direction.z).normalized());
}

QJsonObject gltfCamera(const host::Camera &camera, float nearPlane, float farPlane)
{
    constexpr double Pi = 3.14159265358979323846;
    const QJsonObject perspective{{QStringLiteral("yfov"), camera.GetFieldOfView() * Pi / 180.0},
                                  {QStringLiteral("aspectRatio"), double(camera.GetAspectRatio())},
                                  {QStringLiteral("znear"), double(nearPlane * MetresPerUnit)},
                                  {QStringLiteral("zfar"), double(farPlane * MetresPerUnit)}};
    return QJsonObject{{QStringLiteral("name"), QStringLiteral("Camera")},
                       {QStringLiteral("type"), QStringLiteral("perspective")},
                       {QStringLiteral("perspective"), perspective}};
}

QJsonObject gltfCameraNode(const host::Camera &camera, int cameraIndex)
{
    // The camera's global matrix rows: 0 the viewing direction, 1 towards the image's left, 2
    // towards its top. A glTF camera looks along its -z with its +y up and +x to the right.
    const Matrix &m = camera.GetGlobalMatrix();
    auto row = [&m](int r) { return toGltfAxes(Vector3{m[4 * r], m[4 * r + 1], m[4 * r + 2]}); };
    const QQuaternion rotation
        = QQuaternion::fromAxes(-row(1).normalized(), row(2).normalized(), -row(0).normalized());
    const Vector3 eye = toGltfWorld(camera.position());
    return QJsonObject{{QStringLiteral("name"), QStringLiteral("Camera")},
                       {QStringLiteral("camera"), cameraIndex},
                       {QStringLiteral("translation"), array3(eye.x, eye.y, eye.z)},
                       {QStringLiteral("rotation"), quaternionArray(rotation)}};
}

} // namespace vantrel::render
