// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "frame/toolsettings.h"

class INode;
struct ToolSetting;

// Easy Lighting's settings: one light named "EasyLight" steered by four numbers. Constructing
// the object switches the document to its scene lights, hides every other light and adopts the
// first "EasyLight" met in pre-order (reading the four numbers back from it) or creates one at
// the initial values. Every write that changes a value places the light and sets the ambient
// level at once.
//
// The light stands at distance 100 from the origin: angleV is its elevation above the floor,
// angleH turns it from +X towards -Y. contrast is the light's share of light plus ambient; blur
// places the shadow blur within 0.1..30.
class EasyLightingImplementation final : public ToolSettings
{
    Q_OBJECT
    Q_PROPERTY(float angleH READ GetAngleH WRITE SetAngleH)
    Q_PROPERTY(float angleV READ GetAngleV WRITE SetAngleV)
    Q_PROPERTY(float blur READ GetBlur WRITE SetBlur)
    Q_PROPERTY(float contrast READ GetContrast WRITE SetContrast)

public:
    EasyLightingImplementation(IDocument *document, bool openUndoGroup);

    float GetAngleH() const { return m_angleH; }
    float GetAngleV() const { return m_angleV; }
    float GetBlur() const { return m_blur; }
    float GetContrast() const { return m_contrast; }
    // Each limits the value to its range (EasyLightingSettings); a value equal to the stored one
    // after limiting changes nothing and leaves the light alone.
    void SetAngleH(float angle);
    void SetAngleV(float angle);
    void SetBlur(float blur);
    void SetContrast(float contrast);

    QList<QVariantMap> GetPropertiesList() override;

    // The adopted or created light.
    INode *light() const { return m_light; }

private:
    void findEasyLight(INode *node);
    void applyToLight();
    void readFromLight();
    void store(float &member, float value, const ToolSetting &setting);

    const float m_blurMinimum = 0.1f;
    const float m_blurMaximum = 30.0f;
    INode *m_light = nullptr;
    // Start from the settings table's initial values.
    float m_blur;
    float m_angleH;
    float m_angleV;
    float m_contrast;
};
