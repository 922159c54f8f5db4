// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "host/icamera.h"

#include <functional>

namespace vantrel::host {

// The document's orbit camera. The camera sits at target + distance * (cos p cos y, cos p sin y,
// sin p) for yaw y and pitch p (degrees): yaw turns it round the vertical axis through the
// target, counted from +x towards +y; pitch lifts it above the target's horizontal plane.
// It looks at the target with the image's top towards +z.
class VANTREL_HOST_EXPORT Camera final : public ICamera
{
public:
    // Pitch stays short of straight up and down, where the image's top would be undefined.
    static constexpr float MaximumPitch = 89.f;

    Camera();

    const Vector3 &GetTarget() const override { return m_target; }
    void SetTarget(const Vector3 &target) override;
    float GetDistance() const override { return m_distance; }
    void SetDistance(float distance) override;
    float GetFieldOfView() const override { return m_fieldOfView; }
    float GetAspectRatio() const override { return m_aspectRatio; }
    void SetAspectRatio(float ratio) override;
    const Matrix &GetGlobalMatrix() const override { return m_global; }

    float yaw() const { return m_yaw; }
    float pitch() const { return m_pitch; }
    void setYaw(float degrees);
    void setPitch(float degrees);       // limited to +-MaximumPitch
    void setFieldOfView(float degrees); // limited to 1..170
    Vector3 position() const;           // row 3 of the global matrix

    // A camera that frames a 60 cm tall arrangement on the floor from the front right.
    void reset();

    // Called after every setter and reset(), even when the value stays (a setter that limits a
    // value does not tell whether it changed). The camera is view state and records no undo
    // step, so this is how its owner learns that views must follow. Null removes the listener.
    void setChangeListener(std::function<void()> listener)
    {
        m_changeListener = std::move(listener);
    }

private:
    void update();
    void notify() const;

    Vector3 m_target;
    float m_distance = 0.f;
    float m_yaw = 0.f;
    float m_pitch = 0.f;
    float m_fieldOfView = 0.f;
    float m_aspectRatio = 0.f;
    Matrix m_global;
    std::function<void()> m_changeListener;
};

} // namespace vantrel::host
