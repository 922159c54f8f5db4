// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/lightnode.h"

#include "hostapp/core/document/document.h"

#include <cmath>

namespace vantrel::host {

namespace {

template<class Value>
void record(ChangeRecorder &recorder,
            LightNode *light,
            void (LightNode::*setter)(Value),
            Value before,
            Value after)
{
    if (before == after)
        return;
    recorder.apply(std::make_unique<ValueChange<LightNode, Value>>(light, setter, before, after));
}

} // namespace

LightNode::LightNode(Document *document, QString name)
    : SceneNode(document, LightNodeType, std::move(name))
{}

void LightNode::SetLightMode(int mode)
{
    record(recorder(), this, &LightNode::applyLightMode, m_lightMode, mode);
}

void LightNode::SetShadowBlur(float blur)
{
    if (!std::isfinite(blur))
        return; // the scene never holds a value that is not finite (see SceneNode)
    record(recorder(), this, &LightNode::applyShadowBlur, m_shadowBlur, blur);
}

void LightNode::SetIntensity(float intensity)
{
    if (!std::isfinite(intensity))
        return;
    record(recorder(), this, &LightNode::applyIntensity, m_intensity, intensity);
}

void LightNode::SetCastShadows(bool cast)
{
    record(recorder(), this, &LightNode::applyCastShadows, m_castShadows, cast);
}

std::unique_ptr<BaseNode> LightNode::cloneNode() const
{
    auto copy = std::make_unique<LightNode>(document(), GetName());
    copySceneState(*copy);
    copy->m_lightMode = m_lightMode;
    copy->m_shadowBlur = m_shadowBlur;
    copy->m_intensity = m_intensity;
    copy->m_castShadows = m_castShadows;
    return copy;
}

} // namespace vantrel::host
