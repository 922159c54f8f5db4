// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/ilightnode.h"
#include "hostapp/core/scene/scenenode.h"

namespace vantrel::host {

// A light (kind 2), shining from the node's position. Intensity 1 is full white light; the
// document's ambient level is added to it.
class VANTREL_HOST_EXPORT LightNode final : public SceneNode, public ILightNode
{
    Q_OBJECT
    Q_INTERFACES(ILightNode)

public:
    LightNode(Document *document, QString name);

    void SetLightMode(int mode) override;
    float GetShadowBlur() const override { return m_shadowBlur; }
    float GetIntensity() const override { return m_intensity; }
    void SetShadowBlur(float blur) override;
    void SetIntensity(float intensity) override;
    void SetCastShadows(bool cast) override;
    int GetLightMode() const override { return m_lightMode; }
    bool GetCastShadows() const override { return m_castShadows; }

    void applyLightMode(int mode) { m_lightMode = mode; }
    void applyShadowBlur(float blur) { m_shadowBlur = blur; }
    void applyIntensity(float intensity) { m_intensity = intensity; }
    void applyCastShadows(bool cast) { m_castShadows = cast; }

protected:
    std::unique_ptr<BaseNode> cloneNode() const override;

private:
    int m_lightMode = PointLight;
    float m_shadowBlur = 1.f;
    float m_intensity = 0.8f;
    bool m_castShadows = false;
};

} // namespace vantrel::host
