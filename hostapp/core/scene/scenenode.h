// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/itransformations.h"
#include "hostapp/core/scene/basenode.h"

namespace vantrel::host {

// A node with a place relative to its parent: groups (kind 3), and the base of meshes and lights.
// The local matrix is scale, then rotation (about x, then y, then z, in degrees), then
// translation, composed as row vectors: local = S * R * T.
class VANTREL_HOST_EXPORT SceneNode : public BaseNode, public ITransformations
{
    Q_OBJECT
    Q_INTERFACES(ITransformations)

public:
    // A group node (kind 3).
    SceneNode(Document *document, QString name);

    const Vector3 &GetPosition() const override { return m_position; }
    const Vector3 &GetRotation() const override { return m_rotation; }
    const Vector3 &GetScale() const override { return m_scale; }
    void SetPosition(const Vector3 &position, bool flag) override;
    void SetRotation(const Vector3 &anglesDegrees, bool flag) override;
    void SetScale(const Vector3 &scale, int flag) override;

    void applyPosition(Vector3 position);
    void applyRotation(Vector3 anglesDegrees);
    void applyScale(Vector3 scale);

protected:
    SceneNode(Document *document, int type, QString name);
    std::unique_ptr<BaseNode> cloneNode() const override;
    void copySceneState(SceneNode &copy) const;

private:
    void updateLocalMatrix();

    Vector3 m_position;
    Vector3 m_rotation;
    Vector3 m_scale{1.f, 1.f, 1.f};
};

} // namespace vantrel::host
