// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

class IDocument;
class INode;

// Builds a stack: gathers the nodes under a new "Stack" group that stands where the first node
// stood, on the floor; forces the flat-shape parameters; adds copies of the input nodes when
// the list is repeated (A, B, A', B', ... from the bottom up); lays the shapes on top of each
// other, each turned to lie flat, twisted about the vertical axis and shifted sideways by steps
// plus seeded random disorder; selects the group.
//
// Layout() may be run any number of times after the parameters change; it writes absolute
// values. A builder that owns an undo group keeps everything as one undo step when destroyed
// with committed set, and takes it all back otherwise.
class StackBuilder
{
public:
    // nodes: stackable, at least one, bottom first. repeatCount 0 and 1 add no copies.
    StackBuilder(const std::vector<INode *> &nodes,
                 IDocument *document,
                 std::size_t repeatCount,
                 bool ownsUndoGroup);
    ~StackBuilder();
    StackBuilder(const StackBuilder &) = delete;
    StackBuilder &operator=(const StackBuilder &) = delete;

    void Layout();

    // The stack from the bottom up, copies included, and its group.
    const std::vector<INode *> &stackNodes() const { return m_nodes; }
    INode *stackGroup() const { return m_group; }

    // The layout's parameters; set them, then run Layout().
    int seed = 0;
    float twistStep = 0.0f;      // degrees added per level
    float twistDisorder = 0.0f;  // share of the random twist (1: up to +-22.5 degrees)
    float offsetX = 0.0f;        // scene units per level
    float offsetY = 0.0f;        // scene units per level
    float offsetDisorder = 0.0f; // share of the random offset (1: up to +-2 units)
    bool committed = false;      // set by the owner when the stack is to stay

private:
    std::vector<INode *> m_nodes;
    IDocument *m_document;
    INode *m_group = nullptr;
    bool m_ownsUndoGroup;
};
