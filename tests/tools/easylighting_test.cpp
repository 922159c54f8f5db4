// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "host/ilightnode.h"
#include "host/inode.h"
#include "host/itransformations.h"
#include "hostapp/core/commands/session.h"
#include "hostapp/ui/inputlineslider.h"
#include "hostapp/ui/propertylistwidget.h"
#include "tests/support/testsupport.h"
#include "tests/support/toolssession.h"
#include "tools/easylighting/easylightingimplementation.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QCoreApplication>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>

#include <cmath>

using namespace vantrel::host;
using vantrel::test::dump;
using vantrel::test::Near;

namespace {

// Where the light should stand for the angles, worked out in double precision from the
// elevation and the turn from +X towards -Y.
Vector3 expectedPosition(double angleH, double angleV)
{
    const double h = angleH * M_PI / 180.0, v = angleV * M_PI / 180.0;
    return Vector3{float(100.0 * std::cos(v) * std::cos(h)),
                   float(-100.0 * std::cos(v) * std::sin(h)),
                   float(100.0 * std::sin(v))};
}

INode *addLight(INode *parent,
                const QString &name,
                const Vector3 &position = Vector3{0, 0, 50},
                float intensity = 1.0f,
                float blur = 1.0f)
{
    INode *light = parent->CreateChildLight(name);
    qobject_cast<ITransformations *>(light)->SetPosition(position, false);
    qobject_cast<ILightNode *>(light)->SetIntensity(intensity);
    qobject_cast<ILightNode *>(light)->SetShadowBlur(blur);
    return light;
}

Vector3 positionOf(INode *node)
{
    return qobject_cast<ITransformations *>(node)->GetPosition();
}

ILightNode *lightOf(INode *node)
{
    return qobject_cast<ILightNode *>(node);
}

// The first node of that name in pre-order, or null.
INode *findByName(INode *node, const QString &name)
{
    if (node->GetName() == name)
        return node;
    for (INode *child : node->GetChildren()) {
        if (INode *found = findByName(child, name))
            return found;
    }
    return nullptr;
}

using EasyLightingTest = vantrel::test::ToolsSessionTest;

} // namespace

TEST_F(EasyLightingTest, AnEmptySceneGetsANewLightAtTheInitialSettings)
{
    int changes = 0;
    {
        EasyLightingImplementation settings(&document(), false);
        QObject::connect(
            &settings, &EasyLightingImplementation::changed, [&changes] { ++changes; });
        INode *light = settings.light();
        ASSERT_NE(light, nullptr);
        EXPECT_EQ(light->GetParent(), root());
        EXPECT_EQ(light->GetName(), QStringLiteral("EasyLight"));
        EXPECT_TRUE(Near(positionOf(light), Vector3{0.0f, -64.28f, 76.60f}, 0.01f));
        EXPECT_TRUE(Near(positionOf(light), expectedPosition(90, 50)));
        EXPECT_FLOAT_EQ(lightOf(light)->GetIntensity(), 0.3f);
        EXPECT_FLOAT_EQ(lightOf(light)->GetShadowBlur(), 15.05f);
        EXPECT_TRUE(lightOf(light)->GetCastShadows());
        EXPECT_EQ(lightOf(light)->GetLightMode(), 0);
        EXPECT_FLOAT_EQ(document().GetAmbientIntensity(), 0.7f);
        settings.setAccepted(true);
    }
    EXPECT_EQ(changes, 0) << "a new light is not read back";
    EXPECT_EQ(root()->GetChildren().size(), 1u);
}

TEST_F(EasyLightingTest, TheLightStandsWhereTheAnglesSay)
{
    EasyLightingImplementation settings(&document(), false);
    const struct
    {
        float h, v;
        Vector3 worked; // the positions worked out by hand
    } cases[] = {
        {0, 45, {70.71f, 0, 70.71f}},
        {-90, 30, {0, 86.60f, 50.00f}},
        {180, 89, {-1.75f, 0, 99.98f}},
        {135, 10, {-69.64f, -69.64f, 17.36f}},
        {-180, 1, {-99.98f, 0, 1.75f}},
    };
    for (const auto &c : cases) {
        settings.SetAngleV(c.v);
        settings.SetAngleH(c.h);
        SCOPED_TRACE(testing::Message() << "H " << c.h << " V " << c.v);
        EXPECT_TRUE(Near(positionOf(settings.light()), c.worked, 0.01f));
        EXPECT_TRUE(Near(positionOf(settings.light()), expectedPosition(c.h, c.v)));
    }
    settings.SetContrast(0.8f);
    settings.SetBlur(0.25f);
    EXPECT_FLOAT_EQ(lightOf(settings.light())->GetIntensity(), 0.8f);
    EXPECT_NEAR(document().GetAmbientIntensity(), 0.2f, 1e-6);
    EXPECT_FLOAT_EQ(lightOf(settings.light())->GetShadowBlur(), 29.9f * 0.25f + 0.1f);
    settings.setAccepted(true);
}

TEST_F(EasyLightingTest, AnExistingLightIsReadBackClampedAndPutBack)
{
    const struct
    {
        Vector3 position;
        float ambient, intensity, blur;
        float angleH, angleV, contrast, blurShare;
        Vector3 placed;
        float placedBlur;
    } cases[] = {
        // Straight above: the elevation is limited to 89; no direction in the plane reads -90.
        {{0, 0, 250}, 0.2f, 0.6f, 45, -90, 89, 0.75f, 1, {0, 1.75f, 99.98f}, 30},
        // Below the floor reads as the same height above it.
        {{10, 10, -10}, 0.05f, 0.04f, 0, -45, 35.26f, 0.3f, 0, {57.74f, 57.74f, 57.74f}, 0.1f},
        // A negative ambient level takes the share above 1: it is limited to 1.
        {{-20, -20, 5},
         -0.5f,
         0.8f,
         15.05f,
         135,
         10.02f,
         1,
         0.5f,
         {-69.63f, -69.63f, 17.40f},
         15.05f},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << "light at " << c.position.x << ", " << c.position.y
                                        << ", " << c.position.z);
        Session session;
        session.document().SetAmbientIntensity(c.ambient);
        addLight(session.document().GetRootNode(),
                 QStringLiteral("EasyLight"),
                 c.position,
                 c.intensity,
                 c.blur);
        int changes = 0;
        EasyLightingImplementation settings(&session.document(), false);
        QObject::connect(
            &settings, &EasyLightingImplementation::changed, [&changes] { ++changes; });
        EXPECT_NEAR(settings.GetAngleH(), c.angleH, 0.01);
        EXPECT_NEAR(settings.GetAngleV(), c.angleV, 0.01);
        EXPECT_NEAR(settings.GetContrast(), c.contrast, 1e-5);
        EXPECT_NEAR(settings.GetBlur(), c.blurShare, 1e-5);
        EXPECT_TRUE(Near(positionOf(settings.light()), c.placed, 0.01f));
        EXPECT_TRUE(Near(positionOf(settings.light()),
                         expectedPosition(settings.GetAngleH(), settings.GetAngleV())));
        EXPECT_FLOAT_EQ(lightOf(settings.light())->GetShadowBlur(), c.placedBlur);
        EXPECT_NEAR(session.document().GetAmbientIntensity(), 1 - c.contrast, 1e-5);
        EXPECT_EQ(session.document().GetRootNode()->GetChildren().size(), 1u) << "no new light";
        settings.setAccepted(true);
    }
}

TEST_F(EasyLightingTest, TheWalkAdoptsTheFirstEasyLightAndHidesEveryOtherLight)
{
    INode *key = addLight(root(), QStringLiteral("Key"));
    INode *group = root()->CreateChildGroup(QStringLiteral("Rig"));
    INode *inner = group->CreateChildGroup(QStringLiteral("Stand"));
    INode *first = addLight(inner, QStringLiteral("EasyLight"), Vector3{0, -50, 50});
    INode *lower = addLight(group, QStringLiteral("easylight"));
    INode *second = addLight(root(), QStringLiteral("EasyLight"), Vector3{1, 2, 3});
    second->SetVisible(false);
    INode *fill = addLight(inner, QStringLiteral("Fill"));
    first->SetVisible(false);

    EasyLightingImplementation settings(&document(), false);
    EXPECT_EQ(settings.light(), first) << "the first in pre-order, however deep";
    EXPECT_TRUE(first->IsVisible()) << "the adopted light is shown";
    for (INode *other : {key, lower, fill})
        EXPECT_FALSE(other->IsVisible()) << other->GetName().toStdString();
    EXPECT_FALSE(second->IsVisible()) << "a later namesake is left as it was";
    EXPECT_TRUE(Near(positionOf(second), Vector3{1, 2, 3}));
    EXPECT_NEAR(std::sqrt(positionOf(first).x * positionOf(first).x
                          + positionOf(first).y * positionOf(first).y
                          + positionOf(first).z * positionOf(first).z),
                100.0,
                1e-3);
    settings.setAccepted(true);

    // Only a name in the wrong case: hidden, and a new light made.
    Session other;
    INode *wrongCase = addLight(other.document().GetRootNode(), QStringLiteral("easyLight"));
    EasyLightingImplementation fresh(&other.document(), false);
    EXPECT_NE(fresh.light(), wrongCase);
    EXPECT_FALSE(wrongCase->IsVisible());
    EXPECT_EQ(other.document().GetRootNode()->GetChildren().size(), 2u);
    fresh.setAccepted(true);
}

TEST_F(EasyLightingTest, WritesAreLimitedAndAnEqualWriteLeavesTheLightAlone)
{
    EasyLightingImplementation settings(&document(), false);
    settings.SetAngleV(0);
    EXPECT_EQ(settings.GetAngleV(), 1.0f);
    settings.SetAngleV(95);
    EXPECT_EQ(settings.GetAngleV(), 89.0f);
    settings.SetAngleH(200);
    EXPECT_EQ(settings.GetAngleH(), 180.0f);
    settings.SetAngleH(-180);
    EXPECT_EQ(settings.GetAngleH(), -180.0f);
    settings.SetContrast(1.5f);
    EXPECT_EQ(settings.GetContrast(), 1.0f);
    settings.SetBlur(-0.2f);
    EXPECT_EQ(settings.GetBlur(), 0.0f);
    settings.SetBlur(std::nanf(""));
    EXPECT_EQ(settings.GetBlur(), 0.0f) << "not a number is taken as the lower limit";

    // Move the light by hand: a write that changes nothing after limiting does not put it back.
    settings.SetAngleV(0);
    auto *transformations = qobject_cast<ITransformations *>(settings.light());
    transformations->SetPosition(Vector3{5, 5, 5}, false);
    lightOf(settings.light())->SetIntensity(0.123f);
    settings.SetAngleV(0);
    settings.SetAngleH(-180.5f);
    settings.SetContrast(7);
    EXPECT_TRUE(Near(positionOf(settings.light()), Vector3{5, 5, 5}));
    EXPECT_FLOAT_EQ(lightOf(settings.light())->GetIntensity(), 0.123f);
    settings.SetAngleV(2);
    EXPECT_TRUE(Near(positionOf(settings.light()), expectedPosition(-180, 2)));
    EXPECT_FLOAT_EQ(lightOf(settings.light())->GetIntensity(), 1.0f);
    settings.setAccepted(true);
}

TEST_F(EasyLightingTest, TheWindowPreviewsLiveAndCancelTakesEverythingBack)
{
    INode *key = addLight(root(), QStringLiteral("Key"));
    INode *fill = addLight(root()->CreateChildGroup(QStringLiteral("Rig")), QStringLiteral("Fill"));
    const QByteArray before = dump(document());
    const int steps = document().history().undoCount();

    EXPECT_EQ(
        run(QStringLiteral("document.runTool('Easy Lighting...');"
                           "var w = document.window;"
                           "print(w.title, document.findNode('EasyLight') !== null);"
                           "w.set('angleH', -90); w.set('angleV', 30); w.set('contrast', 0.6);"
                           "w.set('blur', 2);"
                           "print(document.findNode('EasyLight').position.map(Math.round),"
                           "      w.get('blur'), document.ambient.toFixed(2));"
                           "w.cancel();"
                           "print(document.findNode('EasyLight'))")),
        QStringLiteral("Easy Lighting true\n0,87,50 1 0.40\nnull"));
    EXPECT_EQ(dump(document()), before) << "the light went and the others came back";
    EXPECT_TRUE(key->IsVisible());
    EXPECT_TRUE(fill->IsVisible());
    EXPECT_EQ(document().history().undoCount(), steps);

    // OK without a change keeps the adoption and the hiding as one undo step.
    m_session.tools().findTool(QStringLiteral("Easy Lighting..."))->Execute(m_session.context());
    QDialog *window = m_session.userInterface().openWindow();
    ASSERT_NE(window, nullptr);
    const QByteArray preview = dump(document());
    window->findChild<QPushButton *>(QStringLiteral("ok"))->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(dump(document()), preview);
    EXPECT_FALSE(key->IsVisible());
    const int afterOk = document().history().undoCount();
    document().undo();
    EXPECT_EQ(dump(document()), before);
    EXPECT_EQ(document().history().undoCount(), afterOk - 1);
}

TEST_F(EasyLightingTest, TheWindowOpensOnTheSceneLightsCurrentValues)
{
    document().SetAmbientIntensity(0.2f);
    addLight(root(), QStringLiteral("EasyLight"), Vector3{10, 10, -10}, 0.6f, 7.575f);
    m_session.tools().findTool(QStringLiteral("Easy Lighting..."))->Execute(m_session.context());
    QDialog *window = m_session.userInterface().openWindow();
    ASSERT_NE(window, nullptr);
    auto *panel = window->findChild<PropertyListWidget *>();
    auto text = [panel](const char *property) {
        return qobject_cast<InputLineSlider *>(panel->findWidget(QLatin1String(property)))
            ->field()
            ->text();
    };
    EXPECT_EQ(text("angleH"), QStringLiteral("-45.0\u00b0"));
    EXPECT_EQ(text("angleV"), QStringLiteral("35.3\u00b0"));
    EXPECT_EQ(text("contrast"), QStringLiteral("75 %"));
    EXPECT_EQ(text("blur"), QStringLiteral("25 %"));
    window->reject();
}

TEST_F(EasyLightingTest, TheToolbarButtonOpensTheWindowForItsOwnDocument)
{
    QAction *button = nullptr;
    for (QAction *action : m_session.userInterface().toolbarActions()) {
        if (action->property("buttonId").toString() == QLatin1String("EasyLighting"))
            button = action;
    }
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->text(), QStringLiteral("Easy Lighting..."));
    button->trigger();
    QDialog *window = m_session.userInterface().openWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Easy Lighting"));
    EXPECT_EQ(window->size(), QSize(600, 420));
    EXPECT_NE(findByName(root(), QStringLiteral("EasyLight")), nullptr);
    window->reject();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(findByName(root(), QStringLiteral("EasyLight")), nullptr);
}

TEST_F(EasyLightingTest, TheScriptFunctionChecksThenLightsWithoutAGroupOfItsOwn)
{
    addLight(root(), QStringLiteral("Key"));
    const QByteArray before = dump(document());
    const struct
    {
        const char *call;
        const char *error;
    } failures[] = {
        {"tools.easyLighting()", "Usage: tools.easyLighting(params)"},
        {"tools.easyLighting({}, {})", "Usage: tools.easyLighting(params)"},
        {"tools.easyLighting([1])", "The parameter has to be a dictionary"},
        {"tools.easyLighting(3)", "The parameter has to be a dictionary"},
        {"tools.easyLighting(null)", "The parameter has to be a dictionary"},
        {"tools.easyLighting(document.root)", "The parameter has to be a dictionary"},
        {"new tools.easyLighting({})", "Do not call this as a constructor"},
    };
    for (const auto &failure : failures) {
        EXPECT_EQ(run(QLatin1String(failure.call)),
                  QStringLiteral("error: test.js:1: Error: ") + QLatin1String(failure.error))
            << failure.call;
        EXPECT_EQ(dump(document()), before) << failure.call;
    }

    // Keys are exact: "Vangle" is not "vangle". Text that is no number counts as 0.
    EXPECT_EQ(run(QStringLiteral(
                  "print(tools.easyLighting({vangle: 100, contrast: 0.5, Vangle: 10, HANGLE: 3}));"
                  "var l = document.findNode('EasyLight');"
                  "print(l.position.map(function (c) { return c.toFixed(2); }), l.intensity,"
                  "      document.ambient, l.shadowBlur.toFixed(2));"
                  "tools.easyLighting({hangle: 'abc', blur: true});"
                  "print(l.position.map(function (c) { return c.toFixed(2); }), l.shadowBlur)")),
              QStringLiteral("undefined\n-0.00,-1.75,99.98 0.5 0.5 15.05\n1.75,0.00,99.98 30"));
    EXPECT_FALSE(findByName(root(), QStringLiteral("Key"))->IsVisible());

    // Straight through the engine, outside the runner's own undo step: the changes are not
    // gathered into one group, each is a step of its own.
    document().DeleteNodes({findByName(root(), QStringLiteral("EasyLight"))});
    addLight(root(), QStringLiteral("Rim"));
    const int steps = document().history().undoCount();
    m_session.runner().engine()->evaluate(QStringLiteral("tools.easyLighting({hangle: 10})"));
    EXPECT_EQ(document().history().openGroupCount(), 0);
    EXPECT_GT(document().history().undoCount(), steps + 1);
}
