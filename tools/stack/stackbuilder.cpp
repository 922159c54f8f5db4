// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/stack/stackbuilder.h"

#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "host/idocument.h"
#include "host/imeshnode.h"
#include "host/inode.h"
#include "host/itransformations.h"
#include "tools/stack/stackclassification.h"

#include <cstdlib>

namespace {

constexpr float RandomScale = 4.656613e-10f; // 2^-31: rand() from 0 to 2^31 - 1 into [0, 1)
constexpr float RandomCentre = -0.5f;
constexpr float BoxCentre = -0.5f;
constexpr float TwistAmplitude = 45.0f; // degrees
constexpr float OffsetAmplitude = 4.0f; // scene units
constexpr float LayDown = 90.0f;        // turns the shape's local Y onto the vertical, downwards

// One draw from the process's generator, in [-0.5, 0.5).
float draw()
{
    return float(std::rand()) * RandomScale + RandomCentre;
}

} // namespace

StackBuilder::StackBuilder(const std::vector<INode *> &input,
                           IDocument *doc,
                           std::size_t repeatCount,
                           bool ownsGroup)
    : m_nodes(input)
    , m_document(doc)
    , m_ownsUndoGroup(ownsGroup)
{
    if (m_ownsUndoGroup)
        m_document->BeginUndoGroup();
    if (m_nodes.empty())
        return; // nothing to stack: no group, no changes
    INode *first = m_nodes.front();
    m_group = m_document->GetRootNode()->CreateChildGroup(QStringLiteral("Stack"));
    m_document->MoveNodes(m_group, 0, m_nodes);

    // The stack stands where its bottom shape stood, on the floor.
    auto *firstTransformations = qobject_cast<ITransformations *>(first);
    const Vector3 where = firstTransformations->GetPosition();
    qobject_cast<ITransformations *>(m_group)->SetPosition(Vector3{where.x, where.y, 0.0f}, false);
    firstTransformations->SetPosition(Vector3{0.0f, 0.0f, 0.0f}, false);

    for (INode *node : m_nodes)
        IsStackableNode(node, true);

    // Copies of the input nodes only, made after their parameters were forced.
    const std::size_t n = input.size();
    if (repeatCount >= 2) {
        m_nodes.reserve(n * repeatCount);
        for (std::size_t pass = 1; pass < repeatCount; ++pass) {
            for (std::size_t j = 0; j < n; ++j) {
                // The document copies only nodes in its scene.
                if (INode *copy = m_document->CloneNode(m_nodes[j], 0))
                    m_nodes.push_back(copy);
            }
        }
    }
    Layout(m_layout);
    m_document->SetSelection(MakeListOfNodes(m_group), 2);
}

StackBuilder::~StackBuilder()
{
    if (m_ownsUndoGroup) {
        if (m_committed)
            m_document->EndUndoGroup();
        else
            m_document->CancelUndoGroup();
    }
}

void StackBuilder::Layout(const StackLayout &layout)
{
    m_layout = layout;
    std::srand(unsigned(layout.seed));
    (void) std::rand(); // the first draw after seeding is discarded
    float sx = 0.0f, sy = 0.0f, h = 0.0f, t = 0.0f;
    for (INode *node : m_nodes) {
        const auto *mesh = qobject_cast<IMeshNode *>(node);
        auto *transformations = qobject_cast<ITransformations *>(node);
        if (!mesh || !transformations)
            continue;
        const Vector3 scale = transformations->GetScale();
        const TBBox<float> box = mesh->GetLocalBBox();
        const float minX = box.min[0] * scale.x, maxX = box.max[0] * scale.x;
        const float minY = box.min[1] * scale.y, maxY = box.max[1] * scale.y;
        const float minZ = box.min[2] * scale.z, maxZ = box.max[2] * scale.z;

        const float angle = draw() * (layout.twistDisorder * TwistAmplitude) + t;
        Matrix rotation;
        MakeIdentity(rotation);
        SetRotationDegrees(rotation, LayDown, 0.0f, angle);
        // Puts the centre of the shape's box (across) on the level's axis, its top on the level.
        Vector3 c{(minX + maxX) * BoxCentre, -maxY, (minZ + maxZ) * BoxCentre};
        TransformDirection(c, rotation);
        c.x += layout.offsetX + (layout.offsetDisorder * draw() * OffsetAmplitude);
        c.y += layout.offsetY + (layout.offsetDisorder * draw() * OffsetAmplitude);

        transformations->SetRotation(Vector3{LayDown, 0.0f, angle}, false);
        transformations->SetPosition(Vector3{c.x + sx, c.y + sy, c.z + h}, false);

        sx += layout.offsetX;
        sy += layout.offsetY;
        h += maxY - minY;
        t += layout.twistStep;
    }
}
