// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "host/hostfunctions.h"

#include "geometry/geometry.h"
#include "host/imeshnode.h"
#include "host/imeshpart.h"
#include "host/inode.h"

#include <QScriptEngine>

#include <cmath>
#include <unordered_set>

int GetNodePos(const INode *node)
{
    const INode *parent = node ? node->GetParent() : nullptr;
    if (!parent)
        return -1;
    const std::vector<INode *> &siblings = parent->GetChildren();
    for (std::size_t i = 0; i < siblings.size(); ++i) {
        if (siblings[i] == node)
            return int(i);
    }
    return -1;
}

TBBox<float> ComputeNodeBBox(const INode *node)
{
    TBBox<float> box;
    if (!node)
        return box;
    Matrix parentGlobal;
    GetNodeGlobalMatrix(parentGlobal, node->GetParent());
    UpdateBBoxRecursive(box, node, parentGlobal);
    return box;
}

std::vector<INode *> MakeListOfNodes(INode *node)
{
    return std::vector<INode *>{node};
}

std::vector<INode *> CollectAllChildren(const std::vector<INode *> &nodes)
{
    std::vector<INode *> result;
    std::unordered_set<const INode *> seen;
    std::vector<INode *> pending; // a stack, so that deep trees cannot exhaust the call stack
    for (INode *top : nodes) {
        if (!top)
            continue;
        pending.push_back(top);
        while (!pending.empty()) {
            INode *node = pending.back();
            pending.pop_back();
            if (!seen.insert(node).second)
                continue;
            result.push_back(node);
            const std::vector<INode *> &children = node->GetChildren();
            for (auto it = children.rbegin(); it != children.rend(); ++it)
                pending.push_back(*it);
        }
    }
    return result;
}

void GetNodeGlobalMatrix(Matrix &result, const INode *node)
{
    MakeIdentity(result);
    for (const INode *n = node; n; n = n->GetParent())
        MultiplyMatrices(result, result, n->GetLocalMatrix());
}

void UpdateBBoxRecursive(TBBox<float> &box, const INode *node, const Matrix &parentFrame)
{
    if (!node)
        return;
    // The subtree in pre-order with a stack of its own, each node with its global frame, so that
    // a tree however deep cannot exhaust the call stack. Every vertex is transformed: the
    // corners of a transformed local box would overestimate a rotated shape and leave it
    // floating above the floor.
    std::vector<std::pair<const INode *, Matrix>> pending;
    pending.emplace_back(node, Matrix());
    MultiplyMatrices(pending.back().second, node->GetLocalMatrix(), parentFrame);
    while (!pending.empty()) {
        const auto [current, global] = pending.back();
        pending.pop_back();
        if (const IMeshNode *mesh = qobject_cast<IMeshNode *>(current)) {
            for (const IMeshPart *part : mesh->GetMeshParts()) {
                for (const VertexRecord &v : part->GetVertices()) {
                    Vector3 p(v.position[0], v.position[1], v.position[2]);
                    TransformPoint(p, global);
                    ExtendBox(box, p);
                }
            }
        }
        const std::vector<INode *> &children = current->GetChildren();
        for (auto it = children.rbegin(); it != children.rend(); ++it) {
            pending.emplace_back(*it, Matrix());
            MultiplyMatrices(pending.back().second, (*it)->GetLocalMatrix(), global);
        }
    }
}

void CalculateViewMatrix(Matrix &view, const Matrix &cameraGlobal)
{
    // Camera space: x towards the image's right (minus row 1), y its top (row 2), z forward (row
    // 0).
    const Vector3 axes[3] = {Vector3(-cameraGlobal[4], -cameraGlobal[5], -cameraGlobal[6]),
                             Vector3(cameraGlobal[8], cameraGlobal[9], cameraGlobal[10]),
                             Vector3(cameraGlobal[0], cameraGlobal[1], cameraGlobal[2])};
    const Vector3 eye(cameraGlobal[12], cameraGlobal[13], cameraGlobal[14]);
    MakeIdentity(view);
    for (int column = 0; column < 3; ++column) {
        const Vector3 &a = axes[column];
        view[column] = a.x;
        view[4 + column] = a.y;
        view[8 + column] = a.z;
        view[12 + column] = -(eye.x * a.x + eye.y * a.y + eye.z * a.z);
    }
}

void CalculateProjectionMatrix(Matrix &projection,
                               float fieldOfView,
                               float frameAspect,
                               float viewportAspect,
                               float nearPlane,
                               float farPlane)
{
    float vertical = 1.f / tanf(fieldOfView * 0.5f * DegreesToRadians);
    float horizontal;
    if (viewportAspect >= frameAspect) {
        horizontal = vertical / viewportAspect; // the frame's height fills the viewport
    } else {
        horizontal = vertical / frameAspect; // the frame's width fills it
        vertical = horizontal * viewportAspect;
    }
    for (float &e : projection.m)
        e = 0.f;
    projection[0] = horizontal;
    projection[5] = vertical;
    projection[10] = (farPlane + nearPlane) / (farPlane - nearPlane);
    projection[11] = 1.f; // w = depth in front of the camera
    projection[14] = -2.f * farPlane * nearPlane / (farPlane - nearPlane);
}

IDocumentContext *documentContextFromScriptEngine(QScriptEngine *engine)
{
    // Engines made by the host carry their document context; any other engine has none.
    if (!engine)
        return nullptr;
    return reinterpret_cast<IDocumentContext *>(
        engine->property("vantrelDocumentContext").value<quintptr>());
}
