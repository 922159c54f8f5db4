// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/desktop/viewray.h"

#include "geometry/geometry.h"
#include "host/icamera.h"
#include "hostapp/render/framing.h"

namespace vantrel::host {

namespace {

// The matrices the view draws with; a box round the target keeps the arithmetic well conditioned
// at any distance when no scene box is at hand.
render::CameraView viewAroundTarget(const ICamera &camera, const QSize &widgetSize)
{
    TBBox<float> aroundTarget;
    ExtendBox(aroundTarget, camera.GetTarget());
    return render::cameraView(
        camera, aroundTarget, float(widgetSize.width()) / float(widgetSize.height()));
}

} // namespace

QPointF toDevice(const QPointF &position, const QSize &size)
{
    return QPointF(2.0 * (position.x() + 0.5) / size.width() - 1.0,
                   1.0 - 2.0 * (position.y() + 0.5) / size.height());
}

Vector3 unproject(const Matrix &inverseViewProjection, const QPointF &device, float z)
{
    Vector4 p(float(device.x()), float(device.y()), z, 1.f);
    TransformVector4(p, inverseViewProjection);
    return Vector3(p.x / p.w, p.y / p.w, p.z / p.w);
}

Matrix inverseViewProjection(const Matrix &view, const Matrix &projection)
{
    Matrix viewProjection, inverse;
    MultiplyMatrices(viewProjection, view, projection);
    MakeIdentity(inverse);
    InvertMatrix(inverse, viewProjection);
    return inverse;
}

ViewRay viewRay(const ICamera &camera,
                const TBBox<float> &box,
                const QSize &widgetSize,
                const QPointF &position)
{
    const render::CameraView view
        = IsBoxEmpty(box) ? viewAroundTarget(camera, widgetSize)
                          : render::cameraView(
                              camera, box, float(widgetSize.width()) / float(widgetSize.height()));
    const Matrix &global = camera.GetGlobalMatrix();
    const Vector3 eye(global[12], global[13], global[14]);
    const Vector3 far = unproject(
        inverseViewProjection(view.view, view.projection), toDevice(position, widgetSize), 1.f);
    return ViewRay{eye, SubtractVectors(far, eye)};
}

bool projectToWidget(const ICamera &camera,
                     const QSize &widgetSize,
                     const Vector3 &point,
                     QPointF *position)
{
    const render::CameraView view = viewAroundTarget(camera, widgetSize);
    Matrix viewProjection;
    MultiplyMatrices(viewProjection, view.view, view.projection);
    Vector4 clip(point.x, point.y, point.z, 1.f);
    TransformVector4(clip, viewProjection);
    if (!(clip.w > 1e-6f))
        return false;
    *position = QPointF((clip.x / clip.w + 1.0) * 0.5 * widgetSize.width() - 0.5,
                        (1.0 - clip.y / clip.w) * 0.5 * widgetSize.height() - 0.5);
    return true;
}

} // namespace vantrel::host
