// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "frame/toolsupport.h"

namespace {
IApplicationContext *s_applicationContext = nullptr;
} // namespace

IApplicationContext *GetApplicationContext()
{
    return s_applicationContext;
}

void SetApplicationContext(IApplicationContext *context)
{
    s_applicationContext = context;
}
