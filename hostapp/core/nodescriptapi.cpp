// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/nodescriptapi.h"

#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "hostapp/core/document.h"
#include "hostapp/core/generatorregistry.h"
#include "hostapp/core/lightnode.h"
#include "hostapp/core/meshnode.h"
#include "hostapp/core/scriptrunner.h"
#include "hostapp/core/scriptvalues.h"

namespace vantrel::host {

namespace {

ScriptRunner &runner(QScriptEngine *engine)
{
    return *qobject_cast<ScriptRunner *>(engine->parent());
}

// The node the function was called on; null (with a script error thrown) when `this` is no node
// of the document, for example a node whose creation was undone and then forgotten.
template<class Node>
Node *self(QScriptContext *context, QScriptEngine *engine)
{
    auto *node = qobject_cast<Node *>(runner(engine).unwrap(context->thisObject()));
    if (!node)
        context->throwError(QScriptContext::TypeError,
                            QStringLiteral("This node no longer exists"));
    return node;
}

QScriptValue name(QScriptContext *context, QScriptEngine *engine)
{
    BaseNode *node = self<BaseNode>(context, engine);
    if (!node)
        return QScriptValue();
    if (!isWrite(context))
        return node->GetName();
    if (!context->argument(0).isString())
        return context->throwError(QScriptContext::TypeError,
                                   QStringLiteral("name must be a string"));
    node->SetName(context->argument(0).toString());
    return QScriptValue();
}

QScriptValue visible(QScriptContext *context, QScriptEngine *engine)
{
    BaseNode *node = self<BaseNode>(context, engine);
    if (!node)
        return QScriptValue();
    if (!isWrite(context))
        return node->IsVisible();
    node->SetVisible(context->argument(0).toBool());
    return QScriptValue();
}

QScriptValue type(QScriptContext *context, QScriptEngine *engine)
{
    BaseNode *node = self<BaseNode>(context, engine);
    if (!node)
        return QScriptValue();
    return isWrite(context) ? throwReadOnly(context, "type") : QScriptValue(node->GetNodeType());
}

QScriptValue parent(QScriptContext *context, QScriptEngine *engine)
{
    BaseNode *node = self<BaseNode>(context, engine);
    if (!node)
        return QScriptValue();
    return isWrite(context) ? throwReadOnly(context, "parent")
                            : runner(engine).wrap(node->GetParent());
}

QScriptValue children(QScriptContext *context, QScriptEngine *engine)
{
    BaseNode *node = self<BaseNode>(context, engine);
    if (!node)
        return QScriptValue();
    if (isWrite(context))
        return throwReadOnly(context, "children");
    const std::vector<INode *> &list = node->GetChildren();
    QScriptValue array = engine->newArray(uint(list.size()));
    for (std::size_t i = 0; i < list.size(); ++i)
        array.setProperty(quint32(i), runner(engine).wrap(list[i]));
    return array;
}

QScriptValue worldMatrix(QScriptContext *context, QScriptEngine *engine)
{
    BaseNode *node = self<BaseNode>(context, engine);
    if (!node)
        return QScriptValue();
    if (isWrite(context))
        return throwReadOnly(context, "worldMatrix");
    Matrix global;
    GetNodeGlobalMatrix(global, node);
    return toScript(engine, global.m, 16);
}

QScriptValue worldBox(QScriptContext *context, QScriptEngine *engine)
{
    BaseNode *node = self<BaseNode>(context, engine);
    if (!node)
        return QScriptValue();
    if (isWrite(context))
        return throwReadOnly(context, "worldBox");
    const TBBox<float> box = ComputeNodeBBox(node);
    if (IsBoxEmpty(box))
        return engine->nullValue(); // nothing to measure below this node
    const float values[6]
        = {box.min[0], box.min[1], box.min[2], box.max[0], box.max[1], box.max[2]};
    return toScript(engine, values, 6);
}

template<const Vector3 &(ITransformations::*Get)() const,
         void (SceneNode::*Set)(const Vector3 &, bool)>
QScriptValue vectorAccessor(QScriptContext *context, QScriptEngine *engine, const char *what)
{
    SceneNode *node = self<SceneNode>(context, engine);
    if (!node)
        return QScriptValue();
    if (!isWrite(context))
        return toScript(engine, (node->*Get)());
    Vector3 value;
    if (!fromScript(context->argument(0), &value)) {
        return context->throwError(
            QScriptContext::TypeError,
            QStringLiteral("%1 must be an array of three numbers").arg(QLatin1String(what)));
    }
    (node->*Set)(value, false);
    return QScriptValue();
}

void setScale(SceneNode *node, const Vector3 &scale)
{
    node->SetScale(scale, 0);
}

QScriptValue position(QScriptContext *c, QScriptEngine *e)
{
    return vectorAccessor<&ITransformations::GetPosition, &SceneNode::SetPosition>(
        c, e, "position");
}

QScriptValue rotation(QScriptContext *c, QScriptEngine *e)
{
    return vectorAccessor<&ITransformations::GetRotation, &SceneNode::SetRotation>(
        c, e, "rotation");
}

QScriptValue scale(QScriptContext *context, QScriptEngine *engine)
{
    SceneNode *node = self<SceneNode>(context, engine);
    if (!node)
        return QScriptValue();
    if (!isWrite(context))
        return toScript(engine, node->GetScale());
    Vector3 value;
    if (!fromScript(context->argument(0), &value))
        return context->throwError(QScriptContext::TypeError,
                                   QStringLiteral("scale must be an array of three numbers"));
    setScale(node, value);
    return QScriptValue();
}

QScriptValue lightValue(QScriptContext *context,
                        QScriptEngine *engine,
                        const char *what,
                        float (LightNode::*get)() const,
                        void (LightNode::*set)(float))
{
    LightNode *light = self<LightNode>(context, engine);
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
    LightNode *light = self<LightNode>(context, engine);
    if (!light)
        return QScriptValue();
    if (!isWrite(context))
        return light->GetCastShadows();
    light->SetCastShadows(context->argument(0).toBool());
    return QScriptValue();
}

QScriptValue generator(QScriptContext *context, QScriptEngine *engine)
{
    MeshNode *mesh = self<MeshNode>(context, engine);
    if (!mesh)
        return QScriptValue();
    return isWrite(context) ? throwReadOnly(context, "generator")
                            : QScriptValue(QString::fromLatin1(mesh->generator()->GetTypeId()));
}

QScriptValue params(QScriptContext *context, QScriptEngine *engine)
{
    MeshNode *mesh = self<MeshNode>(context, engine);
    if (!mesh)
        return QScriptValue();
    return isWrite(context) ? throwReadOnly(context, "params")
                            : engine->toScriptValue(mesh->generator()->parameters());
}

QScriptValue vertexCount(QScriptContext *context, QScriptEngine *engine)
{
    MeshNode *mesh = self<MeshNode>(context, engine);
    if (!mesh)
        return QScriptValue();
    return isWrite(context) ? throwReadOnly(context, "vertexCount")
                            : QScriptValue(mesh->mesh()->vertexCount());
}

// Writes one parameter through the generator's own limits; false with a message when the
// generator has no such parameter, the value is of the wrong kind or the generator refuses it
// (a model file that cannot be read: the message names the file).
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
    if (!generator.setProperty(name.toUtf8().constData(), value)) {
        *error = QStringLiteral("Parameter \"%1\" of %2 cannot take %3")
                     .arg(name, QLatin1String(generator.GetTypeId()), value.toString());
        return false;
    }
    if (!generator.refusal().isEmpty()) {
        *error = generator.refusal();
        return false;
    }
    return true;
}

QScriptValue setParam(QScriptContext *context, QScriptEngine *engine)
{
    MeshNode *mesh = self<MeshNode>(context, engine);
    if (!mesh)
        return QScriptValue();
    if (context->argumentCount() != 2)
        return context->throwError(QStringLiteral("Usage: node.setParam(name, value)"));
    QString error;
    if (!writeParameter(*mesh->generator(),
                        context->argument(0).toString(),
                        context->argument(1).toVariant(),
                        &error))
        return context->throwError(error);
    return QScriptValue();
}

QScriptValue nameArgument(QScriptContext *context, int index, bool *ok)
{
    const QScriptValue value = context->argument(index);
    *ok = value.isString();
    return value;
}

QScriptValue addGroup(QScriptContext *context, QScriptEngine *engine)
{
    BaseNode *node = self<BaseNode>(context, engine);
    bool ok = false;
    const QScriptValue name = nameArgument(context, 0, &ok);
    if (!node || !ok)
        return node ? context->throwError(QStringLiteral("Usage: node.addGroup(name)"))
                    : QScriptValue();
    return runner(engine).wrap(node->CreateChildGroup(name.toString()));
}

QScriptValue addLight(QScriptContext *context, QScriptEngine *engine)
{
    BaseNode *node = self<BaseNode>(context, engine);
    bool ok = false;
    const QScriptValue name = nameArgument(context, 0, &ok);
    if (!node || !ok)
        return node ? context->throwError(QStringLiteral("Usage: node.addLight(name)"))
                    : QScriptValue();
    return runner(engine).wrap(node->CreateChildLight(name.toString()));
}

QScriptValue addShape(QScriptContext *context, QScriptEngine *engine)
{
    BaseNode *node = self<BaseNode>(context, engine);
    if (!node)
        return QScriptValue();
    const int count = context->argumentCount();
    if (count < 2 || count > 3 || !context->argument(0).isString()
        || !context->argument(1).isString())
        return context->throwError(
            QStringLiteral("Usage: node.addShape(generatorId, name[, params])"));
    const QString id = context->argument(0).toString();
    std::unique_ptr<ShapeGenerator> generator = createGenerator(id.toLatin1());
    if (!generator)
        return context->throwError(QStringLiteral("Unknown generator: %1").arg(id));
    // The parameters go onto the generator before it joins the scene, so that a bad one leaves
    // the scene untouched.
    if (count == 3) {
        QVariantMap values;
        if (!runner(engine).ToDictionary(context->argument(2), &values))
            return context->throwError(QStringLiteral("The parameters have to be a dictionary"));
        QString error;
        for (auto it = values.constBegin(); it != values.constEnd(); ++it) {
            if (!writeParameter(*generator, it.key(), it.value(), &error))
                return context->throwError(error);
        }
    }
    return runner(engine).wrap(
        node->createChildMesh(std::move(generator), context->argument(1).toString()));
}

QScriptValue remove(QScriptContext *context, QScriptEngine *engine)
{
    BaseNode *node = self<BaseNode>(context, engine);
    if (!node)
        return QScriptValue();
    if (node == node->document()->root())
        return context->throwError(QStringLiteral("The root cannot be removed"));
    node->document()->DeleteNodes({node});
    return QScriptValue();
}

} // namespace

QScriptValue makeNodePrototype(QScriptEngine *engine, int kind)
{
    QScriptValue prototype = engine->newObject();
    defineAccessor(engine, prototype, "name", name);
    defineAccessor(engine, prototype, "visible", visible);
    defineAccessor(engine, prototype, "type", type);
    defineAccessor(engine, prototype, "parent", parent);
    defineAccessor(engine, prototype, "children", children);
    defineAccessor(engine, prototype, "worldMatrix", worldMatrix);
    defineAccessor(engine, prototype, "worldBox", worldBox);
    defineMethod(engine, prototype, "addGroup", addGroup, 1);
    defineMethod(engine, prototype, "addShape", addShape, 3);
    defineMethod(engine, prototype, "addLight", addLight, 1);
    defineMethod(engine, prototype, "remove", remove, 0);
    if (kind == INode::RootNodeType)
        return prototype;
    defineAccessor(engine, prototype, "position", position);
    defineAccessor(engine, prototype, "rotation", rotation);
    defineAccessor(engine, prototype, "scale", scale);
    if (kind == INode::MeshNodeType) {
        defineAccessor(engine, prototype, "generator", generator);
        defineAccessor(engine, prototype, "params", params);
        defineAccessor(engine, prototype, "vertexCount", vertexCount);
        defineMethod(engine, prototype, "setParam", setParam, 2);
    } else if (kind == INode::LightNodeType) {
        defineAccessor(engine, prototype, "intensity", intensity);
        defineAccessor(engine, prototype, "shadowBlur", shadowBlur);
        defineAccessor(engine, prototype, "castShadows", castShadows);
    }
    return prototype;
}

} // namespace vantrel::host
