// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/commands/samplescene.h"

#include "hostapp/core/document/document.h"
#include "hostapp/core/files/programfolders.h"
#include "hostapp/core/scene/lightnode.h"
#include "hostapp/core/scene/meshnode.h"

namespace vantrel::host {

namespace {

struct SampleShape
{
    const char *generator;
    const char *artwork; // in share/vantrel/artwork
    QString name;
    Vector3 position;
    Vector3 rotation;
};

MeshNode *addShape(BaseNode *parent, const SampleShape &shape, QStringList *problems)
{
    MeshNode *node = parent->createChildShape(QByteArray(shape.generator), shape.name);
    node->applyPosition(shape.position);
    node->applyRotation(shape.rotation);
    QString problem;
    const QString artwork = QStringLiteral("share/vantrel/artwork/") + QLatin1String(shape.artwork);
    if (!node->setArtwork(programFile(artwork), &problem) && problems)
        problems->append(problem);
    return node;
}

} // namespace

std::vector<INode *> buildSampleScene(Document &document, QStringList *problems)
{
    BaseNode *root = document.root();
    addShape(
        root,
        {"generator.Boxes.Box", "gift-box.png", QStringLiteral("Gift Box"), {-45.f, 15.f, 0.f}, {}},
        problems);

    auto *shelf = static_cast<SceneNode *>(root->CreateChildGroup(QStringLiteral("Shelf")));
    shelf->applyRotation(Vector3(0.f, 0.f, 15.f));
    std::vector<INode *> hovering;
    hovering.push_back(addShape(shelf,
                                {"generator.Book.Paperback",
                                 "paperback.png",
                                 QStringLiteral("Paperback"),
                                 {-15.f, 0.f, 12.f},
                                 {}},
                                problems));
    hovering.push_back(addShape(shelf,
                                {"generator.Book.HardCover",
                                 "hard-cover.png",
                                 QStringLiteral("Hard Cover"),
                                 {2.f, 0.f, 7.5f},
                                 {0.f, 20.f, 0.f}},
                                problems));
    hovering.push_back(addShape(root,
                                {"generator.DiscBox.DVD",
                                 "dvd-case.png",
                                 QStringLiteral("DVD Case"),
                                 {28.f, -5.f, 4.f},
                                 {25.f, 0.f, 40.f}},
                                problems));

    auto *light = static_cast<LightNode *>(root->CreateChildLight(QStringLiteral("Key Light")));
    light->applyPosition(Vector3(-60.f, -80.f, 120.f));
    light->applyCastShadows(true);

    // The sample is where a session starts, not something the user did.
    document.history().clear();
    return hovering;
}

} // namespace vantrel::host
