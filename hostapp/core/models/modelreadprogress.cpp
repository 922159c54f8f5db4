// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/models/modelreadprogress.h"

#include <algorithm>
#include <vector>

namespace vantrel::host {

namespace {

// The observers of the scopes alive, the latest last.
std::vector<ModelReadProgress *> &installed()
{
    static std::vector<ModelReadProgress *> s_installed;
    return s_installed;
}

} // namespace

ModelReadProgress::~ModelReadProgress() = default;

ModelReadProgress *ModelReadProgress::current()
{
    return installed().empty() ? nullptr : installed().back();
}

ModelReadProgress::Scope::Scope(ModelReadProgress *observer)
    : m_observer(observer)
{
    installed().push_back(observer);
}

ModelReadProgress::Scope::~Scope()
{
    std::vector<ModelReadProgress *> &observers = installed();
    const auto latest = std::find(observers.rbegin(), observers.rend(), m_observer);
    if (latest != observers.rend())
        observers.erase(std::next(latest).base());
}

} // namespace vantrel::host
