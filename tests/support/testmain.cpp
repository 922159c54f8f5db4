// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The shared main of every test program: a QApplication on the offscreen platform (unless the
// environment names another), so that widget tests and test discovery run without a display.

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
