// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/easylighting/easylightingimplementation.h"

#include "geometry/geometry.h"
#include "host/idocument.h"
#include "host/ilightnode.h"
#include "host/inode.h"
#include "host/itransformations.h"
#include "hostapp/ui/propertieslistbuilder.h"
#include "tools/easylighting/easylightingsettings.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

const QString easyLightName = QStringLiteral("EasyLight");
constexpr float lightDistance = 100.0f;

constexpr const ToolSetting &angleHSetting = FindSetting(EasyLightingSettings, "angleH");
constexpr const ToolSetting &angleVSetting = FindSetting(EasyLightingSettings, "angleV");
constexpr const ToolSetting &blurSetting = FindSetting(EasyLightingSettings, "blur");
constexpr const ToolSetting &contrastSetting = FindSetting(EasyLightingSettings, "contrast");

// Limits to lowest..highest: at or below the lower limit gives it, otherwise the smaller of the
// value and the upper limit. Not a number gives the lower limit.
float limited(float value, float lowest, float highest)
{
    if (lowest >= value || std::isnan(value))
        return lowest;
    return std::min(highest, value);
}

// Scales v to length 1; a zero vector stays as it is.
template<typename... T>
void normalise(T &...components)
{
    const float length = std::sqrt(((components * components) + ...));
    if (length != 0.0f)
        ((components /= length), ...);
}

} // namespace

EasyLightingImplementation::EasyLightingImplementation(IDocument *document, bool openUndoGroup)
    : ToolSettings(document, openUndoGroup)
    , m_blur(blurSetting.initial)
    , m_angleH(angleHSetting.initial)
    , m_angleV(angleVSetting.initial)
    , m_contrast(contrastSetting.initial)
{
    document->SetLightingMode(0);
    findEasyLight(document->GetRootNode());
    if (m_light) {
        readFromLight();
        return;
    }
    m_light = document->GetRootNode()->CreateChildLight(easyLightName);
    applyToLight();
}

void EasyLightingImplementation::findEasyLight(INode *node)
{
    if (node->GetNodeType() == INode::LightNodeType) {
        if (node->GetName() == easyLightName) {
            // The first one met is the one; a later namesake is left as it is.
            if (!m_light)
                m_light = node;
        } else {
            node->SetVisible(false);
        }
    }
    // A copy: hiding a light must not disturb the walk.
    const std::vector<INode *> children = node->GetChildren();
    for (INode *child : children)
        findEasyLight(child);
}

void EasyLightingImplementation::applyToLight()
{
    auto *light = qobject_cast<ILightNode *>(m_light);
    auto *transformations = qobject_cast<ITransformations *>(m_light);
    m_light->SetVisible(true);
    light->SetIntensity(m_contrast);
    light->SetShadowBlur((m_blurMaximum - m_blurMinimum) * m_blur + m_blurMinimum);
    light->SetLightMode(0);
    light->SetCastShadows(true);
    Vector3 position{lightDistance, 0.0f, 0.0f};
    RotateAroundAxis(position, Vector3{0.0f, 1.0f, 0.0f}, m_angleV * DegreesToRadians);
    RotateAroundAxis(position, Vector3{0.0f, 0.0f, 1.0f}, m_angleH * DegreesToRadians);
    transformations->SetPosition(position, false);
    document()->SetAmbientIntensity(1.0f - m_contrast);
}

void EasyLightingImplementation::readFromLight()
{
    auto *light = qobject_cast<ILightNode *>(m_light);
    auto *transformations = qobject_cast<ITransformations *>(m_light);

    const float ambient = document()->GetAmbientIntensity();
    const float intensity = light->GetIntensity();
    const float sum = ambient + intensity;
    // Too little light to read a share from: the contrast a new light starts with.
    m_contrast = sum < 0.1f
                     ? contrastSetting.initial
                     : limited(intensity / sum, contrastSetting.minimum, contrastSetting.maximum);
    m_blur = limited((light->GetShadowBlur() - m_blurMinimum) / (m_blurMaximum - m_blurMinimum),
                     blurSetting.minimum,
                     blurSetting.maximum);

    Vector3 p = transformations->GetPosition();
    normalise(p.x, p.y, p.z);
    // Rounding may leave a unit component a hair above 1.
    const float elevation = std::asin(std::min(std::abs(p.z), 1.0f)) * RadiansToDegrees;
    float x = p.x, y = p.y;
    normalise(x, y);
    const float theta = std::acos(std::clamp(x, -1.0f, 1.0f)) * RadiansToDegrees;
    // Below the floor reads as the same height above it; +Y is a negative horizontal angle.
    m_angleH = limited(y < 0.0f ? theta : -theta, angleHSetting.minimum, angleHSetting.maximum);
    m_angleV = limited(elevation, angleVSetting.minimum, angleVSetting.maximum);

    applyToLight();
    emit changed();
}

void EasyLightingImplementation::store(float &member, float value, const ToolSetting &setting)
{
    value = limited(value, setting.minimum, setting.maximum);
    if (value == member)
        return;
    member = value;
    applyToLight();
}

void EasyLightingImplementation::SetAngleH(float angle)
{
    store(m_angleH, angle, angleHSetting);
}

void EasyLightingImplementation::SetAngleV(float angle)
{
    store(m_angleV, angle, angleVSetting);
}

void EasyLightingImplementation::SetBlur(float blur)
{
    store(m_blur, blur, blurSetting);
}

void EasyLightingImplementation::SetContrast(float contrast)
{
    store(m_contrast, contrast, contrastSetting);
}

QList<QVariantMap> EasyLightingImplementation::GetPropertiesList()
{
    PropertiesListBuilder builder(QStringLiteral("Easy Lighting"));
    AddSettingRows(builder, EasyLightingSettings);
    return builder;
}
