// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/undo/change.h"

#include <QString>

#include <memory>
#include <vector>

class QUndoStack;

namespace vantrel::host {

class Document;

// A document's undo history. Finished steps live on a QUndoStack (which gives the Edit menu its
// actions, step names and the unsaved-changes state); changes made while a group is open are
// collected here until the group ends or is cancelled.
//
// Groups nest: ending an inner group hands its changes to the outer one, cancelling it reverts
// only its own changes. Outside any group every change is a step of its own.
class VANTREL_HOST_EXPORT UndoHistory
{
public:
    // Whether an outermost group that collected nothing still becomes an (empty) undo step.
    enum class EmptyGroup { Keep, Drop };

    UndoHistory();
    ~UndoHistory();
    UndoHistory(const UndoHistory &) = delete;
    UndoHistory &operator=(const UndoHistory &) = delete;

    void beginGroup();
    void endGroup(EmptyGroup empty = EmptyGroup::Keep);
    void cancelGroup();
    int openGroupCount() const { return int(m_groups.size()); }

    // The name the next step gets in the Edit menu; used once, then reset.
    void setNextStepName(const QString &name) { m_nextStepName = name; }

    // Whole steps; refused (false) while a group is open.
    bool undo();
    bool redo();
    int undoCount() const;
    int redoCount() const;
    QString undoText() const;
    QString redoText() const;

    // Forgets every step (the changes' own resources, such as removed nodes, are freed).
    void clear();

    QUndoStack *stack() const { return m_stack.get(); }

private:
    // Only the document hands changes in, so that every recorded change also tells the views.
    friend class Document;

    // Runs the change and keeps it in the open group, or as a step of its own.
    void apply(std::unique_ptr<Change> change);

    // The changes the innermost open group has collected, oldest first; null when none is open.
    const std::vector<std::unique_ptr<Change>> *openGroupChanges() const;
    // Takes the innermost open group's changes at these positions (ascending) back as if they had
    // never been made: reverts them newest first, then frees them, and with them whatever they
    // own. The group's other changes keep their order. The caller has made sure that none of
    // those depends on what is taken back.
    void forget(const std::vector<std::size_t> &positions);

    struct Group
    {
        QString name;
        std::vector<std::unique_ptr<Change>> changes;
        // Whether changes were forgotten: the group stands for a user action even if that left
        // it empty, just as it would if it still held the changes that undo each other.
        bool forgot = false;
    };

    void push(const QString &name, std::vector<std::unique_ptr<Change>> changes);
    QString takeStepName(const QString &fallback);

    std::unique_ptr<QUndoStack> m_stack;
    std::vector<Group> m_groups;
    QString m_nextStepName;
    QString m_cancelledName; // of a top-level group just cancelled, for a group begun at once
};

} // namespace vantrel::host
