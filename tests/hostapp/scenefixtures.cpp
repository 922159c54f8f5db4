// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tests/hostapp/scenefixtures.h"

#include "hostapp/core/scene/generatorregistry.h"
#include "hostapp/core/scene/lightnode.h"
#include "hostapp/core/scene/meshnode.h"
#include "tests/hostapp/filefixtures.h"

#include <gtest/gtest.h>

#include <vector>

namespace vantrel::test {

using namespace host;

SceneNode *group(BaseNode *parent, const QString &name)
{
    return static_cast<SceneNode *>(parent->CreateChildGroup(name));
}

namespace {

// Moves every parameter of the shape off its default, within the generator's limits, and checks
// that each one did move, so that the round trip below carries nothing by luck of defaults.
void setEveryParameter(MeshNode *shape, int seed)
{
    ShapeGenerator *generator = shape->generator();
    const QVariantMap defaults = generator->parameters();
    for (auto it = defaults.constBegin(); it != defaults.constEnd(); ++it) {
        const QByteArray name = it.key().toLatin1();
        if (it->userType() == QMetaType::Float)
            generator->setProperty(name, it->toFloat() * 0.7f + 0.013f * float(seed + 1));
        else if (it->userType() == QMetaType::Int)
            generator->setProperty(name, it->toInt() + 1);
        else
            generator->setProperty(name, s_jar); // a model file that exists
        EXPECT_NE(generator->property(name), *it)
            << generator->GetTypeId() << " " << name.constData() << " kept its default";
    }
}

} // namespace

std::unique_ptr<Document> everythingScene()
{
    auto document = std::make_unique<Document>();
    BaseNode *root = document->root();
    SceneNode *shelf = group(root, QStringLiteral("Shelf \"A\" \u00e9t\u00e9 / 2"));
    shelf->SetPosition(Vector3(0.1f, -1.f / 3.f, 9999999.f), true);
    shelf->SetRotation(Vector3(90.f, -37.5f, 1e-7f), true);
    shelf->SetScale(Vector3(2.f, 0.5f, -1e6f), 0);
    shelf->SetVisible(false);

    int seed = 0;
    std::vector<INode *> selection;
    for (const QByteArray &id : generatorIdentifiers()) {
        MeshNode *shape = shelf->createChildShape(id, QString::fromLatin1(id));
        shape->SetPosition(Vector3(float(seed) / 7.f, 1e-40f, -3.75f), true);
        shape->SetRotation(Vector3(0.f, 0.f, float(seed) * 17.3f), true);
        setEveryParameter(shape, seed++);
        if (seed % 5 == 0)
            selection.push_back(shape);
    }
    // Parameters at their defaults are written too, and a cover at 0 is not a missing cover.
    SceneNode *films = group(root, QStringLiteral("Films"));
    films->createChildShape("generator.DiscBox.DVD", QStringLiteral("Closed"));
    films->createChildShape("generator.DiscBox.DVD", QStringLiteral("Open"))
        ->generator()
        ->setProperty("coverAngle", 37.5f);
    // Any node may have children, shapes and lights included.
    auto *light = static_cast<LightNode *>(
        films->childNode(1)->CreateChildLight(QStringLiteral("Key light")));
    light->SetPosition(Vector3(120.f, -80.5f, 150.25f), true);
    light->SetIntensity(1.35f);
    light->SetShadowBlur(0.2f);
    light->SetCastShadows(true);
    light->SetLightMode(LightNode::DirectionalLight);
    light->SetVisible(false);
    light->CreateChildGroup(QString());
    root->CreateChildLight(QStringLiteral("Fill"));
    selection.push_back(light);
    selection.push_back(shelf);

    document->SetSelection(selection, Document::ReplaceSelection);
    document->SetAmbientIntensity(0.1234567f);
    document->SetLightingMode(Document::HeadLight);
    Camera *camera = document->camera();
    camera->SetTarget(Vector3(1.5f, -2.25f, 30.1f));
    camera->SetDistance(250.125f);
    camera->setYaw(-123.4f);
    camera->setPitch(-45.6f);
    camera->setFieldOfView(27.5f);
    camera->SetAspectRatio(16.f / 9.f);
    return document;
}

} // namespace vantrel::test
