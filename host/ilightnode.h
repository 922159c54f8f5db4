// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtPlugin>

// A light node's light. The light shines from the node's position.
class ILightNode
{
public:
    ILightNode(const ILightNode &) = delete;
    ILightNode &operator=(const ILightNode &) = delete;

    // Light modes: 0 a point light, 1 a directional light from its position towards the origin.
    enum LightMode { PointLight = 0, DirectionalLight = 1 };

    // Same order as the host's declaration: the vtable layout is part of the boundary.
    virtual void SetLightMode(int mode) = 0;
    virtual float GetShadowBlur() const = 0; // radius of the shadow's softening, scene units
    virtual float GetIntensity() const = 0;
    virtual void SetShadowBlur(float blur) = 0;
    virtual void SetIntensity(float intensity) = 0;
    virtual void SetCastShadows(bool cast) = 0;
    // Not called by the tools.
    virtual int GetLightMode() const = 0;
    virtual bool GetCastShadows() const = 0;

protected:
    ILightNode() = default;
    virtual ~ILightNode() = default;
};
#define VANTREL_ILIGHTNODE_IID "com.quillenbard.vantrel.ILightNode"
Q_DECLARE_INTERFACE(ILightNode, VANTREL_ILIGHTNODE_IID)
