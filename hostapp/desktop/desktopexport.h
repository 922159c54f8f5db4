// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

// The desktop program's windows are a shared library of their own, so that the tests drive the
// very window the program shows.
#if defined(VANTREL_DESKTOP_LIBRARY)
#define VANTREL_DESKTOP_EXPORT Q_DECL_EXPORT
#else
#define VANTREL_DESKTOP_EXPORT Q_DECL_IMPORT
#endif
