// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "frame/toolsupport.h"
#include "host/iplugin.h"
#include "host/pluginverification.h"
#include "hostapp/core/document/applicationcontext.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/document/documentcontext.h"
#include "hostapp/core/document/headlessuserinterface.h"
#include "hostapp/core/scene/meshnode.h"
#include "plugin/toolsplugin.h"
#include "tests/support/testsupport.h"

#include <gtest/gtest.h>

#include <QLibrary>
#include <QPointer>
#include <QProcess>

using namespace vantrel::host;
using vantrel::test::dump;

namespace {

using InstanceFunction = QObject *(*) ();
using VerificationFunction = const char *(*) ();

struct Expected
{
    const char *title;
    QKeySequence shortcut;
    int order;
    bool enabledWithoutSelection;
};

// The tool table, in registration order.
const Expected expectedTools[] = {
    {"Put On The Floor", QKeySequence(Qt::Key_F), 2, false},
    {"Stack...", QKeySequence(), 3, false},
    {"Step and Repeat...", QKeySequence(), 4, false},
    {"Easy Lighting...", QKeySequence(Qt::Key_L), 1, true},
    {"Fit To View...", QKeySequence(Qt::Key_V), 0, true},
};

} // namespace

TEST(ToolsPlugin, KeepsTheLastContextAndRegistersFiveToolsInOrderOnEveryInitialize)
{
    if (GetApplicationContext())
        GTEST_SKIP() << "another test in this process has initialised the plug-in already";

    ToolsPlugin plugin;
    EXPECT_EQ(qobject_cast<IPlugin *>(&plugin), &plugin) << "answers the IPlugin identifier";
    EXPECT_STREQ(plugin.metaObject()->className(), "ToolsPlugin");

    ApplicationContext first, second;
    plugin.Initialize(first);
    EXPECT_EQ(GetApplicationContext(), &first);
    ASSERT_EQ(first.registry().tools().size(), 5u);
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_EQ(first.registry().tools()[i]->GetTitle(), QLatin1String(expectedTools[i].title));

    plugin.Initialize(second);
    EXPECT_EQ(GetApplicationContext(), &second) << "a second Initialize replaces the context";
    ASSERT_EQ(second.registry().tools().size(), 5u) << "and registers five further tools";
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_NE(second.registry().tools()[i].get(), first.registry().tools()[i].get());
    EXPECT_EQ(first.registry().tools().size(), 5u);
}

TEST(ToolsPlugin, EveryToolAnswersTitleShortcutOrderAndEnabledRule)
{
    ApplicationContext app;
    ToolsPlugin plugin;
    plugin.Initialize(app);

    Document document;
    DocumentContext context(&document);
    INode *box = document.root()->createChildShape("generator.Boxes.Box", QStringLiteral("Box"));
    const auto &tools = app.registry().tools();
    ASSERT_EQ(tools.size(), 5u);
    for (std::size_t i = 0; i < 5; ++i) {
        const ITool &tool = *tools[i];
        const Expected &e = expectedTools[i];
        EXPECT_EQ(tool.GetTitle(), QLatin1String(e.title));
        EXPECT_EQ(tool.GetShortcut(), e.shortcut) << e.title;
        EXPECT_EQ(tool.GetShortcut().count(), e.shortcut.isEmpty() ? 0 : 1)
            << e.title << ": no shortcut is an empty sequence, not a zero key";
        EXPECT_EQ(tool.GetOrder(), e.order) << e.title;
        document.SetSelection({}, Document::ReplaceSelection);
        EXPECT_EQ(tool.IsEnabled(context), e.enabledWithoutSelection) << e.title;
        document.SetSelection({box}, Document::ReplaceSelection);
        EXPECT_TRUE(tool.IsEnabled(context)) << e.title << " with a selection";
    }
    std::vector<int> orders;
    for (ITool *tool : app.registry().toolsByOrder())
        orders.push_back(tool->GetOrder());
    EXPECT_EQ(orders, (std::vector<int>{0, 1, 2, 3, 4}));
}

TEST(ToolsPlugin, AttachingToABareContextDoesNothingAndReportsNothing)
{
    ApplicationContext app;
    ToolsPlugin plugin;
    plugin.Initialize(app);
    Document document;
    const QByteArray before = dump(document);
    DocumentContext bare(&document); // no user interface, no script runner
    for (const auto &tool : app.registry().tools())
        tool->AttachToDocument(bare);
    EXPECT_EQ(dump(document), before);
    EXPECT_EQ(document.history().undoCount(), 0);
}

// The real module, loaded as the host loads it.
class PluginModule : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_library.setFileName(QStringLiteral(VANTREL_TOOLS_PLUGIN));
        ASSERT_TRUE(m_library.load()) << qPrintable(m_library.errorString());
        m_instance = reinterpret_cast<InstanceFunction>(m_library.resolve("qt_plugin_instance"));
        m_verification = reinterpret_cast<VerificationFunction>(
            m_library.resolve("qt_plugin_query_verification_data"));
        ASSERT_TRUE(m_instance && m_verification);
    }

    QLibrary m_library;
    InstanceFunction m_instance = nullptr;
    VerificationFunction m_verification = nullptr;
};

TEST_F(PluginModule, HandsOutOneObjectAndAFreshOneAfterItWasDeleted)
{
    EXPECT_STREQ(m_verification(), VANTREL_PLUGIN_VERIFICATION_DATA);

    QPointer<QObject> first = m_instance();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(m_instance(), first.data()) << "two calls, one object";
    EXPECT_NE(qobject_cast<IPlugin *>(first.data()), nullptr);
    EXPECT_STREQ(first->metaObject()->className(), "ToolsPlugin");

    delete first.data();
    QObject *second = m_instance();
    ASSERT_NE(second, nullptr);
    // A dangling pointer would fail here (and under AddressSanitizer on any use).
    EXPECT_STREQ(second->metaObject()->className(), "ToolsPlugin");
    EXPECT_NE(qobject_cast<IPlugin *>(second), nullptr);
    EXPECT_EQ(m_instance(), second);
    delete second;
}

TEST_F(PluginModule, ExportsExactlyTheTwoEntryPoints)
{
    QProcess nm;
    nm.start(QStringLiteral("nm"),
             {QStringLiteral("-D"), QStringLiteral("--defined-only"), m_library.fileName()});
    ASSERT_TRUE(nm.waitForFinished(30000)) << "nm (binutils) must be installed";
    ASSERT_EQ(nm.exitCode(), 0) << nm.readAllStandardError().constData();
    QStringList symbols;
    for (const QByteArray &line : nm.readAllStandardOutput().split('\n')) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (fields.size() >= 2)
            symbols.append(QString::fromLatin1(fields.last()));
    }
    symbols.sort();
    EXPECT_EQ(symbols,
              (QStringList{QStringLiteral("qt_plugin_instance"),
                           QStringLiteral("qt_plugin_query_verification_data")}));
}
