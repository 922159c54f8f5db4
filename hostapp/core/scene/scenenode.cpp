// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/scenenode.h"

#include "geometry/geometry.h"
#include "hostapp/core/document/document.h"

#include <cmath>

namespace vantrel::host {

namespace {

using Vector3Change = ValueChange<SceneNode, Vector3>;

// A plug-in's computation can overflow (a stack of huge steps, a box scaled past what a float
// holds); the scene keeps its last finite value rather than take infinity or NaN in, which would
// spread to every matrix and box below and could not be saved.
bool isFinite(const Vector3 &v)
{
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

} // namespace

SceneNode::SceneNode(Document *document, QString name)
    : SceneNode(document, GroupNodeType, std::move(name))
{}

SceneNode::SceneNode(Document *document, int type, QString name)
    : BaseNode(document, type, std::move(name))
{}

void SceneNode::SetPosition(const Vector3 &position, bool)
{
    if (!isFinite(position))
        return;
    if (position == m_position)
        return;
    recorder().apply(
        std::make_unique<Vector3Change>(this, &SceneNode::applyPosition, m_position, position));
}

void SceneNode::SetRotation(const Vector3 &anglesDegrees, bool)
{
    if (!isFinite(anglesDegrees))
        return;
    if (anglesDegrees == m_rotation)
        return;
    recorder().apply(std::make_unique<Vector3Change>(
        this, &SceneNode::applyRotation, m_rotation, anglesDegrees));
}

void SceneNode::SetScale(const Vector3 &scale, int)
{
    if (!isFinite(scale))
        return;
    if (scale == m_scale)
        return;
    recorder().apply(std::make_unique<Vector3Change>(this, &SceneNode::applyScale, m_scale, scale));
}

void SceneNode::applyPosition(Vector3 position)
{
    // Only the translation row depends on the position: moving many nodes (a grid of copies
    // following a step) need not work out their rotations again.
    m_position = position;
    m_local[12] = m_position.x;
    m_local[13] = m_position.y;
    m_local[14] = m_position.z;
}

void SceneNode::applyRotation(Vector3 anglesDegrees)
{
    m_rotation = anglesDegrees;
    updateLocalMatrix();
}

void SceneNode::applyScale(Vector3 scale)
{
    m_scale = scale;
    updateLocalMatrix();
}

void SceneNode::updateLocalMatrix()
{
    // local = S * R * T: scale each row of the rotation by its axis' factor, then translate.
    Matrix rotation;
    SetRotationDegrees(rotation, m_rotation.x, m_rotation.y, m_rotation.z);
    const float scale[3] = {m_scale.x, m_scale.y, m_scale.z};
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column)
            m_local[4 * row + column] = scale[row] * rotation[4 * row + column];
        m_local[4 * row + 3] = 0.f;
    }
    m_local[12] = m_position.x;
    m_local[13] = m_position.y;
    m_local[14] = m_position.z;
    m_local[15] = 1.f;
}

std::unique_ptr<BaseNode> SceneNode::cloneNode() const
{
    auto copy = std::make_unique<SceneNode>(document(), GetName());
    copySceneState(*copy);
    return copy;
}

void SceneNode::copySceneState(SceneNode &copy) const
{
    copyBaseState(copy);
    copy.m_position = m_position;
    copy.m_rotation = m_rotation;
    copy.m_scale = m_scale;
}

} // namespace vantrel::host
