// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tests/support/toolssession.h"

#include <QStringList>

namespace vantrel::test {

ToolsSessionTest::ToolsSessionTest()
{
    QString error;
    EXPECT_TRUE(m_session.loadToolsPlugin(QStringLiteral(VANTREL_TOOLS_PLUGIN), &error))
        << error.toStdString();
}

QString ToolsSessionTest::run(const QString &program)
{
    QString error;
    QStringList printed;
    const auto connection
        = QObject::connect(&m_session.runner(),
                           &host::ScriptRunner::printed,
                           [&printed](const QString &line) { printed.append(line); });
    const bool ok = m_session.runner().evaluate(program, QStringLiteral("test.js"), &error);
    QObject::disconnect(connection);
    return ok ? printed.join(QLatin1Char('\n')) : QStringLiteral("error: ") + error;
}

} // namespace vantrel::test
