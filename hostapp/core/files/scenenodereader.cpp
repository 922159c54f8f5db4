// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/files/scenenodereader.h"

#include "hostapp/core/files/jsonfieldchecker.h"
#include "hostapp/core/files/scenefile.h"
#include "hostapp/core/files/scenereader.h"
#include "hostapp/core/models/artworkfile.h"
#include "hostapp/core/scene/basenode.h"
#include "hostapp/core/scene/generatorregistry.h"
#include "hostapp/core/scene/generators/externalmodelgenerator.h"
#include "hostapp/core/scene/lightnode.h"
#include "hostapp/core/scene/meshnode.h"

#include <QDir>
#include <QJsonArray>
#include <QMetaProperty>

namespace vantrel::host {

namespace {

namespace key = scenekey;

const JsonFieldChecker::Keys s_nodeKeys
    = {key::name, key::type, key::visible, key::position, key::rotation, key::scale, key::children};
const JsonFieldChecker::Keys s_shapeKeys = {key::artwork, key::generator, key::params};
const JsonFieldChecker::Keys s_lightKeys
    = {key::intensity, key::shadowBlur, key::castShadows, key::lightMode};

QString field(const QString &place, QLatin1String name)
{
    return JsonFieldChecker::field(place, name);
}

QString found(const QJsonValue &value)
{
    return JsonFieldChecker::found(value);
}

} // namespace

bool SceneNodeReader::readNode(const QJsonValue &value,
                               BaseNode *parent,
                               const QString &place,
                               int depth)
{
    if (depth > SceneFile::MaximumDepth)
        return m_check.fail(place, SceneReader::depthProblem());
    if (!value.isObject())
        return m_check.fail(place,
                            QStringLiteral("expected an object, found %1").arg(found(value)));
    const QJsonObject object = value.toObject();
    Common common;
    if (!readCommon(object, place, &common))
        return false;

    SceneNode *node = nullptr;
    if (common.type == key::shape)
        node = readShape(object, parent, place, common.name);
    else if (common.type == key::light)
        node = readLight(object, parent, place, common.name);
    else
        node = static_cast<SceneNode *>(parent->CreateChildGroup(common.name));
    if (!node)
        return false;
    node->applyVisible(common.visible);
    node->applyPosition(common.position);
    node->applyRotation(common.rotation);
    node->applyScale(common.scale);
    return readChildren(object, node, place, depth);
}

bool SceneNodeReader::readCommon(const QJsonObject &object, const QString &place, Common *common)
{
    if (!readType(object, place, &common->type))
        return false;
    const QJsonValue nameValue = object.value(key::name);
    if (!nameValue.isUndefined() && !nameValue.isString())
        return m_check.fail(field(place, key::name),
                            QStringLiteral("expected a string, found %1").arg(found(nameValue)));
    common->name = nameValue.toString();
    const QString nameProblem = SceneFile::textProblem(common->name, SceneFile::MaximumNameLength);
    if (!nameProblem.isEmpty())
        return m_check.fail(field(place, key::name),
                            QStringLiteral("the name %1").arg(nameProblem));
    return m_check.optional(object, place, key::visible, &common->visible)
           && m_check.optional(
               object, place, key::position, &common->position, SceneFile::MaximumPosition)
           && m_check.optional(
               object, place, key::rotation, &common->rotation, SceneFile::MaximumRotation)
           && m_check.optional(object, place, key::scale, &common->scale, SceneFile::MaximumScale);
}

// The type, and with it the fields the node may have.
bool SceneNodeReader::readType(const QJsonObject &object, const QString &place, QString *type)
{
    const QJsonValue typeValue = object.value(key::type);
    *type = typeValue.toString();
    if (!m_check.required(object, place, key::type))
        return false;
    if (*type != key::group && *type != key::shape && *type != key::light)
        return m_check.fail(field(place, key::type),
                            QStringLiteral("expected \"group\", \"shape\" or \"light\", found %1")
                                .arg(found(typeValue)));
    const JsonFieldChecker::Keys ownKeys = *type == key::shape   ? s_shapeKeys
                                           : *type == key::light ? s_lightKeys
                                                                 : JsonFieldChecker::Keys{};
    return m_check.onlyKnownKeys(
        object, place, {s_nodeKeys, ownKeys}, *type, {s_shapeKeys, s_lightKeys});
}

SceneNode *SceneNodeReader::readShape(const QJsonObject &object,
                                      BaseNode *parent,
                                      const QString &place,
                                      const QString &name)
{
    const QJsonValue generatorValue = object.value(key::generator);
    if (!m_check.required(object, place, key::generator))
        return nullptr;
    if (!generatorValue.isString()) {
        m_check.fail(field(place, key::generator),
                     QStringLiteral("expected a string, found %1").arg(found(generatorValue)));
        return nullptr;
    }
    std::unique_ptr<ShapeGenerator> generator = createGenerator(generatorValue.toString().toUtf8());
    if (!generator) {
        m_check.fail(field(place, key::generator),
                     QStringLiteral("unknown generator %1").arg(found(generatorValue)));
        return nullptr;
    }
    if (!readParams(object.value(key::params), generator.get(), field(place, key::params)))
        return nullptr;
    QString path;
    ArtworkImagePtr image;
    if (!readArtwork(object, place, &path, &image))
        return nullptr;
    MeshNode *mesh = parent->createChildMesh(std::move(generator), name);
    mesh->setArtworkDirectory(m_modelDirectory);
    mesh->applyArtwork(path, std::move(image));
    return mesh;
}

bool SceneNodeReader::readArtwork(const QJsonObject &object,
                                  const QString &place,
                                  QString *path,
                                  ArtworkImagePtr *image)
{
    const QString here = field(place, key::artwork);
    if (!m_check.optional(object, place, key::artwork, path))
        return false;
    if (const QString problem = SceneFile::textProblem(*path, SceneFile::MaximumArtworkPathLength);
        !problem.isEmpty())
        return m_check.fail(here, QStringLiteral("the text %1").arg(problem));
    if (path->isEmpty() || m_modelDirectory.isNull())
        return true; // none, or a save's check: the path was read and its type is right
    QString error;
    // filePath joins without tidying, as MeshNode::resolveArtwork does for later writes.
    *image = ArtworkFile::load(QDir(m_modelDirectory).filePath(*path), &error);
    return *image || m_check.fail(here, error);
}

SceneNode *SceneNodeReader::readLight(const QJsonObject &object,
                                      BaseNode *parent,
                                      const QString &place,
                                      const QString &name)
{
    auto *light = static_cast<LightNode *>(parent->CreateChildLight(name));
    float intensity = light->GetIntensity();
    float shadowBlur = light->GetShadowBlur();
    bool castShadows = light->GetCastShadows();
    int lightMode = light->GetLightMode();
    if (!m_check.optional(object, place, key::intensity, &intensity, SceneFile::MaximumOther)
        || !m_check.optional(object, place, key::shadowBlur, &shadowBlur, SceneFile::MaximumOther)
        || !m_check.optional(object, place, key::castShadows, &castShadows)
        || !SceneReader::readMode(m_check, object, place, key::lightMode, &lightMode))
        return nullptr;
    light->applyIntensity(intensity);
    light->applyShadowBlur(shadowBlur);
    light->applyCastShadows(castShadows);
    light->applyLightMode(lightMode);
    return light;
}

bool SceneNodeReader::readChildren(const QJsonObject &object,
                                   SceneNode *node,
                                   const QString &place,
                                   int depth)
{
    const QJsonValue children = object.value(key::children);
    if (children.isUndefined())
        return true;
    if (!children.isArray())
        return m_check.fail(field(place, key::children),
                            QStringLiteral("expected an array, found %1").arg(found(children)));
    const QJsonArray childArray = children.toArray();
    for (int i = 0; i < childArray.size(); ++i) {
        if (!readNode(childArray.at(i), node, SceneReader::childPlace(place, i), depth + 1))
            return false;
    }
    return true;
}

bool SceneNodeReader::readParams(const QJsonValue &value,
                                 ShapeGenerator *generator,
                                 const QString &place)
{
    if (value.isUndefined())
        return true;
    if (!value.isObject())
        return m_check.fail(place,
                            QStringLiteral("expected an object, found %1").arg(found(value)));
    const QJsonObject params = value.toObject();
    const QStringList names = generator->parameterNames();
    auto *model = qobject_cast<ExternalModelGenerator *>(generator);
    if (model)
        model->setBaseDirectory(m_modelDirectory);
    for (auto it = params.constBegin(); it != params.constEnd(); ++it) {
        if (!names.contains(it.key()))
            return m_check.fail(place,
                                QStringLiteral("%1 has no parameter %2")
                                    .arg(QString::fromLatin1(generator->GetTypeId()),
                                         JsonFieldChecker::quoted(it.key())));
        const QString here = place + QLatin1Char('.') + it.key();
        const QByteArray name = it.key().toLatin1();
        const QMetaObject *meta = generator->metaObject();
        const int type = meta->property(meta->indexOfProperty(name.constData())).userType();
        QVariant wanted;
        if (!readParam(it.value(), type, here, &wanted))
            return false;
        if (model && m_modelDirectory.isNull())
            continue; // a save's check: the path was read and its type is right
        if (!applyParam(generator, name.constData(), it.value(), wanted, here))
            return false;
    }
    return true;
}

bool SceneNodeReader::readParam(const QJsonValue &given,
                                int type,
                                const QString &here,
                                QVariant *wanted)
{
    double d = 0.0;
    int i = 0;
    bool b = false;
    switch (type) {
    case QMetaType::Float:
        if (!m_check.parse(given, here, &d, SceneFile::MaximumOther))
            return false;
        *wanted = QVariant(float(d));
        return true;
    case QMetaType::Double:
        if (!m_check.parse(given, here, &d, SceneFile::MaximumOther))
            return false;
        *wanted = QVariant(d);
        return true;
    case QMetaType::Int:
        if (!m_check.parse(given, here, &i))
            return false;
        *wanted = QVariant(i);
        return true;
    case QMetaType::Bool:
        if (!m_check.parse(given, here, &b))
            return false;
        *wanted = QVariant(b);
        return true;
    case QMetaType::QString:
        if (!given.isString())
            return m_check.fail(here,
                                QStringLiteral("expected a string, found %1").arg(found(given)));
        if (const QString problem
            = SceneFile::textProblem(given.toString(), SceneFile::MaximumTextLength);
            !problem.isEmpty())
            return m_check.fail(here, QStringLiteral("the text %1").arg(problem));
        *wanted = QVariant(given.toString());
        return true;
    default:
        return m_check.fail(here, QStringLiteral("a parameter of this type cannot be read"));
    }
}

bool SceneNodeReader::applyParam(ShapeGenerator *generator,
                                 const char *name,
                                 const QJsonValue &given,
                                 const QVariant &wanted,
                                 const QString &here)
{
    // The WRITE accessor limits the value; one it changes is outside what the shape takes. A few
    // values are refused outright, with their own reason (a model file that cannot be read).
    const QMetaObject *meta = generator->metaObject();
    const QMetaProperty property = meta->property(meta->indexOfProperty(name));
    property.write(generator, wanted);
    if (!generator->refusal().isEmpty())
        return m_check.fail(here, generator->refusal());
    const QVariant taken = property.read(generator);
    if (taken == wanted)
        return true;
    const QString takenText = taken.userType() == QMetaType::Float
                                  ? JsonFieldChecker::floatText(taken.toFloat())
                                  : found(QJsonValue::fromVariant(taken));
    return m_check.fail(
        here,
        QStringLiteral("%1 does not take %2 (it would use %3)")
            .arg(QString::fromLatin1(generator->GetTypeId()), found(given), takenText));
}

} // namespace vantrel::host
