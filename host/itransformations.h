// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/types.h"

#include <QtPlugin>

// A node's place relative to its parent: position (scene units), rotation (Euler x, y, z in
// degrees, applied about x first, then y, then z) and per-axis scale. The local matrix is
// scale, then rotation, then translation.
class ITransformations
{
public:
    ITransformations(const ITransformations &) = delete;
    ITransformations &operator=(const ITransformations &) = delete;

    // Same order as the host's declaration: the vtable layout is part of the boundary.
    virtual const Vector3 &GetPosition() const = 0;
    virtual const Vector3 &GetRotation() const = 0;
    virtual const Vector3 &GetScale() const = 0;
    // The flags say how soon views redraw: true at once, false with the next batch of changes.
    // The change is recorded for undo either way.
    virtual void SetPosition(const Vector3 &position, bool flag) = 0;
    virtual void SetRotation(const Vector3 &anglesDegrees, bool flag) = 0;
    // flag: 0 sets the three factors as given; other values are reserved.
    virtual void SetScale(const Vector3 &scale, int flag) = 0;

protected:
    ITransformations() = default;
    virtual ~ITransformations() = default;
};
#define VANTREL_ITRANSFORMATIONS_IID "com.quillenbard.vantrel.ITransformations"
Q_DECLARE_INTERFACE(ITransformations, VANTREL_ITRANSFORMATIONS_IID)
