// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/commands/demo.h"

#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "host/icamera.h"
#include "host/ilightnode.h"
#include "host/itool.h"
#include "hostapp/core/commands/samplescene.h"
#include "hostapp/core/commands/session.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/document/headlessuserinterface.h"
#include "hostapp/core/files/scenefile.h"
#include "hostapp/core/scene/scenenode.h"
#include "hostapp/ui/panelaccess.h"

#include <QAction>
#include <QCoreApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QPushButton>
#include <QTextStream>

#include <cmath>
#include <utility>

namespace vantrel::host {

namespace {

QString format(const Vector3 &v)
{
    return QStringLiteral("(%1, %2, %3)")
        .arg(double(v.x), 0, 'f', 2)
        .arg(double(v.y), 0, 'f', 2)
        .arg(double(v.z), 0, 'f', 2);
}

void printTools(const ToolRegistry &registry, const DocumentContext &context, QTextStream &out)
{
    out << "Registered tools, in tool-list order:\n";
    out << QStringLiteral("  %1  %2  %3  %4\n")
               .arg(QStringLiteral("order"), -5)
               .arg(QStringLiteral("title"), -20)
               .arg(QStringLiteral("shortcut"), -8)
               .arg(QStringLiteral("enabled"));
    for (const ITool *tool : registry.toolsByOrder()) {
        const QString shortcut = tool->GetShortcut().toString();
        out << QStringLiteral("  %1  %2  %3  %4\n")
                   .arg(tool->GetOrder(), -5)
                   .arg(tool->GetTitle(), -20)
                   .arg(shortcut.isEmpty() ? QStringLiteral("-") : shortcut, -8)
                   .arg(tool->IsEnabled(context) ? QStringLiteral("yes") : QStringLiteral("no"));
    }
}

void printPlacement(const std::vector<INode *> &nodes, QTextStream &out)
{
    for (INode *node : nodes) {
        const auto *transformations = qobject_cast<ITransformations *>(node);
        const TBBox<float> box = ComputeNodeBBox(node);
        out << QStringLiteral("  %1  position %2  lowest point z = %3\n")
                   .arg(node->GetName(), -10)
                   .arg(format(transformations->GetPosition()), -26)
                   .arg(double(box.min[2]), 0, 'f', 4);
    }
}

void printSteps(const Document &document, double milliseconds, QTextStream &out)
{
    out << QStringLiteral("took %1 ms; undo steps: %2 (\"%3\")\n")
               .arg(milliseconds, 0, 'f', 3)
               .arg(document.history().undoCount())
               .arg(document.history().undoText());
}

// What a user does with a tool window once it is open: move its sliders and press OK. The
// window is the tool's own, driven through its real property panel.
using Settings = std::vector<std::pair<const char *, double>>;
bool driveWindow(Session &session,
                 const QString &opener,
                 const Settings &settings,
                 QTextStream &out,
                 QTextStream &err)
{
    QDialog *window = session.userInterface().openWindow();
    PanelAccess *panel = FindPanel(window);
    auto *ok = window ? window->findChild<QPushButton *>(QStringLiteral("ok")) : nullptr;
    if (!panel || !ok) {
        err << "vantrel: " << opener << " opened no settings window\n";
        return false;
    }
    out << "window \"" << window->windowTitle() << "\":";
    for (const auto &[property, value] : settings) {
        panel->setPanelValue(QLatin1String(property), value);
        out << ' ' << property << ' ' << panel->panelValue(QLatin1String(property)).toDouble();
    }
    out << ", OK\n";
    ok->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return true;
}

// A tool window opened from its tool-bar button.
bool runToolbarWindow(Session &session,
                      const QString &buttonId,
                      const Settings &settings,
                      QTextStream &out,
                      QTextStream &err)
{
    QAction *button = nullptr;
    for (QAction *action : session.userInterface().toolbarActions()) {
        if (action->property("buttonId").toString() == buttonId)
            button = action;
    }
    if (!button) {
        err << "vantrel: the plug-in put no \"" << buttonId << "\" button on the tool bar\n";
        return false;
    }
    session.document().history().setNextStepName(button->text());
    button->trigger();
    return driveWindow(
        session, QStringLiteral("the \"%1\" button").arg(button->text()), settings, out, err);
}

// A tool window opened from the tool list, as tools without a tool-bar button are.
bool runListedWindow(Session &session,
                     const QString &title,
                     const Settings &settings,
                     QTextStream &out,
                     QTextStream &err)
{
    ITool *tool = session.tools().findTool(title);
    if (!tool) {
        err << "vantrel: the plug-in registered no \"" << title << "\" tool\n";
        return false;
    }
    session.document().history().setNextStepName(title);
    tool->Execute(session.context());
    return driveWindow(session, QStringLiteral("\"%1\"").arg(title), settings, out, err);
}

void printLights(const Document &document, QTextStream &out)
{
    const std::vector<INode *> nodes = CollectAllChildren(document.GetRootNode()->GetChildren());
    for (INode *node : nodes) {
        const auto *light = qobject_cast<ILightNode *>(node);
        if (!light)
            continue;
        out << QStringLiteral("  %1  %2  position %3  intensity %4  shadow blur %5\n")
                   .arg(node->GetName(), -10)
                   .arg(node->IsVisible() ? QStringLiteral("shown") : QStringLiteral("hidden"), -6)
                   .arg(format(qobject_cast<ITransformations *>(node)->GetPosition()), -26)
                   .arg(double(light->GetIntensity()), 0, 'f', 2)
                   .arg(double(light->GetShadowBlur()), 0, 'f', 2);
    }
    out << QStringLiteral("  ambient %1\n").arg(double(document.GetAmbientIntensity()), 0, 'f', 2);
}

void printCamera(const Document &document, const QString &when, QTextStream &out)
{
    const ICamera *camera = document.GetCamera();
    out << QStringLiteral("  %1: target %2  distance %3  aspect ratio %4\n")
               .arg(when, -6)
               .arg(format(camera->GetTarget()), -24)
               .arg(double(camera->GetDistance()), 0, 'f', 2)
               .arg(double(camera->GetAspectRatio()), 0, 'f', 3);
}

// The group Step and Repeat made: what it holds and the room the grid takes.
void printGrid(const INode *group, QTextStream &out)
{
    const std::vector<INode *> &members = group->GetChildren();
    const TBBox<float> box = ComputeNodeBBox(group);
    out << QStringLiteral(
               "  group \"%1\": %2 boxes (\"%3\" to \"%4\"), the gift box and %5 copies\n")
               .arg(group->GetName())
               .arg(members.size())
               .arg(members.front()->GetName(), members.back()->GetName())
               .arg(members.size() - 1);
    out << QStringLiteral("  grid size %1 x %2 x %3 from %4\n")
               .arg(double(box.max[0] - box.min[0]), 0, 'f', 2)
               .arg(double(box.max[1] - box.min[1]), 0, 'f', 2)
               .arg(double(box.max[2] - box.min[2]), 0, 'f', 2)
               .arg(format(Vector3(box.min[0], box.min[1], box.min[2])));
}

// The group the Stack tool made: what it holds and how high it stands.
void printStack(const INode *group, QTextStream &out)
{
    const std::vector<INode *> &members = group->GetChildren();
    const TBBox<float> box = ComputeNodeBBox(group);
    out << QStringLiteral("  group \"%1\": %2 books, from z %3 to %4\n")
               .arg(group->GetName())
               .arg(members.size())
               .arg(std::abs(box.min[2]) < 0.005f ? 0.0 : double(box.min[2]), 0, 'f', 2)
               .arg(double(box.max[2]), 0, 'f', 2);
}

} // namespace

int runDemo(const QString &pluginPath,
            const QString &savePath,
            QTextStream &out,
            QTextStream &err,
            const DemoStepHook &afterStep)
{
    Session session;
    QString error;
    if (!session.loadToolsPlugin(pluginPath, &error)) {
        err << "vantrel: cannot load the tools plug-in: " << error << '\n';
        return 1;
    }
    out << "Loaded the tools plug-in " << pluginPath << '\n';
    QObject::connect(&session.userInterface(),
                     &HeadlessUserInterface::messageShown,
                     &session.userInterface(),
                     [&out](const QString &text) { out << "  message: " << text << '\n'; });

    Document &document = session.document();
    const std::vector<INode *> hovering = buildSampleScene(document);
    document.SetSelection(hovering, Document::ReplaceSelection);
    document.history().clear();
    printTools(session.tools(), session.context(), out);
    auto stepDone = [&](const QString &step) {
        out.flush(); // the hook's own lines come after the step's
        return !afterStep || afterStep(step, session.document());
    };
    if (!stepDone(QStringLiteral("sample scene")))
        return 1;

    ITool *floorTool = session.tools().findTool(QStringLiteral("Put On The Floor"));
    if (!floorTool) {
        err << "vantrel: the plug-in registered no \"Put On The Floor\" tool\n";
        return 1;
    }
    out << "\nPut On The Floor on the " << hovering.size() << " selected shapes\nbefore:\n";
    printPlacement(hovering, out);
    QElapsedTimer timer;
    timer.start();
    document.history().setNextStepName(floorTool->GetTitle());
    floorTool->Execute(session.context());
    const double milliseconds = double(timer.nsecsElapsed()) / 1e6;
    out << "after:\n";
    printPlacement(hovering, out);
    printSteps(document, milliseconds, out);
    if (!stepDone(floorTool->GetTitle()))
        return 1;

    out << "\nEasy Lighting: one light steered by four numbers\n";
    timer.restart();
    if (!runToolbarWindow(session,
                          QStringLiteral("EasyLighting"),
                          {{"angleH", -135}, {"angleV", 40}, {"contrast", 0.65}, {"blur", 0.2}},
                          out,
                          err))
        return 1;
    printLights(document, out);
    printSteps(document, double(timer.nsecsElapsed()) / 1e6, out);
    if (!stepDone(QStringLiteral("Easy Lighting")))
        return 1;

    out << "\nStep and Repeat: a grid of copies of the gift box\n";
    INode *giftBox = nullptr;
    for (INode *node : document.GetRootNode()->GetChildren()) {
        if (node->GetName() == QLatin1String("Gift Box"))
            giftBox = node;
    }
    if (!giftBox) {
        err << "vantrel: the sample scene has no \"Gift Box\"\n";
        return 1;
    }
    // Picking the box is a step of its own, as a click in the scene would be.
    document.history().setNextStepName(QStringLiteral("Select"));
    document.SetSelection({giftBox}, Document::ReplaceSelection);
    out << "selected \"Gift Box\"; undo steps: " << document.history().undoCount() << '\n';
    timer.restart();
    if (!runListedWindow(session,
                         QStringLiteral("Step and Repeat..."),
                         {{"repeatX", 4},
                          {"repeatY", 3},
                          {"repeatZ", 2},
                          {"stepX", 5},
                          {"stepY", 2.5},
                          {"stepZ", 0}},
                         out,
                         err))
        return 1;
    printGrid(giftBox->GetParent(), out);
    printSteps(document, double(timer.nsecsElapsed()) / 1e6, out);
    if (!stepDone(QStringLiteral("Step and Repeat")))
        return 1;

    out << "\nStack: the two books stacked twice over with a twist\n";
    std::vector<INode *> books;
    for (INode *node : hovering) {
        if (node->GetName() != QLatin1String("DVD Case"))
            books.push_back(node);
    }
    document.history().setNextStepName(QStringLiteral("Select"));
    document.SetSelection(books, Document::ReplaceSelection);
    out << "selected the " << books.size()
        << " books; undo steps: " << document.history().undoCount() << '\n';
    timer.restart();
    if (!runListedWindow(session,
                         QStringLiteral("Stack..."),
                         {{"generationRepeatList", 2},
                          {"generationSeed", 3},
                          {"twistStep", 6},
                          {"offsetDisorder", 0.2}},
                         out,
                         err))
        return 1;
    printStack(books.front()->GetParent(), out);
    printSteps(document, double(timer.nsecsElapsed()) / 1e6, out);
    if (!stepDone(QStringLiteral("Stack")))
        return 1;

    out << "\nFit To View: the camera brought as close as the scene allows\n";
    printCamera(document, QStringLiteral("before"), out);
    timer.restart();
    if (!runToolbarWindow(session, QStringLiteral("FitToView"), {{"padding", 0.15}}, out, err))
        return 1;
    const double fitMilliseconds = double(timer.nsecsElapsed()) / 1e6;
    printCamera(document, QStringLiteral("after"), out);
    out << QStringLiteral("took %1 ms; the camera is view state: undo steps still %2\n")
               .arg(fitMilliseconds, 0, 'f', 3)
               .arg(document.history().undoCount());
    if (!stepDone(QStringLiteral("Fit To View")))
        return 1;
    if (!savePath.isEmpty()) {
        if (!SceneFile::save(savePath, document, &error)) {
            err << "vantrel: " << error << '\n';
            return 1;
        }
        out << "saved the scene to " << savePath << '\n';
    }
    out.flush();
    return 0;
}

} // namespace vantrel::host
