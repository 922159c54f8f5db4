// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <utility>

namespace vantrel::host {

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
};

// A change of one value through a raw setter (one that records nothing).
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
