// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

// The host's shared library exports its free functions and classes; everything that links
// against it (the tools plug-in, the program, tests) imports them.
#if defined(VANTREL_HOST_LIBRARY)
#define VANTREL_HOST_EXPORT Q_DECL_EXPORT
#else
#define VANTREL_HOST_EXPORT Q_DECL_IMPORT
#endif
