// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/stack/stackclassification.h"

#include "host/imeshnode.h"
#include "host/inode.h"
#include "host/iserializable.h"

namespace {

struct StackableShape
{
    const char *generatorId;
    const char *forcedParameter; // null: nothing to force
};

// Tried in this order; the first whole-string match decides.
const StackableShape stackableShapes[] = {
    {"generator.DiscBox.DigipakDVD", "coverAngle"},
    {"generator.DiscBox.DigipakCD", "coverAngle"},
    {"generator.DiscBox.DVD", "coverAngle"},
    {"generator.DiscBox.SlimCD", "coverAngle"},
    {"generator.DiscBox.BluRay", "coverAngle"},
    {"generator.Devices.iPad", nullptr},
    {"generator.Devices.iPhone4", nullptr},
    {"generator.Devices.iPhone5", nullptr},
    {"generator.canvas.simple", nullptr},
    {"generator.Boxes.Box", nullptr},
    {"generator.Boxes.SlidingBox", nullptr},
    {"generator.Boxes.TaggedBox", nullptr},
    {"generator.DiscBox.Disc", nullptr},
    {"generator.Book.HardCover", nullptr},
    {"generator.Book.PaperbackRoundCorners", nullptr},
    {"generator.Book.Magazine", nullptr},
    {"generator.Book.Stepback", "type"},
    {"generator.Book.Paperback", "type"},
    {"generator.Images.Image", "bend"},
    {"generator.external.model", nullptr},
};

} // namespace

bool ClassifyStackGenerator(const QString &generatorId, QMap<QString, QVariant> &required)
{
    required.clear();
    for (const StackableShape &shape : stackableShapes) {
        if (generatorId.compare(QLatin1String(shape.generatorId), Qt::CaseInsensitive) != 0)
            continue;
        if (shape.forcedParameter)
            required.insert(QLatin1String(shape.forcedParameter), QVariant(int(0)));
        return true;
    }
    return false;
}

bool IsStackableNode(INode *node, bool apply)
{
    if (node->GetNodeType() != INode::MeshNodeType)
        return false;
    const auto *mesh = qobject_cast<IMeshNode *>(node);
    QObject *generator = mesh ? mesh->GetGenerator() : nullptr;
    const auto *serializable = qobject_cast<ISerializable *>(generator);
    if (!serializable || !serializable->GetTypeId())
        return false;
    QMap<QString, QVariant> required;
    if (!ClassifyStackGenerator(QString::fromLatin1(serializable->GetTypeId()), required))
        return false;
    if (apply) {
        for (auto it = required.cbegin(); it != required.cend(); ++it)
            generator->setProperty(it.key().toUtf8().constData(), it.value());
    }
    return true;
}

StackFilterResult FilterStackableNodes(std::vector<INode *> &nodes)
{
    const std::size_t length = nodes.size();
    for (auto it = nodes.begin(); it != nodes.end();) {
        if (IsStackableNode(*it, false))
            ++it;
        else
            it = nodes.erase(it);
    }
    if (nodes.empty())
        return NoneSuitable;
    return nodes.size() == length ? AllSuitable : SomeUnsuitable;
}
