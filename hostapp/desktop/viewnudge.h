// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/types.h"

#include <Qt>

class ICamera;

namespace vantrel::host {

class Document;

// The arrow keys in the 3D view move the selection a little along the floor, PageUp and
// PageDown lift and lower it. Left and right go along the floor axis (x or y) nearest to the
// image's left-to-right direction, up and down along the one square to it that points away from
// the viewer, so that the selection goes the way the key points whichever way the camera looks.
constexpr float NudgeDistance = 1.f;       // centimetres; scene units are centimetres
constexpr float LargeNudgeDistance = 10.f; // with Shift

// How far (world space) the key moves the selection as the camera sees it, or false when the
// key with those modifiers is no nudge (only none or Shift, with or without the keypad's flag).
bool nudgeOffset(const ICamera &camera, int key, Qt::KeyboardModifiers modifiers, Vector3 *offset);

// Moves the document's selection by the key's offset as one undo step, "Nudge". False, and
// nothing changed, when the key is no nudge or nothing selected can move: the key is then free
// for whatever else the view's parents do with it.
bool nudgeSelection(Document &document, int key, Qt::KeyboardModifiers modifiers);

} // namespace vantrel::host
