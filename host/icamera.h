// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/types.h"

// A document's view camera: an orbit camera that looks at a target point from a distance, in
// a direction given by its yaw and pitch, through a vertical field of view and a frame of a
// given aspect ratio. The camera is view state: its changes are not recorded for undo.
//
// GetGlobalMatrix rows: 0 the viewing direction, 1 towards the image's left, 2 towards the
// image's top (rows 0-2 are unit vectors), 3 the camera position (target - distance * row 0).
// Every setter's effect shows in the next getter call.
class ICamera
{
public:
    ICamera(const ICamera &) = delete;
    ICamera &operator=(const ICamera &) = delete;

    // The distance is kept within these limits, so that a search that keeps doubling (or
    // halving) the distance always ends.
    static constexpr float MinimumDistance = 0.01f;
    static constexpr float MaximumDistance = 100000.f;

    // Same order as the host's declaration: the vtable layout is part of the boundary.
    virtual const Vector3 &GetTarget() const = 0;
    virtual void SetTarget(const Vector3 &target) = 0;
    virtual float GetDistance() const = 0;
    // Limited to MinimumDistance..MaximumDistance; GetDistance shows the value taken.
    virtual void SetDistance(float distance) = 0;
    virtual float GetFieldOfView() const = 0; // vertical, degrees
    virtual float GetAspectRatio() const = 0; // frame width over height
    virtual void SetAspectRatio(float ratio) = 0;
    virtual const Matrix &GetGlobalMatrix() const = 0;

protected:
    ICamera() = default;
    virtual ~ICamera() = default;
};
