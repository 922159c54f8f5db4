// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/core/undo/change.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <unordered_set>
#include <vector>

namespace vantrel::host {

// A deletion of nodes that the innermost open undo group created itself. Recorded as a removal,
// the nodes would stay alive inside the group, which can only ever take them back out of the scene
// (Cancel) or put them in again and take them out (undo and redo of the finished step). So the
// group may instead forget the changes that created and edited them, and the nodes go at once. A
// tool window whose preview builds tens of thousands of copies, and builds them all anew on every
// count change, would otherwise keep every generation of copies until the window closes.
//
// Forgetting is allowed only where nobody can tell it from the recorded removal:
// - the deleted nodes are exactly the nodes that changes of this group created: none was in the
//   scene before the group began, and none that such a change created lives on elsewhere;
// - every change that refers to a deleted node is one of theirs: it creates or edits deleted
//   nodes only (a selection that holds one keeps the removal recorded);
// - no change that stays edits a parent's children at recorded positions after a deleted node
//   had been among them: undone and redone without it, the positions would no longer match
//   (appending stays right);
// - every change looked at can say which nodes it refers to.
class InGroupDeletion final
{
public:
    using IsDeleted = std::function<bool(INode *node)>;

    // The positions, ascending, of the group's changes to forget for a deletion of deletedCount
    // nodes (the given subtrees counted whole; isDeleted tells them), or nothing when the deletion
    // has to be recorded as a removal. Looks back from the newest change only as far as the
    // deleted nodes' creation, and past only so many unrelated changes.
    static std::vector<std::size_t> plan(const std::vector<std::unique_ptr<Change>> &changes,
                                         std::size_t deletedCount,
                                         const IsDeleted &isDeleted);

private:
    struct Reference
    {
        INode *node;
        NodeRole role;
        bool deleted;
    };

    InGroupDeletion(std::size_t deletedCount, const IsDeleted &isDeleted);

    // Takes in the change at position, newest first: false when the deletion has to be recorded.
    bool take(const Change &change, std::size_t position);
    bool forgettable() const;

    const IsDeleted &m_isDeleted;
    NodeVisitor m_collect;
    std::vector<Reference> m_references; // of the change at hand
    std::size_t m_created = 0;           // deleted nodes whose creation has been seen
    std::size_t m_unrelatedLeft;         // how many more unrelated changes the look back may pass
    // Parents whose children a change that stays (newer than the change at hand) edits at
    // recorded positions.
    std::unordered_set<INode *> m_indexedLater;
    std::vector<std::size_t> m_positions; // newest first
};

} // namespace vantrel::host
