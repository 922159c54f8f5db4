// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/types.h"
#include "hostapp/desktop/selectionmove.h"
#include "hostapp/desktop/viewray.h"

#include <QPointer>
#include <QSize>

namespace vantrel::host {

class Document;

// A drag of the selection in the 3D view, from the press on a selected shape to the release.
//
// The point grabbed on the shape stays under the pointer: it slides on the horizontal plane
// through it, or, while the caller says so (the raise modifier), along the vertical line through
// it. A change of mode takes over from where the shapes are, so nothing jumps.
//
// The whole drag is one undo step, "Move", an undo group opened at the first change; cancel()
// puts everything back and leaves no step. Neither an undo nor a redo can run while the group is
// open (the history refuses them), so nothing else changes the scene under the drag.
class NodeDrag
{
public:
    // Grabs the selection at the point of a selected shape under the press, or refuses (null)
    // when the pointer is not on one: then the drag is the view's own (orbit).
    static std::unique_ptr<NodeDrag>
    grab(Document &document, const QSize &viewSize, const QPointF &position, bool raise);
    ~NodeDrag(); // a drag still open when the view lets go of it is cancelled

    NodeDrag(const NodeDrag &) = delete;
    NodeDrag &operator=(const NodeDrag &) = delete;

    // Moves the selection after the pointer; raise lifts or lowers it instead of sliding it.
    void follow(const QPointF &position, bool raise);
    // Keeps the move as one step (none when nothing moved).
    void finish();
    // Puts every node back where it was and records nothing.
    void cancel();

    // The world offset the selection is moved by now.
    const Vector3 &offset() const { return m_offset; }
    const SelectionMove &selection() const { return m_selection; }

private:
    NodeDrag(Document &document, const QSize &viewSize, const Vector3 &grabbed, bool raise);

    // Where the ray meets the plane or the vertical line through the point, or false when it
    // meets it behind the eye or too far away to mean anything (the pointer near the horizon).
    bool meet(const ViewRay &ray, const Vector3 &through, bool raise, Vector3 *hit) const;

    QPointer<Document> m_document;
    QSize m_viewSize;
    SelectionMove m_selection;
    Vector3 m_grabbed;      // the shape's point under the press, where the selection started
    QPointF m_lastPosition; // of the pointer, where the shapes were last put after it
    Vector3 m_offset;
    // Since the last change of mode: the mode, the offset then, and where the pointer's ray met
    // the plane or line then; the offset now is that offset plus how far the meeting point went.
    bool m_raise = false;
    Vector3 m_referenceOffset;
    Vector3 m_referenceHit;
    bool m_groupOpen = false;
};

} // namespace vantrel::host
