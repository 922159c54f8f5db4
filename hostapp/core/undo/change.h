// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

class INode;

namespace vantrel::host {

// How a recorded change refers to a scene node (see Change::visitNodes).
enum class NodeRole {
    // Brought into the tree by the change: the node it inserts and everything that came with it.
    // Nothing refers to such a node before the change that created it.
    Created,
    // A node whose own value, or place in the tree, the change sets.
    Edited,
    // A parent whose children the change edits at positions it recorded: replayed among other
    // children than it first saw, it would put them elsewhere.
    ParentAtIndex,
    // A parent the change appended a child to. Replayed, it appends again whenever the parent has
    // no more children than it had the first time, so other children going away cannot move it.
    ParentAtEnd,
    // A node the change keeps for another purpose than changing it: the selection lists nodes.
    Held,
};

using NodeVisitor = std::function<void(INode *node, NodeRole role)>;

// One recorded scene change. It is created already applied; undo() and redo() flip it. The
// object that records it (the document's undo history) owns it for as long as it can be undone
// or redone.
class Change
{
public:
    Change() = default;
    Change(const Change &) = delete;
    Change &operator=(const Change &) = delete;
    virtual ~Change() = default;

    virtual void undo() = 0;
    virtual void redo() = 0;

    // Calls visit for every scene node the change refers to, and returns true; or returns false
    // when the change cannot tell (the default). Whoever decides from the answer that a node no
    // longer matters to a change (the document forgetting the changes of nodes it deletes) takes
    // false as "may refer to any node".
    virtual bool visitNodes(const NodeVisitor &) const { return false; }
};

// A change of one value through a raw setter (one that records nothing). A node's value is the
// node's own; a value that is a list of nodes (the selection) holds them; any other value is the
// document's and refers to no node.
template<class Object, class Value>
class ValueChange final : public Change
{
public:
    using Setter = void (Object::*)(Value);

    ValueChange(Object *object, Setter setter, Value before, Value after)
        : m_object(object)
        , m_setter(setter)
        , m_before(std::move(before))
        , m_after(std::move(after))
    {}

    void undo() override { (m_object->*m_setter)(m_before); }
    void redo() override { (m_object->*m_setter)(m_after); }

    bool visitNodes(const NodeVisitor &visit) const override
    {
        if constexpr (std::is_base_of_v<INode, Object>)
            visit(m_object, NodeRole::Edited);
        if constexpr (std::is_same_v<Value, std::vector<INode *>>) {
            for (const std::vector<INode *> *list : {&m_before, &m_after}) {
                for (INode *node : *list)
                    visit(node, NodeRole::Held);
            }
        }
        return true;
    }

private:
    Object *m_object;
    Setter m_setter;
    Value m_before;
    Value m_after;
};

// Where changes go: the document's undo history. apply() runs the change (redo) and keeps it.
class ChangeRecorder
{
public:
    virtual void apply(std::unique_ptr<Change> change) = 0;

protected:
    ChangeRecorder() = default;
    ~ChangeRecorder() = default;
};

} // namespace vantrel::host
