// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/script/nodescriptapi.h"

#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/files/scenefile.h"
#include "hostapp/core/scene/generatorregistry.h"
#include "hostapp/core/scene/lightnode.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/core/script/scriptrunner.h"
#include "hostapp/core/script/scriptvalues.h"

#include <QMetaProperty>
#include <QPointer>

#include <climits>
#include <cmath>

namespace vantrel::host {

namespace {

ScriptRunner &runner(QScriptEngine *engine)
{
    return *qobject_cast<ScriptRunner *>(engine->parent());
}

const QString &goneMessage()
{
    static const QString message = QStringLiteral("This node no longer exists");
    return message;
}

// The node the function was called on; null (with a script error thrown) when `this` is no node
// of the document's scene: a node removed, or whose creation was undone, still has its script
// object, and a node a tool window's Cancel took back has one that points nowhere.
template<class Node>
Node *self(QScriptContext *context, QScriptEngine *engine)
{
    BaseNode *base = runner(engine).unwrap(context->thisObject());
    auto *node = qobject_cast<Node *>(base);
    if (!node || !base->isInScene()) {
        context->throwError(QScriptContext::TypeError, goneMessage());
        return nullptr;
    }
    return node;
}

// After reading an argument, which may run the script's own code: whether the node is still in
// the scene (false, with the error thrown, when not, or when that code threw).
template<class Node>
bool stillThere(QScriptContext *context, QScriptEngine *engine, const QPointer<Node> &node)
{
    if (engine->hasUncaughtException())
        return false;
    if (!node || !node->isInScene()) {
        context->throwError(QScriptContext::TypeError, goneMessage());
        return false;
    }
    return true;
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
    QPointer<SceneNode> node = self<SceneNode>(context, engine);
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

QScriptValue setParam(QScriptContext *context, QScriptEngine *engine)
{
    QPointer<MeshNode> mesh = self<MeshNode>(context, engine);
    if (!mesh)
        return QScriptValue();
    if (context->argumentCount() != 2 || !context->argument(0).isString())
        return context->throwError(QStringLiteral("Usage: node.setParam(name, value)"));
    // Read before anything changes: the value's getters may throw or change the scene.
    QVariant value;
    if (!runner(engine).readValue(context->argument(1), &value)
        || !stillThere(context, engine, mesh))
        return QScriptValue();
    QString error;
    if (!writeParameter(*mesh->generator(), context->argument(0).toString(), value, &error))
        return context->throwError(error);
    return QScriptValue();
}

// Whether a new child of node stays within the depth a scene file can hold (the root's children
// are at depth 1); throws when it would not. Deeper trees could not be saved, and would exhaust
// the call stack of whatever walks them.
bool roomForChild(QScriptContext *context, const BaseNode *node)
{
    int depth = 1;
    for (const BaseNode *n = node; n->parentNode(); n = n->parentNode())
        ++depth;
    if (depth <= SceneFile::MaximumDepth)
        return true;
    context->throwError(QStringLiteral("Nodes cannot be nested more than %1 levels deep")
                            .arg(SceneFile::MaximumDepth));
    return false;
}

QScriptValue addChild(QScriptContext *context,
                      QScriptEngine *engine,
                      const char *usage,
                      INode *(BaseNode::*create)(const QString &) )
{
    BaseNode *node = self<BaseNode>(context, engine);
    if (!node)
        return QScriptValue();
    if (!context->argument(0).isString())
        return context->throwError(QLatin1String(usage));
    if (!roomForChild(context, node))
        return QScriptValue();
    return runner(engine).wrap((node->*create)(context->argument(0).toString()));
}

QScriptValue addGroup(QScriptContext *context, QScriptEngine *engine)
{
    return addChild(context, engine, "Usage: node.addGroup(name)", &BaseNode::CreateChildGroup);
}

QScriptValue addLight(QScriptContext *context, QScriptEngine *engine)
{
    return addChild(context, engine, "Usage: node.addLight(name)", &BaseNode::CreateChildLight);
}

QScriptValue addShape(QScriptContext *context, QScriptEngine *engine)
{
    QPointer<BaseNode> node = self<BaseNode>(context, engine);
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
    // The parameters are read, and go onto the generator, before it joins the scene, so that a
    // bad one leaves the scene untouched. Reading runs the dictionary's getters, which may
    // throw or take this node out of the scene.
    QVariantMap values;
    if (count == 3 && !runner(engine).ToDictionary(context->argument(2), &values)) {
        return engine->hasUncaughtException()
                   ? QScriptValue()
                   : context->throwError(QStringLiteral("The parameters have to be a dictionary"));
    }
    if (!stillThere(context, engine, node) || !roomForChild(context, node))
        return QScriptValue();
    QString error;
    for (auto it = values.constBegin(); it != values.constEnd(); ++it) {
        if (!writeParameter(*generator, it.key(), it.value(), &error))
            return context->throwError(error);
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
