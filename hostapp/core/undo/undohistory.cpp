// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/undo/undohistory.h"

#include <QUndoCommand>
#include <QUndoStack>

#include <algorithm>

namespace vantrel::host {

namespace {

// One finished step. Its changes were applied as they were recorded, so the first redo() that
// QUndoStack::push makes is skipped.
class Step final : public QUndoCommand
{
public:
    Step(const QString &name, std::vector<std::unique_ptr<Change>> changes)
        : QUndoCommand(name)
        , m_changes(std::move(changes))
    {}

    void undo() override
    {
        for (auto it = m_changes.rbegin(); it != m_changes.rend(); ++it)
            (*it)->undo();
    }
    void redo() override
    {
        if (std::exchange(m_applied, false))
            return;
        for (const std::unique_ptr<Change> &change : m_changes)
            change->redo();
    }

private:
    std::vector<std::unique_ptr<Change>> m_changes;
    bool m_applied = true;
};

} // namespace

UndoHistory::UndoHistory()
    : m_stack(std::make_unique<QUndoStack>())
{}

UndoHistory::~UndoHistory()
{
    // Open groups are abandoned, not reverted: the document is going away with everything in it.
    m_groups.clear();
}

void UndoHistory::apply(std::unique_ptr<Change> change)
{
    change->redo();
    if (!m_groups.empty()) {
        m_groups.back().changes.push_back(std::move(change));
        return;
    }
    std::vector<std::unique_ptr<Change>> changes;
    changes.push_back(std::move(change));
    m_cancelledName.clear();
    push(takeStepName(QStringLiteral("Edit")), std::move(changes));
}

void UndoHistory::beginGroup()
{
    Group group;
    if (m_groups.empty()) {
        const QString cancelled = std::exchange(m_cancelledName, QString());
        group.name = takeStepName(cancelled.isEmpty() ? QStringLiteral("Edit") : cancelled);
    }
    m_groups.push_back(std::move(group));
}

void UndoHistory::endGroup(EmptyGroup empty)
{
    if (m_groups.empty())
        return; // an unbalanced end has nothing to close
    Group group = std::move(m_groups.back());
    m_groups.pop_back();
    if (!m_groups.empty()) {
        Group &outer = m_groups.back();
        outer.changes.insert(outer.changes.end(),
                             std::make_move_iterator(group.changes.begin()),
                             std::make_move_iterator(group.changes.end()));
        outer.forgot = outer.forgot || group.forgot;
        return;
    }
    if (group.changes.empty() && !group.forgot && empty == EmptyGroup::Drop)
        return;
    push(group.name, std::move(group.changes));
}

void UndoHistory::cancelGroup()
{
    if (m_groups.empty())
        return;
    Group group = std::move(m_groups.back());
    m_groups.pop_back();
    for (auto it = group.changes.rbegin(); it != group.changes.rend(); ++it)
        (*it)->undo();
    // The changes die here, in reverse order, so that a node created inside the group is freed
    // only after every change that referred to it.
    while (!group.changes.empty())
        group.changes.pop_back();
    // A preview that is taken back and at once built again (a tool window rebuilding) is still
    // the same user action: a group begun next takes the name; any other change forgets it.
    if (m_groups.empty())
        m_cancelledName = group.name;
}

const std::vector<std::unique_ptr<Change>> *UndoHistory::openGroupChanges() const
{
    return m_groups.empty() ? nullptr : &m_groups.back().changes;
}

void UndoHistory::forget(const std::vector<std::size_t> &positions)
{
    if (m_groups.empty() || positions.empty())
        return;
    Group &group = m_groups.back();
    for (auto it = positions.rbegin(); it != positions.rend(); ++it)
        group.changes[*it]->undo();
    // Freed newest first, as a cancel frees them: a node goes only after the changes that
    // referred to it.
    for (auto it = positions.rbegin(); it != positions.rend(); ++it)
        group.changes[*it].reset();
    const auto first = group.changes.begin() + std::ptrdiff_t(positions.front());
    group.changes.erase(std::remove(first, group.changes.end(), nullptr), group.changes.end());
    group.forgot = true;
}

bool UndoHistory::undo()
{
    if (!m_groups.empty() || !m_stack->canUndo())
        return false;
    m_cancelledName.clear();
    m_stack->undo();
    return true;
}

bool UndoHistory::redo()
{
    if (!m_groups.empty() || !m_stack->canRedo())
        return false;
    m_cancelledName.clear();
    m_stack->redo();
    return true;
}

int UndoHistory::undoCount() const
{
    return m_stack->index();
}

int UndoHistory::redoCount() const
{
    return m_stack->count() - m_stack->index();
}

QString UndoHistory::undoText() const
{
    return m_stack->undoText();
}

QString UndoHistory::redoText() const
{
    return m_stack->redoText();
}

void UndoHistory::clear()
{
    m_groups.clear();
    m_stack->clear();
    m_cancelledName.clear();
}

void UndoHistory::push(const QString &name, std::vector<std::unique_ptr<Change>> changes)
{
    m_stack->push(new Step(name, std::move(changes)));
}

QString UndoHistory::takeStepName(const QString &fallback)
{
    QString name = std::exchange(m_nextStepName, QString());
    return name.isEmpty() ? fallback : name;
}

} // namespace vantrel::host
