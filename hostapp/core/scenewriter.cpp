// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scenewriter.h"

#include "hostapp/core/basenode.h"
#include "hostapp/core/document.h"
#include "hostapp/core/lightnode.h"
#include "hostapp/core/meshnode.h"
#include "hostapp/core/scenefile.h"
#include "hostapp/core/scenereader.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace vantrel::host {

namespace {

namespace key = scenekey;

// Whether some node lies deeper than the files allow; path then holds the child indices down to
// the first such node. The recursion stops there, so it is bounded however deep the scene is.
bool tooDeep(const BaseNode &node, std::vector<int> *path)
{
    for (std::size_t i = 0; i < node.GetChildren().size(); ++i) {
        path->push_back(int(i));
        if (int(path->size()) > SceneFile::MaximumDepth || tooDeep(*node.childNode(i), path))
            return true;
        path->pop_back();
    }
    return false;
}

QJsonArray vectorJson(const Vector3 &v)
{
    // Doubles converted from the floats: the writer prints the shortest text that reads back as
    // the same double, so the float comes back exactly.
    return QJsonArray{double(v.x), double(v.y), double(v.z)};
}

QJsonObject nodeJson(const BaseNode &node)
{
    QJsonObject object{{key::name, node.GetName()}, {key::visible, node.IsVisible()}};
    if (const auto *scene = qobject_cast<const SceneNode *>(&node)) {
        object.insert(key::position, vectorJson(scene->GetPosition()));
        object.insert(key::rotation, vectorJson(scene->GetRotation()));
        object.insert(key::scale, vectorJson(scene->GetScale()));
    }
    QLatin1String type = key::group;
    if (const auto *mesh = qobject_cast<const MeshNode *>(&node)) {
        type = key::shape;
        const ShapeGenerator &generator = *mesh->generator();
        object.insert(key::generator, QString::fromLatin1(generator.GetTypeId()));
        QJsonObject params;
        const QVariantMap values = generator.parameters();
        for (auto it = values.constBegin(); it != values.constEnd(); ++it) {
            params.insert(it.key(),
                          it->userType() == QMetaType::Float ? QJsonValue(double(it->toFloat()))
                                                             : QJsonValue::fromVariant(*it));
        }
        object.insert(key::params, params);
    }
    if (const auto *light = qobject_cast<const LightNode *>(&node)) {
        type = key::light;
        object.insert(key::intensity, double(light->GetIntensity()));
        object.insert(key::shadowBlur, double(light->GetShadowBlur()));
        object.insert(key::castShadows, light->GetCastShadows());
        object.insert(key::lightMode, light->GetLightMode());
    }
    object.insert(key::type, type);
    QJsonArray children;
    for (std::size_t i = 0; i < node.GetChildren().size(); ++i)
        children.append(nodeJson(*node.childNode(i)));
    object.insert(key::children, children);
    return object;
}

// A node's place as the selection stores it: child indices from the root, such as "0/2".
QString nodePath(const BaseNode *node)
{
    QStringList steps;
    for (; node->parentNode(); node = node->parentNode()) {
        const std::vector<INode *> &siblings = node->parentNode()->GetChildren();
        steps.prepend(
            QString::number(std::find(siblings.begin(), siblings.end(), node) - siblings.begin()));
    }
    return steps.join(QLatin1Char('/'));
}

} // namespace

QByteArray SceneWriter::write(const Document &document)
{
    const Camera &camera = *document.camera();
    QJsonArray selection;
    for (INode *node : document.GetSelection())
        selection.append(nodePath(static_cast<const BaseNode *>(node)));
    QJsonArray children;
    const BaseNode &root = *document.root();
    for (std::size_t i = 0; i < root.GetChildren().size(); ++i)
        children.append(nodeJson(*root.childNode(i)));
    const QJsonObject top{
        {key::format, QLatin1String(SceneFile::FormatName)},
        {key::version, SceneFile::CurrentVersion},
        {key::ambient, double(document.GetAmbientIntensity())},
        {key::lightingMode, document.lightingMode()},
        {key::camera,
         QJsonObject{{key::target, vectorJson(camera.GetTarget())},
                     {key::distance, double(camera.GetDistance())},
                     {key::yaw, double(camera.yaw())},
                     {key::pitch, double(camera.pitch())},
                     {key::fieldOfView, double(camera.GetFieldOfView())},
                     {key::aspectRatio, double(camera.GetAspectRatio())}}},
        {key::selection, selection},
        {key::root, QJsonObject{{key::children, children}}},
    };
    return QJsonDocument(top).toJson(QJsonDocument::Indented);
}

QString SceneWriter::tooDeepPlace(const Document &document)
{
    std::vector<int> path;
    if (!tooDeep(*document.root(), &path))
        return QString();
    QString place = key::root;
    for (int index : path)
        place = SceneReader::childPlace(place, index);
    return place;
}

} // namespace vantrel::host
