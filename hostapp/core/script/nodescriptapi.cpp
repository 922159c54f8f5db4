// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/script/nodescriptapi.h"

#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/files/scenefile.h"
#include "hostapp/core/scene/generatorregistry.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/core/script/nodekindscriptapi.h"
#include "hostapp/core/script/nodescriptsupport.h"
#include "hostapp/core/script/scriptvalues.h"

#include <QPointer>

namespace vantrel::host {

namespace {

QScriptValue name(QScriptContext *context, QScriptEngine *engine)
{
    BaseNode *node = scriptSelf<BaseNode>(context, engine);
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
    BaseNode *node = scriptSelf<BaseNode>(context, engine);
    if (!node)
        return QScriptValue();
    if (!isWrite(context))
        return node->IsVisible();
    node->SetVisible(context->argument(0).toBool());
    return QScriptValue();
}

QScriptValue type(QScriptContext *context, QScriptEngine *engine)
{
    BaseNode *node = scriptSelf<BaseNode>(context, engine);
    if (!node)
        return QScriptValue();
    return isWrite(context) ? throwReadOnly(context, "type") : QScriptValue(node->GetNodeType());
}

QScriptValue parent(QScriptContext *context, QScriptEngine *engine)
{
    BaseNode *node = scriptSelf<BaseNode>(context, engine);
    if (!node)
        return QScriptValue();
    return isWrite(context) ? throwReadOnly(context, "parent")
                            : nodeScriptRunner(engine).wrap(node->GetParent());
}

QScriptValue children(QScriptContext *context, QScriptEngine *engine)
{
    BaseNode *node = scriptSelf<BaseNode>(context, engine);
    if (!node)
        return QScriptValue();
    if (isWrite(context))
        return throwReadOnly(context, "children");
    const std::vector<INode *> &list = node->GetChildren();
    QScriptValue array = engine->newArray(uint(list.size()));
    for (std::size_t i = 0; i < list.size(); ++i)
        array.setProperty(quint32(i), nodeScriptRunner(engine).wrap(list[i]));
    return array;
}

QScriptValue worldMatrix(QScriptContext *context, QScriptEngine *engine)
{
    BaseNode *node = scriptSelf<BaseNode>(context, engine);
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
    BaseNode *node = scriptSelf<BaseNode>(context, engine);
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
    BaseNode *node = scriptSelf<BaseNode>(context, engine);
    if (!node)
        return QScriptValue();
    if (!context->argument(0).isString())
        return context->throwError(QLatin1String(usage));
    if (!roomForChild(context, node))
        return QScriptValue();
    return nodeScriptRunner(engine).wrap((node->*create)(context->argument(0).toString()));
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
    QPointer<BaseNode> node = scriptSelf<BaseNode>(context, engine);
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
    if (count == 3 && !nodeScriptRunner(engine).ToDictionary(context->argument(2), &values)) {
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
    return nodeScriptRunner(engine).wrap(
        node->createChildMesh(std::move(generator), context->argument(1).toString()));
}

QScriptValue remove(QScriptContext *context, QScriptEngine *engine)
{
    BaseNode *node = scriptSelf<BaseNode>(context, engine);
    if (!node)
        return QScriptValue();
    if (node == node->document()->root())
        return context->throwError(QStringLiteral("The root cannot be removed"));
    // Recorded, never freed at once: the node may be a copy that an open tool window still holds.
    node->document()->removeNodes({node});
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
    addPlacementMembers(engine, prototype);
    if (kind == INode::MeshNodeType)
        addShapeMembers(engine, prototype);
    else if (kind == INode::LightNodeType)
        addLightMembers(engine, prototype);
    return prototype;
}

} // namespace vantrel::host
