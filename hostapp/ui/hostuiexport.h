// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

// The host's property-panel library is a shared library of its own; the tools plug-in, the
// program and the tests import its classes.
#if defined(VANTREL_HOSTUI_LIBRARY)
#define VANTREL_HOSTUI_EXPORT Q_DECL_EXPORT
#else
#define VANTREL_HOSTUI_EXPORT Q_DECL_IMPORT
#endif
