// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

namespace vantrel::host {

class BaseNode;
class InsertChange;
class MoveChange;
class RemoveChange;

// The raw edits of the scene tree: taking nodes out of their parents and putting them back. None
// of them records anything, so only the document's tree changes (treechanges.h), which are the
// recording, may use them; every other caller goes through Document's recorded operations.
//
// The edits cost time in proportion to the nodes they touch: children are appended and removed
// at the end in constant time, and batch removals and re-insertions make one pass per parent, so
// building, emptying and restoring a group of tens of thousands of children stays linear.
class TreeSurgery final
{
public:
    struct Placement
    {
        BaseNode *node;
        BaseNode *parent;
        int index;
    };

    TreeSurgery() = delete;

private:
    friend class InsertChange;
    friend class MoveChange;
    friend class RemoveChange;

    // Takes the nodes out of their parents, one pass per parent; returns where they were,
    // grouped by parent in ascending index order.
    static std::vector<Placement> detach(const std::vector<BaseNode *> &nodes);
    // Puts nodes back where detach() found them.
    static void reattach(const std::vector<Placement> &placements);
    // Inserts the nodes at index of parent's children (appends for an index out of range).
    static void insertChildren(BaseNode *parent, int index, const std::vector<BaseNode *> &nodes);
};

} // namespace vantrel::host
