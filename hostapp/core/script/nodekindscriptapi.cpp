// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/script/nodekindscriptapi.h"

#include "hostapp/core/scene/lightnode.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/core/script/nodescriptsupport.h"
#include "hostapp/core/script/scriptvalues.h"

#include <QMetaProperty>

#include <climits>

namespace vantrel::host {

namespace {

void setPosition(SceneNode &node, const Vector3 &value)
{
    node.SetPosition(value, false);
}

void setRotation(SceneNode &node, const Vector3 &value)
{
    node.SetRotation(value, false);
}

void setScale(SceneNode &node, const Vector3 &value)
{
    node.SetScale(value, 0);
}

template<const Vector3 &(ITransformations::*Get)() const, void (*Set)(SceneNode &, const Vector3 &)>
QScriptValue vectorAccessor(QScriptContext *context, QScriptEngine *engine, const char *what)
{
    QPointer<SceneNode> node = scriptSelf<SceneNode>(context, engine);
    if (!node)
        return QScriptValue();
    if (!isWrite(context))
        return toScript(engine, (node->*Get)());
    // The array's elements may be getters that change the scene.
    Vector3 value;
    const NumberRead read = fromScript(context->argument(0), &value);
    if (read != NumberRead::Read)
        return throwNumberError(context, read, what, true);
    if (!stillThere(context, engine, node))
        return QScriptValue();
    Set(*node, value);
    return QScriptValue();
}

QScriptValue position(QScriptContext *c, QScriptEngine *e)
{
    return vectorAccessor<&ITransformations::GetPosition, setPosition>(c, e, "position");
}

QScriptValue rotation(QScriptContext *c, QScriptEngine *e)
{
    return vectorAccessor<&ITransformations::GetRotation, setRotation>(c, e, "rotation");
}

QScriptValue scale(QScriptContext *c, QScriptEngine *e)
{
    return vectorAccessor<&ITransformations::GetScale, setScale>(c, e, "scale");
}

QScriptValue lightValue(QScriptContext *context,
                        QScriptEngine *engine,
                        const char *what,
                        float (LightNode::*get)() const,
                        void (LightNode::*set)(float))
{
    LightNode *light = scriptSelf<LightNode>(context, engine);
    return light ? numberAccessor(context, what, *light, get, set) : QScriptValue();
}

QScriptValue intensity(QScriptContext *c, QScriptEngine *e)
{
    return lightValue(c, e, "intensity", &LightNode::GetIntensity, &LightNode::SetIntensity);
}

QScriptValue shadowBlur(QScriptContext *c, QScriptEngine *e)
{
    return lightValue(c, e, "shadowBlur", &LightNode::GetShadowBlur, &LightNode::SetShadowBlur);
}

QScriptValue castShadows(QScriptContext *context, QScriptEngine *engine)
{
    LightNode *light = scriptSelf<LightNode>(context, engine);
    if (!light)
        return QScriptValue();
    if (!isWrite(context))
        return light->GetCastShadows();
    light->SetCastShadows(context->argument(0).toBool());
    return QScriptValue();
}

QScriptValue generator(QScriptContext *context, QScriptEngine *engine)
{
    MeshNode *mesh = scriptSelf<MeshNode>(context, engine);
    if (!mesh)
        return QScriptValue();
    return isWrite(context) ? throwReadOnly(context, "generator")
                            : QScriptValue(QString::fromLatin1(mesh->generator()->GetTypeId()));
}

QScriptValue params(QScriptContext *context, QScriptEngine *engine)
{
    MeshNode *mesh = scriptSelf<MeshNode>(context, engine);
    if (!mesh)
        return QScriptValue();
    return isWrite(context) ? throwReadOnly(context, "params")
                            : engine->toScriptValue(mesh->generator()->parameters());
}

QScriptValue vertexCount(QScriptContext *context, QScriptEngine *engine)
{
    MeshNode *mesh = scriptSelf<MeshNode>(context, engine);
    if (!mesh)
        return QScriptValue();
    return isWrite(context) ? throwReadOnly(context, "vertexCount")
                            : QScriptValue(mesh->mesh()->vertexCount());
}

QScriptValue artwork(QScriptContext *context, QScriptEngine *engine)
{
    MeshNode *mesh = scriptSelf<MeshNode>(context, engine);
    if (!mesh)
        return QScriptValue();
    if (!isWrite(context))
        return mesh->artwork();
    if (!context->argument(0).isString())
        return context->throwError(QScriptContext::TypeError,
                                   QStringLiteral("artwork must be a string"));
    QString error;
    if (!mesh->setArtwork(context->argument(0).toString(), &error))
        return context->throwError(error);
    return QScriptValue();
}

// A parameter's value as the script wrote it, for messages: numbers the way scripts print them.
QString valueText(const QVariant &value)
{
    if (value.userType() == QMetaType::Double || value.userType() == QMetaType::Float)
        return QScriptValue(value.toDouble()).toString();
    return value.toString();
}

// Whether a value stands for a number the parameter cannot hold: NaN, an infinity or a number
// beyond single precision for any number parameter, and beyond the int range for a whole one.
// Qt would turn such a number into infinity, or into an int past its range, before the
// generator's own limits could see it.
bool isUnfitNumber(const QVariant &value, int parameterType)
{
    if (parameterType != QMetaType::Float && parameterType != QMetaType::Double
        && parameterType != QMetaType::Int)
        return false;
    double number = 0;
    bool isNumber = false;
    if (value.userType() == QMetaType::QString)
        number = value.toString().trimmed().toDouble(&isNumber);
    else if (value.userType() != QMetaType::Bool && value.canConvert<double>())
        number = value.toDouble(&isNumber);
    if (!isNumber)
        return false;
    if (!fitsSinglePrecision(number))
        return true;
    return parameterType == QMetaType::Int && (number < INT_MIN || number > INT_MAX);
}

QScriptValue setParam(QScriptContext *context, QScriptEngine *engine)
{
    QPointer<MeshNode> mesh = scriptSelf<MeshNode>(context, engine);
    if (!mesh)
        return QScriptValue();
    if (context->argumentCount() != 2 || !context->argument(0).isString())
        return context->throwError(QStringLiteral("Usage: node.setParam(name, value)"));
    // Read before anything changes: the value's getters may throw or change the scene.
    QVariant value;
    if (!nodeScriptRunner(engine).readValue(context->argument(1), &value)
        || !stillThere(context, engine, mesh))
        return QScriptValue();
    QString error;
    if (!writeParameter(*mesh->generator(), context->argument(0).toString(), value, &error))
        return context->throwError(error);
    return QScriptValue();
}
} // namespace

bool writeParameter(ShapeGenerator &generator,
                    const QString &name,
                    const QVariant &value,
                    QString *error)
{
    if (!generator.parameterNames().contains(name)) {
        *error = QStringLiteral("Unknown parameter \"%1\" for %2")
                     .arg(name, QLatin1String(generator.GetTypeId()));
        return false;
    }
    const QByteArray property = name.toUtf8();
    const QMetaObject *meta = generator.metaObject();
    const int type = meta->property(meta->indexOfProperty(property.constData())).userType();
    if (isUnfitNumber(value, type) || !generator.setProperty(property.constData(), value)) {
        *error = QStringLiteral("Parameter \"%1\" of %2 cannot take %3")
                     .arg(name, QLatin1String(generator.GetTypeId()), valueText(value));
        return false;
    }
    if (!generator.refusal().isEmpty()) {
        *error = generator.refusal();
        return false;
    }
    return true;
}

void addPlacementMembers(QScriptEngine *engine, QScriptValue &prototype)
{
    defineAccessor(engine, prototype, "position", position);
    defineAccessor(engine, prototype, "rotation", rotation);
    defineAccessor(engine, prototype, "scale", scale);
}

void addShapeMembers(QScriptEngine *engine, QScriptValue &prototype)
{
    defineAccessor(engine, prototype, "artwork", artwork);
    defineAccessor(engine, prototype, "generator", generator);
    defineAccessor(engine, prototype, "params", params);
    defineAccessor(engine, prototype, "vertexCount", vertexCount);
    defineMethod(engine, prototype, "setParam", setParam, 2);
}

void addLightMembers(QScriptEngine *engine, QScriptValue &prototype)
{
    defineAccessor(engine, prototype, "intensity", intensity);
    defineAccessor(engine, prototype, "shadowBlur", shadowBlur);
    defineAccessor(engine, prototype, "castShadows", castShadows);
}

} // namespace vantrel::host
