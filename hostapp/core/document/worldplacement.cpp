// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/document/worldplacement.h"

#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/basenode.h"
#include "hostapp/core/scene/scenenode.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>

namespace vantrel::host {

namespace {

// A change of frame whose linear part is this close to the identity only shifts the node, so its
// rotation and scale are kept exactly as the user typed them.
constexpr float SameLinearPart = 1e-6f;

Vector3 row(const Matrix &m, int r)
{
    return {m[4 * r], m[4 * r + 1], m[4 * r + 2]};
}

bool isTranslationOnly(const Matrix &m)
{
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            if (std::fabs(m[4 * r + c] - (r == c ? 1.f : 0.f)) > SameLinearPart)
                return false;
        }
    }
    return true;
}

// The subtree in scene order.
void preorder(INode *node, std::vector<INode *> &order)
{
    order.push_back(node);
    for (INode *child : node->GetChildren())
        preorder(child, order);
}

} // namespace

WorldPlacement::Parts WorldPlacement::decompose(const Matrix &local)
{
    Parts parts;
    parts.position = {local[12], local[13], local[14]};
    // Rows 0-2 are the rotation's rows scaled by x, y and z; made orthonormal in that order, so
    // that a sheared matrix gives the rotation of its x axis and the nearest y.
    const Vector3 x = row(local, 0), y = row(local, 1), z = row(local, 2);
    const Vector3 ux = NormaliseVector(x, {1.f, 0.f, 0.f});
    Vector3 uy = SubtractVectors(y, ScaleVector(ux, DotProduct(y, ux)));
    uy = NormaliseVector(uy, NormaliseVector(CrossProduct({0.f, 0.f, 1.f}, ux), {0.f, 1.f, 0.f}));
    const Vector3 uz = CrossProduct(ux, uy);
    parts.scale = {std::sqrt(DotProduct(x, x)), std::sqrt(DotProduct(y, y)), DotProduct(z, uz)};
    // A mirrored matrix keeps a proper rotation and a negative z scale.
    const float sb = std::clamp(ux.z, -1.f, 1.f);
    const float b = std::asin(sb);
    float a = 0.f, c = 0.f;
    if (std::cos(b) > 1e-6f) {
        a = std::atan2(-uy.z, uz.z);
        c = std::atan2(ux.y, ux.x);
    } else {
        // Straight up or down about y: x and z turn about the same axis, so x takes none of it.
        c = std::atan2(-uy.x, uy.y);
    }
    parts.rotation = {a * RadiansToDegrees, b * RadiansToDegrees, c * RadiansToDegrees};
    return parts;
}

Matrix WorldPlacement::worldMatrix(const INode *node)
{
    Matrix world;
    GetNodeGlobalMatrix(world, node);
    return world;
}

void WorldPlacement::placeAt(SceneNode *node, const Matrix &world)
{
    Matrix parentInverse;
    InvertMatrix(parentInverse, worldMatrix(node->GetParent()));
    Matrix local;
    MultiplyMatrices(local, world, parentInverse);
    // The same frame change as a shift of the current local matrix: when that shift is all, only
    // the position changes, and rotation and scale keep their exact values.
    Matrix currentInverse;
    InvertMatrix(currentInverse, node->GetLocalMatrix());
    Matrix shift;
    MultiplyMatrices(shift, currentInverse, local);
    if (isTranslationOnly(shift)) {
        Vector3 position = node->GetPosition();
        TransformPoint(position, shift);
        node->SetPosition(position, false);
        return;
    }
    const Parts parts = decompose(local);
    node->SetScale(parts.scale, 0);
    node->SetRotation(parts.rotation, false);
    node->SetPosition(parts.position, false);
}

void WorldPlacement::moveNodes(Document &document,
                               INode *parent,
                               int index,
                               const std::vector<INode *> &nodes)
{
    std::vector<std::pair<INode *, Matrix>> before;
    before.reserve(nodes.size());
    for (INode *node : nodes)
        before.emplace_back(node, worldMatrix(node));
    document.MoveNodes(parent, index, nodes);
    for (const auto &[node, world] : before) {
        auto *placed = qobject_cast<SceneNode *>(node);
        if (placed && node->GetParent() == parent && worldMatrix(node) != world)
            placeAt(placed, world);
    }
}

INode *
WorldPlacement::group(Document &document, const std::vector<INode *> &nodes, const QString &name)
{
    const std::vector<INode *> members = topmost(document, nodes);
    if (members.empty())
        return nullptr;
    INode *parent = members.front()->GetParent();
    const int index = GetNodePos(members.front());
    auto *group = qobject_cast<SceneNode *>(parent->CreateChildGroup(name));
    if (!group)
        return nullptr;
    // Where the first node was; the group was appended, so that place is unchanged.
    document.MoveNodes(parent, index, {group});
    TBBox<float> box;
    for (INode *member : members)
        MergeBoxes(box, ComputeNodeBBox(member));
    if (!IsBoxEmpty(box)) {
        Matrix world;
        world[12] = 0.5f * (box.min[0] + box.max[0]);
        world[13] = 0.5f * (box.min[1] + box.max[1]);
        world[14] = box.min[2];
        placeAt(group, world);
    }
    moveNodes(document, group, 0, members);
    return group;
}

std::vector<INode *> WorldPlacement::ungroup(Document &document, INode *group)
{
    INode *parent = group->GetParent();
    if (!parent || group->GetNodeType() != INode::GroupNodeType)
        return {};
    const std::vector<INode *> children = group->GetChildren();
    moveNodes(document, parent, GetNodePos(group), children);
    document.removeNodes({group});
    return children;
}

std::vector<INode *> WorldPlacement::topmost(const Document &document,
                                             const std::vector<INode *> &nodes)
{
    std::unordered_set<INode *> given;
    for (INode *node : nodes) {
        BaseNode *own = document.ownNode(node);
        if (own && own != document.root() && own->isInScene())
            given.insert(own);
    }
    std::vector<INode *> order;
    preorder(document.root(), order);
    std::vector<INode *> result;
    for (INode *node : order) {
        if (!given.count(node))
            continue;
        bool below = false;
        for (INode *p = node->GetParent(); p && !below; p = p->GetParent())
            below = given.count(p) > 0;
        if (!below)
            result.push_back(node);
    }
    return result;
}

} // namespace vantrel::host
