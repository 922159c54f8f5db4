// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/commands/samplescene.h"

#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/lightnode.h"
#include "hostapp/core/scene/meshnode.h"

namespace vantrel::host {

namespace {

MeshNode *addShape(BaseNode *parent,
                   const char *generator,
                   const QString &name,
                   const Vector3 &position,
                   const Vector3 &rotation = Vector3())
{
    MeshNode *node = parent->createChildShape(QByteArray(generator), name);
    node->applyPosition(position);
    node->applyRotation(rotation);
    return node;
}

} // namespace

std::vector<INode *> buildSampleScene(Document &document)
{
    BaseNode *root = document.root();
    addShape(root, "generator.Boxes.Box", QStringLiteral("Gift Box"), Vector3(-45.f, 15.f, 0.f));

    auto *shelf = static_cast<SceneNode *>(root->CreateChildGroup(QStringLiteral("Shelf")));
    shelf->applyRotation(Vector3(0.f, 0.f, 15.f));
    std::vector<INode *> hovering;
    hovering.push_back(addShape(
        shelf, "generator.Book.Paperback", QStringLiteral("Paperback"), Vector3(-15.f, 0.f, 12.f)));
    hovering.push_back(addShape(shelf,
                                "generator.Book.HardCover",
                                QStringLiteral("Hard Cover"),
                                Vector3(2.f, 0.f, 7.5f),
                                Vector3(0.f, 20.f, 0.f)));
    hovering.push_back(addShape(root,
                                "generator.DiscBox.DVD",
                                QStringLiteral("DVD Case"),
                                Vector3(28.f, -5.f, 4.f),
                                Vector3(25.f, 0.f, 40.f)));

    auto *light = static_cast<LightNode *>(root->CreateChildLight(QStringLiteral("Key Light")));
    light->applyPosition(Vector3(-60.f, -80.f, 120.f));
    light->applyCastShadows(true);

    // The sample is where a session starts, not something the user did.
    document.history().clear();
    return hovering;
}

} // namespace vantrel::host
