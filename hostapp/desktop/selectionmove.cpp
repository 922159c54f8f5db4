// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/desktop/selectionmove.h"

#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/scenenode.h"
#include "hostapp/desktop/viewray.h"

#include <QPainter>
#include <QPolygonF>

#include <algorithm>
#include <unordered_set>

namespace vantrel::host {

namespace {

// Beyond this many moved nodes the marks show the box round all of them instead of one each:
// hundreds of outlines say no more than one, and would slow every frame of the drag.
constexpr std::size_t MaximumOutlines = 64;

bool hasSelectedAncestor(const std::unordered_set<const INode *> &selection, const INode *node)
{
    for (const INode *above = node->GetParent(); above; above = above->GetParent()) {
        if (selection.count(above))
            return true;
    }
    return false;
}

// Where a node's box, or for a node without a shape (a light) its origin, stands in the scene.
TBBox<float> worldBox(const INode *node)
{
    TBBox<float> box = ComputeNodeBBox(node);
    if (IsBoxEmpty(box)) {
        Matrix world;
        GetNodeGlobalMatrix(world, node);
        ExtendBox(box, Vector3(world[12], world[13], world[14]));
    }
    return box;
}

void paintBoxLanding(QPainter &painter,
                     const ICamera &camera,
                     const QSize &viewSize,
                     const TBBox<float> &box)
{
    const Vector3 floorCorners[4] = {Vector3(box.min[0], box.min[1], 0.f),
                                     Vector3(box.max[0], box.min[1], 0.f),
                                     Vector3(box.max[0], box.max[1], 0.f),
                                     Vector3(box.min[0], box.max[1], 0.f)};
    QPolygonF outline;
    for (const Vector3 &corner : floorCorners) {
        QPointF at;
        if (projectToWidget(camera, viewSize, corner, &at))
            outline << at;
    }
    if (outline.size() == 4) // a corner behind the eye would fold the outline over itself
        painter.drawPolygon(outline);
    const float middleX = 0.5f * (box.min[0] + box.max[0]);
    const float middleY = 0.5f * (box.min[1] + box.max[1]);
    QPointF underside, onFloor;
    if (projectToWidget(camera, viewSize, Vector3(middleX, middleY, box.min[2]), &underside)
        && projectToWidget(camera, viewSize, Vector3(middleX, middleY, 0.f), &onFloor)) {
        painter.drawLine(underside, onFloor);
        painter.drawEllipse(onFloor, 3.0, 3.0);
    }
}

} // namespace

bool isShownSelected(const Document &document, const INode *node)
{
    const std::vector<INode *> &selection = document.GetSelection();
    for (; node; node = node->GetParent()) {
        if (std::find(selection.begin(), selection.end(), node) != selection.end())
            return true;
    }
    return false;
}

SelectionMove::SelectionMove(const Document &document)
{
    const std::unordered_set<const INode *> selection(document.GetSelection().begin(),
                                                      document.GetSelection().end());
    for (INode *selected : document.GetSelection()) {
        auto *node = dynamic_cast<SceneNode *>(selected);
        if (!node || !node->GetParent() || hasSelectedAncestor(selection, node))
            continue;
        Entry entry;
        entry.node = node;
        entry.start = node->GetPosition();
        Matrix parentWorld;
        GetNodeGlobalMatrix(parentWorld, node->GetParent());
        // A parent scaled to nothing has no inverse: its children cannot be moved in the scene
        // at all, and a zero matrix keeps them where they are.
        std::fill(entry.worldToParent.m, entry.worldToParent.m + 16, 0.f);
        InvertMatrix(entry.worldToParent, parentWorld);
        m_nodes.push_back(entry);
    }
}

void SelectionMove::moveBy(const Vector3 &worldOffset)
{
    for (const Entry &entry : m_nodes) {
        if (!entry.node || !entry.node->GetParent())
            continue;
        Vector3 local = worldOffset;
        TransformDirection(local, entry.worldToParent);
        entry.node->SetPosition(AddVectors(entry.start, local), true);
    }
}

void SelectionMove::paintLanding(QPainter &painter,
                                 const ICamera &camera,
                                 const QSize &viewSize) const
{
    std::vector<TBBox<float>> boxes;
    for (const Entry &entry : m_nodes) {
        if (entry.node && entry.node->GetParent())
            boxes.push_back(worldBox(entry.node));
    }
    if (boxes.size() > MaximumOutlines) {
        TBBox<float> all = boxes.front();
        for (const TBBox<float> &box : boxes)
            MergeBoxes(all, box);
        boxes.assign(1, all);
    }
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(QColor(255, 150, 40, 60));
    // A dark edge under a bright line: the mark shows on the light floor and on dark shapes.
    for (const auto &[colour, width] :
         {std::pair(QColor(40, 30, 20, 160), 4.0), std::pair(QColor(255, 150, 40), 2.0)}) {
        painter.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        for (const TBBox<float> &box : boxes)
            paintBoxLanding(painter, camera, viewSize, box);
        painter.setBrush(Qt::NoBrush);
    }
    painter.restore();
}

} // namespace vantrel::host
