// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/document/ingroupdeletion.h"

#include <algorithm>

namespace vantrel::host {

namespace {

// Unrelated changes the look back may pass beyond one per deleted node. Bounded, so that a
// script deleting nodes one at a time in a long group costs about what recording each removal
// costs; the tool windows' previews, whose newest changes are all their copies', never come near.
constexpr std::size_t UnrelatedAllowance = 64;

} // namespace

InGroupDeletion::InGroupDeletion(std::size_t deletedCount, const IsDeleted &isDeleted)
    : m_isDeleted(isDeleted)
    , m_collect([this](INode *node, NodeRole role) {
        m_references.push_back({node, role, m_isDeleted(node)});
    })
    , m_unrelatedLeft(deletedCount + UnrelatedAllowance)
{}

std::vector<std::size_t> InGroupDeletion::plan(const std::vector<std::unique_ptr<Change>> &changes,
                                               std::size_t deletedCount,
                                               const IsDeleted &isDeleted)
{
    InGroupDeletion scan(deletedCount, isDeleted);
    for (std::size_t position = changes.size(); position-- > 0;) {
        if (!scan.take(*changes[position], position))
            return {};
        // Nothing refers to a node before the change that created it: once every deleted node's
        // creation has been seen, no older change can be theirs.
        if (scan.m_created == deletedCount) {
            std::reverse(scan.m_positions.begin(), scan.m_positions.end());
            return std::move(scan.m_positions);
        }
    }
    return {}; // some deleted node is older than the group
}

bool InGroupDeletion::take(const Change &change, std::size_t position)
{
    m_references.clear();
    if (!change.visitNodes(m_collect))
        return false;
    const bool theirs = std::any_of(m_references.begin(),
                                    m_references.end(),
                                    [](const Reference &reference) { return reference.deleted; });
    if (!theirs) {
        if (m_unrelatedLeft-- == 0)
            return false;
        for (const Reference &reference : m_references) {
            if (reference.role == NodeRole::ParentAtIndex)
                m_indexedLater.insert(reference.node);
        }
        return true;
    }
    if (!forgettable())
        return false;
    m_created += std::size_t(
        std::count_if(m_references.begin(), m_references.end(), [](const Reference &reference) {
            return reference.role == NodeRole::Created;
        }));
    m_positions.push_back(position);
    return true;
}

bool InGroupDeletion::forgettable() const
{
    for (const Reference &reference : m_references) {
        switch (reference.role) {
        case NodeRole::Created:
        case NodeRole::Edited:
            // A node this change made or set that lives on would lose its history.
            if (!reference.deleted)
                return false;
            break;
        case NodeRole::ParentAtIndex:
        case NodeRole::ParentAtEnd:
            // The deleted node was among this parent's children; a newer change that stays
            // counted it when it recorded positions there.
            if (!reference.deleted && m_indexedLater.count(reference.node) != 0)
                return false;
            break;
        case NodeRole::Held:
            return false;
        }
    }
    return true;
}

} // namespace vantrel::host
