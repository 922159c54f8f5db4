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
#include "hostapp/core/commands/toolwindowdriver.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/document/headlessuserinterface.h"
#include "hostapp/core/files/scenefile.h"
#include "hostapp/core/scene/scenenode.h"

#include <QElapsedTimer>
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

// The demo's steps, each printing what it did; false stops the demo with exit status 1.
class DemoRun
{
public:
    DemoRun(Session &session, QTextStream &out, QTextStream &err, const DemoStepHook &afterStep)
        : m_session(session)
        , m_document(session.document())
        , m_out(out)
        , m_err(err)
        , m_afterStep(afterStep)
    {}

    bool sampleScene();
    bool putOnTheFloor();
    bool easyLighting();
    bool stepAndRepeat();
    bool stack();
    bool fitToView();
    bool save(const QString &savePath);

private:
    bool stepDone(const QString &step)
    {
        m_out.flush(); // the hook's own lines come after the step's
        return !m_afterStep || m_afterStep(step, m_document);
    }
    // Picking nodes is a step of its own, as a click in the scene would be.
    void select(const std::vector<INode *> &nodes)
    {
        m_document.history().setNextStepName(QStringLiteral("Select"));
        m_document.SetSelection(nodes, Document::ReplaceSelection);
    }
    double elapsed() const { return double(m_timer.nsecsElapsed()) / 1e6; }

    Session &m_session;
    Document &m_document;
    QTextStream &m_out;
    QTextStream &m_err;
    const DemoStepHook &m_afterStep;
    std::vector<INode *> m_hovering; // the sample scene's shapes above the floor
    QElapsedTimer m_timer;
};

bool DemoRun::sampleScene()
{
    QStringList problems;
    m_hovering = buildSampleScene(m_document, &problems);
    // Without its artwork the demo still shows every tool; the shapes are plain.
    for (const QString &problem : problems)
        m_err << "vantrel: example artwork left out: " << problem << "\n";
    m_document.SetSelection(m_hovering, Document::ReplaceSelection);
    m_document.history().clear();
    printTools(m_session.tools(), m_session.context(), m_out);
    return stepDone(QStringLiteral("sample scene"));
}

bool DemoRun::putOnTheFloor()
{
    ITool *floorTool = m_session.tools().findTool(QStringLiteral("Put On The Floor"));
    if (!floorTool) {
        m_err << "vantrel: the plug-in registered no \"Put On The Floor\" tool\n";
        return false;
    }
    m_out << "\nPut On The Floor on the " << m_hovering.size() << " selected shapes\nbefore:\n";
    printPlacement(m_hovering, m_out);
    m_timer.start();
    m_document.history().setNextStepName(floorTool->GetTitle());
    floorTool->Execute(m_session.context());
    const double milliseconds = elapsed();
    m_out << "after:\n";
    printPlacement(m_hovering, m_out);
    printSteps(m_document, milliseconds, m_out);
    return stepDone(floorTool->GetTitle());
}

bool DemoRun::easyLighting()
{
    m_out << "\nEasy Lighting: one light steered by four numbers\n";
    m_timer.restart();
    if (!runToolbarWindow(m_session,
                          QStringLiteral("EasyLighting"),
                          {{"angleH", -135}, {"angleV", 40}, {"contrast", 0.65}, {"blur", 0.2}},
                          m_out,
                          m_err))
        return false;
    printLights(m_document, m_out);
    printSteps(m_document, elapsed(), m_out);
    return stepDone(QStringLiteral("Easy Lighting"));
}

bool DemoRun::stepAndRepeat()
{
    m_out << "\nStep and Repeat: a grid of copies of the gift box\n";
    INode *giftBox = nullptr;
    for (INode *node : m_document.GetRootNode()->GetChildren()) {
        if (node->GetName() == QLatin1String("Gift Box"))
            giftBox = node;
    }
    if (!giftBox) {
        m_err << "vantrel: the sample scene has no \"Gift Box\"\n";
        return false;
    }
    select({giftBox});
    m_out << "selected \"Gift Box\"; undo steps: " << m_document.history().undoCount() << '\n';
    m_timer.restart();
    if (!runListedWindow(m_session,
                         QStringLiteral("Step and Repeat..."),
                         {{"repeatX", 4},
                          {"repeatY", 3},
                          {"repeatZ", 2},
                          {"stepX", 5},
                          {"stepY", 2.5},
                          {"stepZ", 0}},
                         m_out,
                         m_err))
        return false;
    printGrid(giftBox->GetParent(), m_out);
    printSteps(m_document, elapsed(), m_out);
    return stepDone(QStringLiteral("Step and Repeat"));
}

bool DemoRun::stack()
{
    m_out << "\nStack: the two books stacked twice over with a twist\n";
    std::vector<INode *> books;
    for (INode *node : m_hovering) {
        if (node->GetName() != QLatin1String("DVD Case"))
            books.push_back(node);
    }
    select(books);
    m_out << "selected the " << books.size()
          << " books; undo steps: " << m_document.history().undoCount() << '\n';
    m_timer.restart();
    if (!runListedWindow(m_session,
                         QStringLiteral("Stack..."),
                         {{"generationRepeatList", 2},
                          {"generationSeed", 3},
                          {"twistStep", 6},
                          {"offsetDisorder", 0.2}},
                         m_out,
                         m_err))
        return false;
    printStack(books.front()->GetParent(), m_out);
    printSteps(m_document, elapsed(), m_out);
    return stepDone(QStringLiteral("Stack"));
}

bool DemoRun::fitToView()
{
    m_out << "\nFit To View: the camera brought as close as the scene allows\n";
    printCamera(m_document, QStringLiteral("before"), m_out);
    m_timer.restart();
    if (!runToolbarWindow(
            m_session, QStringLiteral("FitToView"), {{"padding", 0.15}}, m_out, m_err))
        return false;
    const double milliseconds = elapsed();
    printCamera(m_document, QStringLiteral("after"), m_out);
    m_out << QStringLiteral("took %1 ms; the camera is view state: undo steps still %2\n")
                 .arg(milliseconds, 0, 'f', 3)
                 .arg(m_document.history().undoCount());
    return stepDone(QStringLiteral("Fit To View"));
}

bool DemoRun::save(const QString &savePath)
{
    if (savePath.isEmpty())
        return true;
    QString error;
    if (!SceneFile::save(savePath, m_document, &error)) {
        m_err << "vantrel: " << error << '\n';
        return false;
    }
    m_out << "saved the scene to " << savePath << '\n';
    return true;
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

    DemoRun run(session, out, err, afterStep);
    if (!run.sampleScene() || !run.putOnTheFloor() || !run.easyLighting() || !run.stepAndRepeat()
        || !run.stack() || !run.fitToView() || !run.save(savePath))
        return 1;
    out.flush();
    return 0;
}

} // namespace vantrel::host
