// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "host/iplugin.h"
#include "hostapp/core/document/applicationcontext.h"
#include "hostapp/core/plugins/libraryfilecheck.h"
#include "hostapp/core/plugins/pluginloader.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <cstring>
#include <functional>
#include <vector>

#include <link.h>

using namespace vantrel::host;

namespace {

QString fixture(const char *name)
{
    return QStringLiteral(VANTREL_FIXTURE_DIR "/lib%1.so").arg(QLatin1String(name));
}

using Header = ElfW(Ehdr);
using ProgramHeader = ElfW(Phdr);
using SectionHeader = ElfW(Shdr);

QByteArray realPlugin()
{
    QFile file(QStringLiteral(VANTREL_TOOLS_PLUGIN));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Reads, changes and writes back the record of type T at offset.
template<typename T>
void edit(QByteArray &bytes, quint64 offset, const std::function<void(T &)> &change)
{
    ASSERT_LE(offset + sizeof(T), quint64(bytes.size()));
    T record = {};
    std::memcpy(&record, bytes.constData() + offset, sizeof record);
    change(record);
    std::memcpy(bytes.data() + offset, &record, sizeof record);
}

Header headerOf(const QByteArray &bytes)
{
    Header header = {};
    std::memcpy(&header, bytes.constData(), sizeof header);
    return header;
}

// Changes every program header of the given type.
void editSegments(QByteArray &bytes,
                  quint32 type,
                  const std::function<void(ProgramHeader &)> &change)
{
    const Header header = headerOf(bytes);
    for (int i = 0; i < header.e_phnum; ++i) {
        edit<ProgramHeader>(bytes,
                            header.e_phoff + quint64(i) * sizeof(ProgramHeader),
                            [&](ProgramHeader &segment) {
                                if (segment.p_type == type)
                                    change(segment);
                            });
    }
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
        {QStringLiteral(VANTREL_FIXTURE_DIR),
         QStringLiteral("not a regular file (it is a folder)")},
        {fixture("not_a_library"),
         QStringLiteral("not a library: it does not start with the ELF signature")},
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

namespace {

// One way to damage a library's headers, and the check's words for it.
struct HeaderDamage
{
    const char *name;
    std::function<void(QByteArray &)> damage;
    QString problem;
};

// Damage inside the headers of the real plug-in (its bytes, its header and its first segment)
// that the size checks alone would not see.
std::vector<HeaderDamage>
headerDamages(const QByteArray &plugin, const Header &real, const ProgramHeader &first)
{
    return {
        {"a program, not a library",
         [](QByteArray &bytes) { edit<Header>(bytes, 0, [](Header &h) { h.e_type = ET_EXEC; }); },
         QStringLiteral("not a shared library: the file is a program")},
        {"program header entries of another size",
         [](QByteArray &bytes) { edit<Header>(bytes, 0, [](Header &h) { h.e_phentsize = 32; }); },
         QStringLiteral("damaged library: its program headers are 32 bytes each where %1 are "
                        "expected")
             .arg(sizeof(ProgramHeader))},
        {"no program headers",
         [](QByteArray &bytes) { edit<Header>(bytes, 0, [](Header &h) { h.e_phnum = 0; }); },
         QStringLiteral("damaged library: it has no program headers")},
        {"no loadable segment",
         [](QByteArray &bytes) {
             editSegments(bytes, PT_LOAD, [](ProgramHeader &s) { s.p_type = PT_NOTE; });
         },
         QStringLiteral("damaged library: it has no loadable segment")},
        {"more file bytes than memory",
         [](QByteArray &bytes) {
             editSegments(bytes, PT_LOAD, [](ProgramHeader &s) { s.p_memsz = s.p_filesz / 2; });
         },
         QStringLiteral("damaged library: segment 0 takes %1 bytes of the file into %2 bytes of "
                        "memory")
             .arg(first.p_filesz)
             .arg(first.p_filesz / 2)},
        {"the dynamic section outside the loaded memory",
         [](QByteArray &bytes) {
             editSegments(bytes, PT_DYNAMIC, [](ProgramHeader &s) { s.p_vaddr += 1 << 30; });
         },
         QStringLiteral("damaged library: its dynamic section lies outside its loadable segments")},
        {"a section past the end",
         [&](QByteArray &bytes) {
             edit<SectionHeader>(bytes,
                                 real.e_shoff + (real.e_shnum - 1) * sizeof(SectionHeader),
                                 [&](SectionHeader &s) {
                                     s.sh_type = SHT_PROGBITS;
                                     s.sh_offset = real.e_shoff;
                                     s.sh_size = quint64(bytes.size());
                                 });
         },
         QStringLiteral("damaged library: section %1 ends at byte %2, past the end of the file "
                        "(%3 bytes)")
             .arg(real.e_shnum - 1)
             .arg(real.e_shoff + plugin.size())
             .arg(plugin.size())},
        // With e_shnum 0 the count is the first section's size: a huge one runs past the end.
        {"a huge count of sections",
         [&](QByteArray &bytes) {
             edit<Header>(bytes, 0, [](Header &h) { h.e_shnum = 0; });
             edit<SectionHeader>(
                 bytes, real.e_shoff, [](SectionHeader &s) { s.sh_size = quint64(1) << 60; });
         },
         QStringLiteral("damaged library: the section header table ends at byte "
                        "18446744073709551615, past the end of the file (%1 bytes)")
             .arg(plugin.size())},
    };
}

} // namespace

// Damage inside the headers that the size checks alone would not see. The check only reads the
// file, so none of these is ever handed to the dynamic loader.
TEST(LibraryFileCheck, RefusesInconsistentHeaders)
{
    const QByteArray plugin = realPlugin();
    ASSERT_GT(plugin.size(), 4096);
    const Header real = headerOf(plugin);
    ProgramHeader first = {};
    std::memcpy(&first, plugin.constData() + real.e_phoff, sizeof first);
    ASSERT_EQ(first.p_type, quint32(PT_LOAD)) << "the first segment is loaded";
    const std::vector<HeaderDamage> cases = headerDamages(plugin, real, first);

    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("damaged.so"));
    for (const auto &c : cases) {
        QByteArray bytes = plugin;
        c.damage(bytes);
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        ASSERT_EQ(file.write(bytes), bytes.size());
        file.close();
        QString problem;
        EXPECT_FALSE(checkLibraryFile(path, &problem)) << c.name;
        EXPECT_EQ(problem, c.problem) << c.name;
    }

    // The undamaged bytes pass, and the loader names the file in front of the check's words.
    QString problem;
    EXPECT_TRUE(checkLibraryFile(QStringLiteral(VANTREL_TOOLS_PLUGIN), &problem))
        << qPrintable(problem);
    QFile::resize(path, 20000);
    ApplicationContext app;
    PluginLoader loader;
    QString error;
    EXPECT_EQ(loader.load(path, app, &error), nullptr);
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^.*damaged\\.so: damaged library: segment \\d+ "
                                                  "ends at byte \\d+, past the end of the file "
                                                  "\\(20000 bytes\\)$"))
                    .match(error)
                    .hasMatch())
        << qPrintable(error);
}
