// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/desktop/nodedrag.h"

#include "geometry/geometry.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/desktop/scenepick.h"

#include <QCoreApplication>

#include <cmath>

namespace vantrel::host {

namespace {

// Near the horizon a pixel of the pointer's travel is a long way across the floor: a meeting
// point farther from the eye than this many times the grabbed point is taken as no meeting, and
// the shapes wait where they are until the pointer comes back.
constexpr float FarthestReach = 50.f;

float length(const Vector3 &v)
{
    return std::sqrt(DotProduct(v, v));
}

} // namespace

std::unique_ptr<NodeDrag>
NodeDrag::grab(Document &document, const QSize &viewSize, const QPointF &position, bool raise)
{
    Vector3 grabbed;
    MeshNode *shape = pickAt(document, viewSize, position, &grabbed);
    if (!shape || !isShownSelected(document, shape))
        return nullptr;
    std::unique_ptr<NodeDrag> drag(new NodeDrag(document, viewSize, grabbed, raise));
    drag->m_lastPosition = position;
    if (drag->m_selection.isEmpty())
        return nullptr;
    return drag;
}

NodeDrag::NodeDrag(Document &document, const QSize &viewSize, const Vector3 &grabbed, bool raise)
    : m_document(&document)
    , m_viewSize(viewSize)
    , m_selection(document)
    , m_grabbed(grabbed)
    , m_raise(raise)
    // The press's ray runs through the grabbed point, which lies on both its plane and its line.
    , m_referenceHit(grabbed)
{}

NodeDrag::~NodeDrag()
{
    cancel();
}

bool NodeDrag::meet(const ViewRay &ray, const Vector3 &through, bool raise, Vector3 *hit) const
{
    const Vector3 &d = ray.direction;
    const Vector3 toPoint = SubtractVectors(through, ray.origin);
    if (!raise) {
        if (std::abs(d.z) < 1e-9f * length(d))
            return false; // the ray runs along the plane
        *hit = ray.at(toPoint.z / d.z);
    } else {
        // The point of the vertical line nearest to the ray: the two lines' common perpendicular.
        const float dd = DotProduct(d, d);
        const float denominator = dd - d.z * d.z; // |d|^2 |up|^2 - (d . up)^2
        if (denominator < 1e-9f * dd)
            return false; // looking straight up or down the line
        const float along = (d.z * DotProduct(d, toPoint) - dd * toPoint.z) / denominator;
        *hit = Vector3(through.x, through.y, through.z + along);
    }
    const Vector3 eyeToHit = SubtractVectors(*hit, ray.origin);
    return DotProduct(eyeToHit, d) > 0.f
           && length(eyeToHit) <= FarthestReach * std::max(length(toPoint), 1e-3f);
}

void NodeDrag::follow(const QPointF &position, bool raise)
{
    if (!m_document)
        return;
    const Camera &camera = *m_document->camera();
    Vector3 hit;
    if (raise != m_raise) {
        // The new mode starts from where the shapes are: where the ray of the pointer's last
        // position meets the new plane or line is the reference, so the shapes do not jump.
        const ViewRay last = viewRay(camera, TBBox<float>(), m_viewSize, m_lastPosition);
        if (!meet(last, AddVectors(m_grabbed, m_offset), raise, &hit))
            return;
        m_raise = raise;
        m_referenceOffset = m_offset;
        m_referenceHit = hit;
    }
    const ViewRay ray = viewRay(camera, TBBox<float>(), m_viewSize, position);
    if (!meet(ray, AddVectors(m_grabbed, m_referenceOffset), raise, &hit))
        return;
    m_lastPosition = position;
    Vector3 offset = AddVectors(m_referenceOffset, SubtractVectors(hit, m_referenceHit));
    // Only the mode's own axes move: rounding must not creep into the others.
    if (raise)
        offset.x = m_referenceOffset.x, offset.y = m_referenceOffset.y;
    else
        offset.z = m_referenceOffset.z;
    if (offset == m_offset)
        return;
    if (!m_groupOpen) {
        m_document->history().setNextStepName(QCoreApplication::translate("SceneView", "Move"));
        m_document->BeginUndoGroup();
        m_groupOpen = true;
    }
    m_offset = offset;
    m_selection.moveBy(m_offset);
}

void NodeDrag::finish()
{
    if (!m_groupOpen)
        return;
    m_groupOpen = false;
    if (m_document)
        m_document->EndUndoGroup();
}

void NodeDrag::cancel()
{
    if (!m_groupOpen)
        return;
    m_groupOpen = false;
    m_offset = Vector3();
    if (m_document)
        m_document->CancelUndoGroup();
}

} // namespace vantrel::host
