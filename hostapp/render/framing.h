// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/types.h"
#include "hostapp/render/renderexport.h"

#include <QSize>

class ICamera;

namespace vantrel::render {

struct DrawLight;

// Picture sizes in pixels. The width is the caller's choice within these limits; the height
// follows from the camera's frame.
constexpr int DefaultPictureWidth = 1200;
constexpr int MinimumPictureWidth = 16;
constexpr int MaximumPictureSide = 4096;

// width by width / aspectRatio, the height rounded and kept within 1..MaximumPictureSide. When
// the height is limited the picture's shape differs from the frame's, and the projection fits
// the frame inside the picture (more shows above and below, or at the sides).
VANTREL_RENDER_EXPORT QSize pictureSize(int width, float aspectRatio);

// The near and far planes of a view (camera space: z is the depth in front of the camera) that
// hold every corner of the box, with a little room. A box behind the camera, or none, gets a
// default range; a camera inside the box gets a near plane a ten-thousandth of the far one.
struct DepthRange
{
    float nearPlane;
    float farPlane;
};
VANTREL_RENDER_EXPORT DepthRange depthRange(const TBBox<float> &box, const Matrix &view);

// How the camera sees a scene whose shapes fill the box, drawn on a surface of pictureAspect
// (width over height): the host's CalculateViewMatrix and CalculateProjectionMatrix with the
// camera's field of view and frame, and the depth range of the box. Drawing and picking in a view
// both take their matrices from here, so a click finds what the pixel shows.
struct CameraView
{
    Matrix view;
    Matrix projection;
};
VANTREL_RENDER_EXPORT CameraView cameraView(const ICamera &camera,
                                            const TBBox<float> &box,
                                            float pictureAspect);

// How a light sees the shadow casters: a view and projection in the camera's conventions (see
// CalculateViewMatrix and CalculateProjectionMatrix), and the view depth that maps to 1 in the
// shadow map. A point light looks from its place at the casters' bounding sphere through the
// narrowest square frustum that holds it; a directional light looks along its direction through
// an orthographic frame as wide as the sphere. A point light inside the sphere cannot see all of
// it at once and looks straight down through a 160 degree frustum instead.
struct ShadowFrame
{
    Matrix view;
    Matrix projection;
    float depthScale = 1.f; // the far plane: stored depths are view depth / depthScale
};
VANTREL_RENDER_EXPORT ShadowFrame shadowFrame(const DrawLight &light, const TBBox<float> &casters);

} // namespace vantrel::render
