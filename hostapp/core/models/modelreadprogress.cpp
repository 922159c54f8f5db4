// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/models/modelreadprogress.h"

namespace vantrel::host {

namespace {

ModelReadProgress *s_current = nullptr;

} // namespace

ModelReadProgress::~ModelReadProgress() = default;

ModelReadProgress *ModelReadProgress::current()
{
    return s_current;
}

ModelReadProgress::Scope::Scope(ModelReadProgress *observer)
    : m_previous(s_current)
{
    s_current = observer;
}

ModelReadProgress::Scope::~Scope()
{
    s_current = m_previous;
}

} // namespace vantrel::host
