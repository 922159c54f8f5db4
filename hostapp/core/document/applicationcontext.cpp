// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/document/applicationcontext.h"

namespace vantrel::host {

ApplicationContext::~ApplicationContext() = default;

} // namespace vantrel::host
