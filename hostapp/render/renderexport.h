// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

// The renderer is a shared library of its own, so that the host library stays free of OpenGL;
// the program and the tests import its functions and classes.
#if defined(VANTREL_RENDER_LIBRARY)
#define VANTREL_RENDER_EXPORT Q_DECL_EXPORT
#else
#define VANTREL_RENDER_EXPORT Q_DECL_IMPORT
#endif
