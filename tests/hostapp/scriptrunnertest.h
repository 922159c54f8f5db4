// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// The script runner on a document of its own with the headless user interface and no tools, for
// the script tests of scriptrunner_test.cpp and scriptarguments_test.cpp.

#include "hostapp/core/document/document.h"
#include "hostapp/core/document/documentcontext.h"
#include "hostapp/core/document/headlessuserinterface.h"
#include "hostapp/core/script/scriptrunner.h"

#include <gtest/gtest.h>

#include <QStringList>

namespace vantrel::test {

using vantrel::host::Document;
using vantrel::host::DocumentContext;
using vantrel::host::HeadlessUserInterface;
using vantrel::host::ScriptRunner;

class ScriptRunnerTest : public ::testing::Test
{
protected:
    ScriptRunnerTest()
        : m_context(&m_document, &m_ui)
        , m_runner(m_context)
    {
        QObject::connect(&m_runner, &ScriptRunner::printed, &m_runner, [this](const QString &line) {
            m_printed.append(line);
        });
    }

    // Runs the program; returns what it printed, or the error.
    QString run(const QString &program)
    {
        m_printed.clear();
        QString error;
        if (!m_runner.evaluate(program, QStringLiteral("test.js"), &error))
            return QStringLiteral("error: ") + error;
        return m_printed.join(QLatin1Char('\n'));
    }

    Document m_document;
    HeadlessUserInterface m_ui;
    DocumentContext m_context;
    ScriptRunner m_runner;
    QStringList m_printed;
};

} // namespace vantrel::test
