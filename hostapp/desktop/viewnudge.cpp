// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/desktop/viewnudge.h"

#include "geometry/geometry.h"
#include "hostapp/core/document/document.h"
#include "hostapp/desktop/selectionmove.h"

#include <QCoreApplication>

#include <cmath>

namespace vantrel::host {

bool nudgeOffset(const ICamera &camera, int key, Qt::KeyboardModifiers modifiers, Vector3 *offset)
{
    const Qt::KeyboardModifiers other = modifiers & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    if (other != Qt::NoModifier)
        return false; // Ctrl, Alt and Meta with an arrow are left to the window and the desktop
    const float step = modifiers.testFlag(Qt::ShiftModifier) ? LargeNudgeDistance : NudgeDistance;
    // Row 1 of the camera's matrix points towards the image's left; the floor axis nearest to
    // its opposite is "right". Its ties (a camera looking along a diagonal) go to x.
    const Matrix &global = camera.GetGlobalMatrix();
    const float rightX = -global[4], rightY = -global[5];
    const Vector3 right = std::abs(rightX) >= std::abs(rightY)
                              ? Vector3(rightX < 0.f ? -1.f : 1.f, 0.f, 0.f)
                              : Vector3(0.f, rightY < 0.f ? -1.f : 1.f, 0.f);
    // Up (z) x right: away from the viewer, and defined even for a camera looking straight down.
    const Vector3 away = CrossProduct(Vector3(0.f, 0.f, 1.f), right);
    Vector3 direction;
    switch (key) {
    case Qt::Key_Right:
        direction = right;
        break;
    case Qt::Key_Left:
        direction = ScaleVector(right, -1.f);
        break;
    case Qt::Key_Up:
        direction = away;
        break;
    case Qt::Key_Down:
        direction = ScaleVector(away, -1.f);
        break;
    case Qt::Key_PageUp:
        direction = Vector3(0.f, 0.f, 1.f);
        break;
    case Qt::Key_PageDown:
        direction = Vector3(0.f, 0.f, -1.f);
        break;
    default:
        return false;
    }
    *offset = ScaleVector(direction, step);
    return true;
}

bool nudgeSelection(Document &document, int key, Qt::KeyboardModifiers modifiers)
{
    Vector3 offset;
    if (!nudgeOffset(*document.camera(), key, modifiers, &offset))
        return false;
    SelectionMove move(document);
    if (move.isEmpty())
        return false;
    // Each press is a step of its own, a held key's repeats too: the history then undoes a held
    // key press by press, and no group stays open waiting for a release that may never come.
    document.history().setNextStepName(QCoreApplication::translate("SceneView", "Nudge"));
    document.BeginUndoGroup();
    move.moveBy(offset);
    document.EndUndoGroup();
    return true;
}

} // namespace vantrel::host
