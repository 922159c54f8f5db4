// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/script/documentscriptapi.h"

#include "host/itool.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/document/documentcontext.h"
#include "hostapp/core/document/headlessuserinterface.h"
#include "hostapp/core/document/toolregistry.h"
#include "hostapp/core/files/scenedump.h"
#include "hostapp/core/scene/basenode.h"
#include "hostapp/core/script/scriptrunner.h"
#include "hostapp/core/script/scriptvalues.h"
#include "hostapp/core/script/windowscriptapi.h"

namespace vantrel::host {

namespace {

ScriptRunner &runner(QScriptEngine *engine)
{
    return *qobject_cast<ScriptRunner *>(engine->parent());
}

Document &document(QScriptEngine *engine)
{
    return runner(engine).document();
}

QScriptValue root(QScriptContext *context, QScriptEngine *engine)
{
    return isWrite(context) ? throwReadOnly(context, "root")
                            : runner(engine).wrap(document(engine).root());
}

QScriptValue selection(QScriptContext *context, QScriptEngine *engine)
{
    if (!isWrite(context)) {
        const std::vector<INode *> &selected = document(engine).GetSelection();
        QScriptValue array = engine->newArray(uint(selected.size()));
        for (std::size_t i = 0; i < selected.size(); ++i)
            array.setProperty(quint32(i), runner(engine).wrap(selected[i]));
        return array;
    }
    std::vector<INode *> nodes;
    const ScriptRunner::NodeListRead read
        = context->argument(0).isArray() ? runner(engine).readNodeList(context->argument(0), &nodes)
                                         : ScriptRunner::NodeListRead::NotNodes;
    switch (read) {
    case ScriptRunner::NodeListRead::Read:
        break;
    case ScriptRunner::NodeListRead::NotNodes:
        return context->throwError(QScriptContext::TypeError,
                                   QStringLiteral("selection must be an array of nodes"));
    case ScriptRunner::NodeListRead::Gone:
        return context->throwError(QScriptContext::TypeError,
                                   QStringLiteral("This node no longer exists"));
    case ScriptRunner::NodeListRead::Threw:
        return QScriptValue();
    }
    document(engine).SetSelection(nodes, Document::ReplaceSelection);
    return QScriptValue();
}

QScriptValue ambient(QScriptContext *context, QScriptEngine *engine)
{
    return numberAccessor(context,
                          "ambient",
                          document(engine),
                          &Document::GetAmbientIntensity,
                          &Document::SetAmbientIntensity);
}

QScriptValue count(QScriptContext *context, QScriptEngine *engine, bool redo)
{
    if (isWrite(context))
        return throwReadOnly(context, redo ? "redoCount" : "undoCount");
    const UndoHistory &history = document(engine).history();
    return redo ? history.redoCount() : history.undoCount();
}

QScriptValue undoCount(QScriptContext *c, QScriptEngine *e)
{
    return count(c, e, false);
}

QScriptValue redoCount(QScriptContext *c, QScriptEngine *e)
{
    return count(c, e, true);
}

QScriptValue undo(QScriptContext *, QScriptEngine *engine)
{
    return runner(engine).undoFromScript(false);
}

QScriptValue redo(QScriptContext *, QScriptEngine *engine)
{
    return runner(engine).undoFromScript(true);
}

// Nodes below the root in pre-order whose name is exactly name; the first one only when
// firstOnly is set.
std::vector<INode *> findByName(Document &document, const QString &name, bool firstOnly)
{
    std::vector<INode *> found;
    std::vector<INode *> pending(document.root()->GetChildren().rbegin(),
                                 document.root()->GetChildren().rend());
    while (!pending.empty()) {
        INode *node = pending.back();
        pending.pop_back();
        if (node->GetName() == name) {
            found.push_back(node);
            if (firstOnly)
                break;
        }
        const std::vector<INode *> &children = node->GetChildren();
        pending.insert(pending.end(), children.rbegin(), children.rend());
    }
    return found;
}

// The one argument of findNode, findNodes and runTool: a string, so that no conversion runs
// script code (an object's toString) in the middle of the call.
bool nameArgument(QScriptContext *context, const char *usage, QString *name)
{
    if (!context->argument(0).isString()) {
        context->throwError(QLatin1String(usage));
        return false;
    }
    *name = context->argument(0).toString();
    return true;
}

QScriptValue findNode(QScriptContext *context, QScriptEngine *engine)
{
    QString name;
    if (!nameArgument(context, "Usage: document.findNode(name)", &name))
        return QScriptValue();
    const std::vector<INode *> found = findByName(document(engine), name, true);
    return found.empty() ? engine->nullValue() : runner(engine).wrap(found.front());
}

QScriptValue findNodes(QScriptContext *context, QScriptEngine *engine)
{
    QString name;
    if (!nameArgument(context, "Usage: document.findNodes(name)", &name))
        return QScriptValue();
    const std::vector<INode *> found = findByName(document(engine), name, false);
    QScriptValue array = engine->newArray(uint(found.size()));
    for (std::size_t i = 0; i < found.size(); ++i)
        array.setProperty(quint32(i), runner(engine).wrap(found[i]));
    return array;
}

QScriptValue toolTitles(QScriptContext *, QScriptEngine *engine)
{
    QStringList titles;
    if (ToolRegistry *registry = runner(engine).registry()) {
        for (const ITool *tool : registry->toolsByOrder())
            titles.append(tool->GetTitle());
    }
    return engine->toScriptValue(titles);
}

QScriptValue runTool(QScriptContext *context, QScriptEngine *engine)
{
    QString title;
    if (!nameArgument(context, "Usage: document.runTool(title)", &title))
        return QScriptValue();
    ToolRegistry *registry = runner(engine).registry();
    ITool *tool = registry ? registry->findTool(title) : nullptr;
    if (!tool)
        return context->throwError(QStringLiteral("No tool is titled \"%1\"").arg(title));
    DocumentContext &documentContext = runner(engine).context();
    if (!tool->IsEnabled(documentContext))
        return context->throwError(QStringLiteral("Tool is disabled: %1").arg(title));
    auto *ui = qobject_cast<HeadlessUserInterface *>(documentContext.GetUserInterface());
    // A window still open is closed as Cancel would close it, and deleted now: its undo group
    // must be settled before the next tool opens a group of its own.
    if (QDialog *open = runner(engine).openWindow()) {
        open->reject();
        delete open;
    }
    const int messagesBefore = ui ? ui->messages().size() : 0;
    tool->Execute(documentContext);
    // The text of the message the tool showed, if it showed one.
    if (ui && ui->messages().size() > messagesBefore)
        return ui->messages().last().text;
    return QString();
}

QScriptValue window(QScriptContext *context, QScriptEngine *engine)
{
    return isWrite(context) ? throwReadOnly(context, "window")
                            : wrapWindow(engine, runner(engine).openWindow());
}

QScriptValue dump(QScriptContext *, QScriptEngine *engine)
{
    return QString::fromUtf8(dumpScene(document(engine)));
}

// ---- camera ----

QScriptValue cameraTarget(QScriptContext *context, QScriptEngine *engine)
{
    Camera &camera = *document(engine).camera();
    if (!isWrite(context))
        return toScript(engine, camera.GetTarget());
    Vector3 target;
    const NumberRead read = fromScript(context->argument(0), &target);
    if (read != NumberRead::Read)
        return throwNumberError(context, read, "target", true);
    camera.SetTarget(target);
    return QScriptValue();
}

QScriptValue cameraNumber(QScriptContext *context,
                          QScriptEngine *engine,
                          const char *what,
                          float (Camera::*get)() const,
                          void (Camera::*set)(float))
{
    return numberAccessor(context, what, *document(engine).camera(), get, set);
}

QScriptValue cameraDistance(QScriptContext *c, QScriptEngine *e)
{
    return cameraNumber(c, e, "distance", &Camera::GetDistance, &Camera::SetDistance);
}

QScriptValue cameraFieldOfView(QScriptContext *c, QScriptEngine *e)
{
    return cameraNumber(c, e, "fieldOfView", &Camera::GetFieldOfView, &Camera::setFieldOfView);
}

QScriptValue cameraAspectRatio(QScriptContext *c, QScriptEngine *e)
{
    return cameraNumber(c, e, "aspectRatio", &Camera::GetAspectRatio, &Camera::SetAspectRatio);
}

QScriptValue cameraYaw(QScriptContext *c, QScriptEngine *e)
{
    return cameraNumber(c, e, "yaw", &Camera::yaw, &Camera::setYaw);
}

QScriptValue cameraPitch(QScriptContext *c, QScriptEngine *e)
{
    return cameraNumber(c, e, "pitch", &Camera::pitch, &Camera::setPitch);
}

QScriptValue cameraGlobalMatrix(QScriptContext *context, QScriptEngine *engine)
{
    return isWrite(context) ? throwReadOnly(context, "globalMatrix")
                            : toScript(engine, document(engine).camera()->GetGlobalMatrix().m, 16);
}

} // namespace

QScriptValue makeDocumentObject(QScriptEngine *engine)
{
    QScriptValue camera = engine->newObject();
    defineAccessor(engine, camera, "target", cameraTarget);
    defineAccessor(engine, camera, "distance", cameraDistance);
    defineAccessor(engine, camera, "fieldOfView", cameraFieldOfView);
    defineAccessor(engine, camera, "aspectRatio", cameraAspectRatio);
    defineAccessor(engine, camera, "yaw", cameraYaw);
    defineAccessor(engine, camera, "pitch", cameraPitch);
    defineAccessor(engine, camera, "globalMatrix", cameraGlobalMatrix);

    QScriptValue object = engine->newObject();
    defineAccessor(engine, object, "root", root);
    defineAccessor(engine, object, "selection", selection);
    defineAccessor(engine, object, "ambient", ambient);
    object.setProperty(
        QStringLiteral("camera"), camera, QScriptValue::ReadOnly | QScriptValue::Undeletable);
    defineAccessor(engine, object, "undoCount", undoCount);
    defineAccessor(engine, object, "redoCount", redoCount);
    defineAccessor(engine, object, "window", window);
    defineMethod(engine, object, "findNode", findNode, 1);
    defineMethod(engine, object, "findNodes", findNodes, 1);
    defineMethod(engine, object, "undo", undo, 0);
    defineMethod(engine, object, "redo", redo, 0);
    defineMethod(engine, object, "toolTitles", toolTitles, 0);
    defineMethod(engine, object, "runTool", runTool, 1);
    defineMethod(engine, object, "dump", dump, 0);
    return object;
}

} // namespace vantrel::host
