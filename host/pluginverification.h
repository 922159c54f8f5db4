// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// The text that a plug-in library and the host's loader compare before the host takes anything
// from the library, in the shape Qt 4's loader used: the Qt version, whether Qt's debug checks
// are on, and the platform and compiler the code was built for. Both sides compose it from the
// build at hand, so a plug-in built against another Qt or by another compiler is refused.

#include <QtGlobal>

#define VANTREL_VERIFICATION_STR2(x) #x
#define VANTREL_VERIFICATION_STR(x) VANTREL_VERIFICATION_STR2(x)

#if defined(QT_NO_DEBUG)
#define VANTREL_VERIFICATION_DEBUG "false"
#else
#define VANTREL_VERIFICATION_DEBUG "true"
#endif

#if defined(Q_OS_MACOS)
#define VANTREL_VERIFICATION_OS "macosx macx-cocoa"
#elif defined(Q_OS_WIN)
#define VANTREL_VERIFICATION_OS "windows"
#elif defined(Q_OS_LINUX)
#define VANTREL_VERIFICATION_OS "linux"
#else
#define VANTREL_VERIFICATION_OS "unix"
#endif

#if defined(Q_PROCESSOR_X86_64)
#define VANTREL_VERIFICATION_ARCH "x86_64"
#elif defined(Q_PROCESSOR_ARM_64)
#define VANTREL_VERIFICATION_ARCH "arm64"
#elif defined(Q_PROCESSOR_X86_32)
#define VANTREL_VERIFICATION_ARCH "i386"
#else
#define VANTREL_VERIFICATION_ARCH "other"
#endif

#if defined(__clang__)
#define VANTREL_VERIFICATION_COMPILER "clang-" VANTREL_VERIFICATION_STR(__clang_major__)
#elif defined(__GNUC__)
#define VANTREL_VERIFICATION_COMPILER "g++-" VANTREL_VERIFICATION_STR(__GNUC__)
#else
#define VANTREL_VERIFICATION_COMPILER "unknown"
#endif

#define VANTREL_PLUGIN_VERIFICATION_DATA                                                           \
    "pattern=QT_PLUGIN_VERIFICATION_DATA\n"                                                        \
    "version=" QT_VERSION_STR "\n"                                                                 \
    "debug=" VANTREL_VERIFICATION_DEBUG "\n"                                                       \
    "buildkey=" VANTREL_VERIFICATION_OS " " VANTREL_VERIFICATION_ARCH                              \
    " " VANTREL_VERIFICATION_COMPILER " full-config"
