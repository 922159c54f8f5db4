// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scenedump.h"

#include "host/hostfunctions.h"
#include "hostapp/core/basenode.h"
#include "hostapp/core/document.h"
#include "hostapp/core/lightnode.h"
#include "hostapp/core/meshnode.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace vantrel::host {

namespace {

QJsonArray toJson(const Vector3 &v)
{
    return QJsonArray{double(v.x), double(v.y), double(v.z)};
}

QJsonObject nodeToJson(const BaseNode &node)
{
    QJsonObject object{{QStringLiteral("name"), node.GetName()},
                       {QStringLiteral("type"), node.GetNodeType()},
                       {QStringLiteral("visible"), node.IsVisible()}};
    if (const auto *scene = qobject_cast<const SceneNode *>(&node)) {
        object.insert(QStringLiteral("position"), toJson(scene->GetPosition()));
        object.insert(QStringLiteral("rotation"), toJson(scene->GetRotation()));
        object.insert(QStringLiteral("scale"), toJson(scene->GetScale()));
    }
    if (const auto *mesh = qobject_cast<const MeshNode *>(&node)) {
        object.insert(QStringLiteral("generator"),
                      QString::fromLatin1(mesh->generator()->GetTypeId()));
        object.insert(QStringLiteral("params"),
                      QJsonObject::fromVariantMap(mesh->generator()->parameters()));
        object.insert(QStringLiteral("vertexCount"), mesh->mesh()->vertexCount());
    }
    if (const auto *light = qobject_cast<const LightNode *>(&node)) {
        object.insert(QStringLiteral("intensity"), double(light->GetIntensity()));
        object.insert(QStringLiteral("shadowBlur"), double(light->GetShadowBlur()));
        object.insert(QStringLiteral("castShadows"), light->GetCastShadows());
        object.insert(QStringLiteral("lightMode"), light->GetLightMode());
    }
    QJsonArray children;
    for (std::size_t i = 0; i < node.GetChildren().size(); ++i)
        children.append(nodeToJson(*node.childNode(i)));
    object.insert(QStringLiteral("children"), children);
    return object;
}

QString pathOf(const BaseNode *node)
{
    QStringList steps;
    for (; node->parentNode(); node = node->parentNode())
        steps.prepend(QString::number(GetNodePos(node)));
    return steps.join(QLatin1Char('/'));
}

} // namespace

QJsonObject sceneDumpObject(const Document &document)
{
    const Camera &camera = *document.camera();
    QJsonArray selection;
    for (INode *node : document.GetSelection())
        selection.append(pathOf(static_cast<BaseNode *>(node)));
    return QJsonObject{
        {QStringLiteral("ambient"), double(document.GetAmbientIntensity())},
        {QStringLiteral("lightingMode"), document.lightingMode()},
        {QStringLiteral("camera"),
         QJsonObject{{QStringLiteral("target"), toJson(camera.GetTarget())},
                     {QStringLiteral("distance"), double(camera.GetDistance())},
                     {QStringLiteral("yaw"), double(camera.yaw())},
                     {QStringLiteral("pitch"), double(camera.pitch())},
                     {QStringLiteral("fieldOfView"), double(camera.GetFieldOfView())},
                     {QStringLiteral("aspectRatio"), double(camera.GetAspectRatio())}}},
        {QStringLiteral("selection"), selection},
        {QStringLiteral("root"), nodeToJson(*document.root())}};
}

QByteArray dumpScene(const Document &document)
{
    return QJsonDocument(sceneDumpObject(document)).toJson(QJsonDocument::Indented);
}

} // namespace vantrel::host
