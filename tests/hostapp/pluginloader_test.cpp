// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "host/iplugin.h"
#include "hostapp/core/applicationcontext.h"
#include "hostapp/core/pluginloader.h"

#include <gtest/gtest.h>

#include <QRegularExpression>

using namespace vantrel::host;

namespace {

QString fixture(const char *name)
{
    return QStringLiteral(VANTREL_FIXTURE_DIR "/lib%1.so").arg(QLatin1String(name));
}

} // namespace

// Each way a library can be wrong gives one message that names the file and the cause, registers
// nothing, and leaves the loader able to load the real plug-in afterwards.
TEST(PluginLoader, RefusesWrongLibrariesWithAClearMessageAndStaysUsable)
{
    const struct
    {
        QString path;
        QString message;
    } cases[] = {
        {QStringLiteral("/nonexistent/libvantrel-tools.so"), QStringLiteral("no such file")},
        {QStringLiteral(VANTREL_FIXTURE_DIR), QStringLiteral("not a file")},
        {fixture("not_a_library"), QStringLiteral("cannot be loaded: ")},
        {fixture("fixture_no_entry_points"),
         QStringLiteral("not a plug-in: it has no qt_plugin_query_verification_data entry point")},
        {fixture("fixture_no_instance"),
         QStringLiteral("not a plug-in: it has no qt_plugin_instance entry point")},
        {fixture("fixture_wrong_verification"),
         QStringLiteral(
             "built for another Qt or compiler: version is \"4.8.6\" where this program has \"%1\"")
             .arg(QLatin1String(QT_VERSION_STR))},
        {fixture("fixture_not_a_plugin"),
         QStringLiteral(
             "its plug-in object (QObject) does not offer com.quillenbard.vantrel.IPlugin")},
    };

    ApplicationContext app;
    PluginLoader loader;
    for (const auto &c : cases) {
        QString error;
        EXPECT_EQ(loader.load(c.path, app, &error), nullptr) << qPrintable(c.path);
        EXPECT_TRUE(error.startsWith(c.path + QStringLiteral(": "))) << qPrintable(error);
        EXPECT_TRUE(error.contains(c.message)) << qPrintable(error);
        EXPECT_TRUE(app.registry().tools().empty())
            << "nothing registered by " << qPrintable(c.path);
    }
    QString error;
    EXPECT_TRUE(loader.load(fixture("fixture_wrong_verification"), app, &error) == nullptr);
    EXPECT_TRUE(
        error.contains(QStringLiteral("buildkey is \"macosx macx-cocoa g++-4 full-config\"")))
        << "every differing field is named: " << qPrintable(error);

    IPlugin *plugin = loader.load(QStringLiteral(VANTREL_TOOLS_PLUGIN), app, &error);
    ASSERT_NE(plugin, nullptr) << qPrintable(error);
    EXPECT_EQ(app.registry().tools().size(), 5u);
    EXPECT_EQ(loader.load(QStringLiteral(VANTREL_TOOLS_PLUGIN), app, &error), nullptr);
    EXPECT_TRUE(error.endsWith(QStringLiteral("this plug-in is already loaded")))
        << qPrintable(error);
    EXPECT_EQ(app.registry().tools().size(), 5u) << "a second load registers nothing";
}

TEST(PluginLoader, VerificationTextHasTheQt4Shape)
{
    const QString text = QString::fromLatin1(PluginLoader::verificationData());
    const QRegularExpression shape(QStringLiteral(
        "^pattern=QT_PLUGIN_VERIFICATION_DATA\nversion=\\d+\\.\\d+\\.\\d+\ndebug=(true|false)\n"
        "buildkey=\\S+ \\S+ \\S+ full-config$"));
    EXPECT_TRUE(shape.match(text).hasMatch()) << qPrintable(text);
    EXPECT_TRUE(text.contains(QStringLiteral("version=" QT_VERSION_STR)));
}
