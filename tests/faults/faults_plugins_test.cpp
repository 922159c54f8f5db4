// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Tools plug-in libraries that are damaged or are no plug-in at all.

#include "tests/faults/faultcase.h"

#include <QRegularExpression>

#include <cstring>

#include <link.h>

namespace vantrel::test {

namespace {

using Header = ElfW(Ehdr);
using ProgramHeader = ElfW(Phdr);
using SectionHeader = ElfW(Shdr);

const QStringList loadDamaged = {"run", "--tools-plugin", "{dir}/t.so"};
// What every refusal starts with: the program's own words, then the file.
const QString refused = QStringLiteral("vantrel: cannot load the tools plug-in: .*/t\\.so: ");

const QByteArray &realPlugin()
{
    static const QByteArray bytes = readFile(toolsPluginPath());
    return bytes;
}

Header headerOf(const QByteArray &library)
{
    Header header = {};
    if (size_t(library.size()) >= sizeof header)
        std::memcpy(&header, library.constData(), sizeof header);
    return header;
}

// The real plug-in, changed by edit, as t.so in the row's folder.
std::function<void(const QDir &)> plugin(const std::function<void(QByteArray &)> &edit)
{
    return [edit](const QDir &dir) {
        QByteArray bytes = realPlugin();
        ASSERT_GT(bytes.size(), int(sizeof(Header))) << toolsPluginPath().toStdString();
        edit(bytes);
        writeFile(dir, QStringLiteral("t.so"), bytes);
    };
}

std::function<void(const QDir &)> truncatedAt(int size)
{
    return plugin([size](QByteArray &bytes) { bytes.truncate(size); });
}

// Where the real plug-in's tables end, from its own header.
int programHeadersEnd()
{
    const Header header = headerOf(realPlugin());
    return int(header.e_phoff + header.e_phnum * header.e_phentsize);
}

int sectionHeadersEnd()
{
    const Header header = headerOf(realPlugin());
    return int(header.e_shoff + header.e_shnum * header.e_shentsize);
}

// A table, one row per input, however long: the size rule is for functions that do things.
// NOLINTNEXTLINE(readability-function-size)
std::vector<FaultCase> pluginsCases()
{
    const int size = realPlugin().size();
    return {
        // The dynamic loader maps every segment as the program headers describe it: a library cut
        // short would be mapped past its end and kill the program with SIGBUS when touched.
        {.name = "PluginCutAt20000Bytes",
         .arguments = loadDamaged,
         .message = refused
                    + "damaged library: segment \\d+ ends at byte \\d+, past the end of the file "
                      "\\(20000 bytes\\)",
         .prepare = truncatedAt(20000)},
        {.name = "PluginCutJustPastTheProgramHeaders",
         .arguments = loadDamaged,
         .message
         = refused
           + QStringLiteral("damaged library: segment \\d+ ends at byte \\d+, past the end "
                            "of the file \\(%1 bytes\\)")
                 .arg(programHeadersEnd() + 1),
         .prepare = truncatedAt(programHeadersEnd() + 1)},
        {.name = "PluginCutAt64Bytes",
         .arguments = loadDamaged,
         .message = refused
                    + "damaged library: the program header table ends at byte \\d+, past "
                      "the end of the file \\(64 bytes\\)",
         .prepare = truncatedAt(64)},
        {.name = "PluginCutInsideTheElfHeader",
         .arguments = loadDamaged,
         .message = refused + "damaged library: the file \\(20 bytes\\) ends inside the ELF header",
         .prepare = truncatedAt(20)},
        {.name = "PluginEmpty",
         .arguments = loadDamaged,
         .message = refused + "not a library: the file is empty",
         .prepare = truncatedAt(0)},
        // The section header table is the last thing in the file: one byte less cuts into it.
        {.name = "PluginLastByteMissing",
         .arguments = loadDamaged,
         .message = refused
                    + QStringLiteral("damaged library: the section header table ends at byte %1, "
                                     "past the end of the file \\(%2 bytes\\)")
                          .arg(sectionHeadersEnd())
                          .arg(size - 1),
         .prepare = truncatedAt(size - 1)},
        {.name = "PluginSectionHeadersPastTheEnd",
         .arguments = loadDamaged,
         .message = refused
                    + QStringLiteral("damaged library: the section header table starts at byte "
                                     "%1, past the end of the file \\(%2 bytes\\)")
                          .arg(size + 4096)
                          .arg(size),
         .prepare = plugin([size](QByteArray &bytes) {
             Header header = headerOf(bytes);
             header.e_shoff = size + 4096;
             std::memcpy(bytes.data(), &header, sizeof header);
         })},
        // A file size that an offset plus a length would wrap around to: still past the end.
        {.name = "PluginSegmentLengthWrapsAround",
         .arguments = loadDamaged,
         .message
         = refused
           + QStringLiteral("damaged library: segment 1 ends at byte 18446744073709551615, "
                            "past the end of the file \\(%1 bytes\\)")
                 .arg(size),
         .prepare = plugin([](QByteArray &bytes) {
             const Header header = headerOf(bytes);
             ProgramHeader segment = {};
             char *at = bytes.data() + header.e_phoff + header.e_phentsize;
             std::memcpy(&segment, at, sizeof segment);
             ASSERT_GT(segment.p_offset, 0u) << "the second segment starts inside the file";
             segment.p_filesz = ~decltype(segment.p_filesz)(0) - segment.p_offset / 2;
             std::memcpy(at, &segment, sizeof segment);
         })},
        {.name = "PluginForAnotherProcessor",
         .arguments = loadDamaged,
         .message = refused + "built for another processor \\(.+\\), and this program runs on ",
         .prepare = plugin([](QByteArray &bytes) {
             Header header = headerOf(bytes);
             header.e_machine = header.e_machine == EM_AARCH64 ? EM_X86_64 : EM_AARCH64;
             std::memcpy(bytes.data(), &header, sizeof header);
         })},
        {.name = "PluginForTheOtherWordSize",
         .arguments = loadDamaged,
         .message = refused + "built for (32|64)-bit programs, and this program is (32|64)-bit",
         .prepare = plugin([](QByteArray &bytes) {
             bytes[EI_CLASS] = char(bytes.at(EI_CLASS) == ELFCLASS64 ? ELFCLASS32 : ELFCLASS64);
         })},
        {.name = "PluginIsText",
         .arguments = loadDamaged,
         .message = refused + "not a library: it does not start with the ELF signature",
         .prepare =
             [](const QDir &dir) {
                 writeFile(dir, QStringLiteral("t.so"), "#!/bin/sh\necho not a library\n");
             }},
        {.name = "PluginIsFifo",
         .arguments = loadDamaged,
         .message = refused + "not a regular file \\(it is a FIFO\\)",
         .prepare = [](const QDir &dir) { makeFifo(dir, QStringLiteral("t.so")); }},
        {.name = "PluginIsDevice",
         .arguments = loadDamaged,
         .message = refused + "not a regular file \\(it is a character device\\)",
         .prepare = [](const QDir &dir) { makeNullDevice(dir, QStringLiteral("t.so")); }},
        {.name = "PluginIsFolder",
         .arguments = loadDamaged,
         .message = refused + "not a regular file \\(it is a folder\\)",
         .prepare = [](const QDir &dir) { ASSERT_TRUE(dir.mkdir(QStringLiteral("t.so"))); }},
        // The real plug-in copied in whole loads: the checks refuse damage, not copies.
        {.name = "PluginCopiedWhole",
         .arguments = {"run", "--tools-plugin", "{dir}/t.so", "-e", "print(document.toolTitles())"},
         .exitCode = 0,
         .prepare = plugin([](QByteArray &) {}),
         .check =
             [](const QDir &, const FaultRun &run) {
                 EXPECT_TRUE(run.out.contains(QStringLiteral("Fit To View...")))
                     << run.out.toStdString();
             }},
    };
}

// Endless scripts: --time-limit stops them with an error, exit status 1, nothing saved or drawn.
// A row that does not stop fails on its own time limit, a few times the script's.
const QString stoppedAfterOneSecond
    = QStringLiteral("vantrel: -e#\\d+(:\\d+)?: script stopped: time limit of 1 s reached");

void prepareScene(const QDir &dir)
{
    writeFile(dir, QStringLiteral("in.vscene"), smallScene());
}

FaultCase badTimeLimit(const std::string &name, const QString &value)
{
    return {.name = name,
            .arguments = {"run", "--time-limit", value, "-e", "1"},
            .exitCode = 2,
            .message
            = QStringLiteral("vantrel: --time-limit takes a number of seconds from 0\\.001 "
                             "to 604800, not \"%1\"")
                  .arg(QRegularExpression::escape(value))};
}

// A table, one row per input, however long: the size rule is for functions that do things.
// NOLINTNEXTLINE(readability-function-size)
std::vector<FaultCase> endlessScriptsCases()
{
    const QString box = QStringLiteral("document.root.addShape('generator.Boxes.Box', 'Box');");
    return {
        {.name = "EndlessLoopStopsAtTheTimeLimit",
         .arguments = {"run", "--time-limit", "1", "-e", "while (true) {}"},
         .message = stoppedAfterOneSecond,
         .timeoutSeconds = 15},
        // The scene file is the save's target: the failure must leave it as it was.
        {.name = "EndlessLoopAfterChangesSavesNothing",
         .arguments = {"run",
                       "{dir}/in.vscene",
                       "--time-limit",
                       "1",
                       "-e",
                       "document.root.addGroup('More'); document.findNode('Box').remove()",
                       "-e",
                       "for (;;) {}",
                       "--save",
                       "{dir}/in.vscene"},
         .message = stoppedAfterOneSecond,
         .prepare = prepareScene,
         .timeoutSeconds = 15},
        {.name = "EndlessLoopInAToolsSettingsGetter",
         .arguments = {"run",
                       "--time-limit",
                       "1",
                       "-e",
                       box + "tools.fitToView({get padding() { while (true) {} }})",
                       "--save",
                       "{dir}/out.vscene"},
         .message = stoppedAfterOneSecond,
         .timeoutSeconds = 15},
        {.name = "EndlessLoopAfterAToolsWork",
         .arguments = {"run",
                       "--time-limit",
                       "1",
                       "-e",
                       box
                           + "tools.stepAndRepeat(document.findNode('Box'), {repeatX: 20, "
                             "repeatY: 20}); while (true) {}",
                       "--save",
                       "{dir}/out.vscene"},
         .message = stoppedAfterOneSecond,
         .timeoutSeconds = 15},
        // The limit counts the scripts together: each of these alone would finish in time.
        {.name = "ScriptsTogetherPastTheTimeLimit",
         .arguments = {"run",
                       "--time-limit",
                       "1",
                       "-e",
                       "var end = Date.now() + 600; while (Date.now() < end) {}",
                       "-e",
                       "var end = Date.now() + 600; while (Date.now() < end) {}",
                       "--save",
                       "{dir}/out.vscene"},
         .message = QStringLiteral("vantrel: -e#2: script stopped: time limit of 1 s reached"),
         .timeoutSeconds = 15},
        {.name = "RenderEndlessLoopDrawsNothing",
         .arguments
         = {"render", "--time-limit", "1", "-e", "while (true) {}", "--out", "{dir}/x.png"},
         .message = stoppedAfterOneSecond,
         .prepare =
             [](const QDir &) {
                 if (qEnvironmentVariableIsEmpty("DISPLAY"))
                     GTEST_SKIP() << "render needs a display for OpenGL";
             },
         .timeoutSeconds = 15},
        {.name = "FastScriptUnderATimeLimit",
         .arguments = {"run",
                       "--time-limit",
                       "0.5",
                       "-e",
                       box + "tools.stepAndRepeat(document.findNode('Box'), {repeatX: 3})",
                       "--save",
                       "{dir}/out.vscene"},
         .exitCode = 0,
         .check =
             [](const QDir &dir, const FaultRun &) {
                 EXPECT_TRUE(
                     readFile(dir.filePath(QStringLiteral("out.vscene"))).contains("\"Box - 3\""));
             }},
        badTimeLimit("TimeLimitZero", "0"),
        badTimeLimit("TimeLimitNegative", "-1"),
        badTimeLimit("TimeLimitNotANumber", "soon"),
        badTimeLimit("TimeLimitNaN", "nan"),
        badTimeLimit("TimeLimitAbsurd", "1e12"),
        {.name = "TimeLimitForDemo",
         .arguments = {"demo", "--time-limit", "1"},
         .exitCode = 2,
         .message = "--time-limit belongs to run, render and export"},
    };
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Plugins, FaultTest, ::testing::ValuesIn(pluginsCases()), faultCaseName);
INSTANTIATE_TEST_SUITE_P(EndlessScripts,
                         FaultTest,
                         ::testing::ValuesIn(endlessScriptsCases()),
                         faultCaseName);

} // namespace vantrel::test
