// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The shared main of every test program: a QApplication on the offscreen platform (unless the
// environment names another), so that widget tests and test discovery run without a display.

#include <QApplication>

#include <gtest/gtest.h>

// Leaks inside Qt and the platform plug-in it loads, not ours (the xcb platform of the window
// tests also brings D-Bus, which keeps a buffer to the end). They are compiled in (rather than
// only listed in .lsan.supp) because test discovery runs these programs at build time, outside
// CTest's environment. Without LeakSanitizer the function is never called.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the name is the sanitizer runtime's hook
extern "C" Q_DECL_EXPORT const char *__lsan_default_suppressions()
{
    return "leak:libqoffscreen.so\nleak:libQt5Gui.so\nleak:libQt5Core.so\nleak:libQt5Script.so\n"
           "leak:libfontconfig.so\nleak:libdbus-1.so\n";
}

// LeakSanitizer's entry point, present only in sanitizer builds.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the name is the sanitizer runtime's
extern "C" void __lsan_do_leak_check() __attribute__((weak));

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    const int status = RUN_ALL_TESTS();
    // Leaks are checked while the OpenGL driver is still loaded: Qt closes the X display when the
    // application goes, Mesa unloads its driver with it, and LeakSanitizer could then no longer
    // name the driver in its report to suppress the driver's own small leaks.
    if (__lsan_do_leak_check)
        __lsan_do_leak_check();
    return status;
}
