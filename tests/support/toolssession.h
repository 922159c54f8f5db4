// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/core/commands/session.h"
#include "hostapp/core/scene/basenode.h"

#include <gtest/gtest.h>

#include <QString>

namespace vantrel::test {

// A document with the real tools plug-in loaded and attached, as `vantrel run` has it: the
// tools' script functions, tool-bar buttons and windows work as they do for a user.
class ToolsSessionTest : public ::testing::Test
{
protected:
    ToolsSessionTest();

    host::Document &document() { return m_session.document(); }
    host::BaseNode *root() { return m_session.document().root(); }

    // Runs the program as one script (one undo step); returns what it printed, line by line, or
    // "error: " and the script's error.
    QString run(const QString &program);

    host::Session m_session;
};

} // namespace vantrel::test
