// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tools/stack/stacksettings.h"

#include <QMetaType>

#include <cstddef>
#include <vector>

class IDocument;
class INode;

// How a stack is laid out, the Stack's settings other than the repeat count. Its Qt properties
// carry the settings' names (StackSettings), so that a script dictionary is applied to it through
// the settings table; each starts from the table's initial value.
struct StackLayout
{
    Q_GADGET
    Q_PROPERTY(int generationSeed MEMBER seed)
    Q_PROPERTY(float twistStep MEMBER twistStep)
    Q_PROPERTY(float twistDisorder MEMBER twistDisorder)
    Q_PROPERTY(float offsetX MEMBER offsetX)
    Q_PROPERTY(float offsetY MEMBER offsetY)
    Q_PROPERTY(float offsetDisorder MEMBER offsetDisorder)

public:
    int seed = int(FindSetting(StackSettings, "generationSeed").initial);
    // degrees added per level
    float twistStep = FindSetting(StackSettings, "twistStep").initial;
    // share of the random twist (1: up to +-22.5 degrees)
    float twistDisorder = FindSetting(StackSettings, "twistDisorder").initial;
    // scene units per level
    float offsetX = FindSetting(StackSettings, "offsetX").initial;
    float offsetY = FindSetting(StackSettings, "offsetY").initial;
    // share of the random offset (1: up to +-2 units)
    float offsetDisorder = FindSetting(StackSettings, "offsetDisorder").initial;
};
// Made at compile time, so that a setting name the table lacks stops the build.
inline constexpr StackLayout InitialStackLayout{};

// Builds a stack: gathers the nodes under a new "Stack" group that stands where the first node
// stood, on the floor; forces the flat-shape parameters; adds copies of the input nodes when
// the list is repeated (A, B, A', B', ... from the bottom up); lays the shapes on top of each
// other, each turned to lie flat, twisted about the vertical axis and shifted sideways by steps
// plus seeded random disorder; selects the group.
//
// The stack is laid out with the initial layout at once; Layout() may be run any number of times
// with other parameters, and writes absolute values. A builder that owns an undo group keeps
// everything as one undo step when destroyed after setCommitted(true), and takes it all back
// otherwise.
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

    // Keeps the parameters and lays the stack out with them.
    void Layout(const StackLayout &layout);
    const StackLayout &layout() const { return m_layout; }

    // The stack from the bottom up, copies included, and its group.
    const std::vector<INode *> &stackNodes() const { return m_nodes; }
    INode *stackGroup() const { return m_group; }

    // Set by the owner when the stack is to stay.
    void setCommitted(bool committed) { m_committed = committed; }

private:
    std::vector<INode *> m_nodes;
    IDocument *m_document;
    INode *m_group = nullptr;
    bool m_ownsUndoGroup;
    bool m_committed = false;
    StackLayout m_layout;
};
