// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Scene files and pictures: saves that fail half-way, special files as targets and sources, empty
// paths, picture formats, damaged JSON.

#include "tests/faults/faultcase.h"

#include <QTemporaryDir>

namespace vantrel::test {

namespace {

const QString addGroup = QStringLiteral("document.root.addGroup('More')");

void prepareScene(const QDir &dir)
{
    writeFile(dir, QStringLiteral("in.vscene"), smallScene());
}

// The small scene with one line replaced, for damaged files that are otherwise valid.
std::function<void(const QDir &)> sceneWith(const QByteArray &from, const QByteArray &to)
{
    return [from, to](const QDir &dir) {
        QByteArray scene = smallScene();
        ASSERT_TRUE(scene.contains(from)) << from.toStdString();
        writeFile(dir, QStringLiteral("in.vscene"), scene.replace(from, to));
    };
}

// A scene of count empty groups under the root, written compactly by hand.
std::function<void(const QDir &)> groups(int count)
{
    return [count](const QDir &dir) {
        QByteArray text = R"({"format": "vantrel-scene", "version": 1, "root": {"children": [)";
        text += QByteArray(R"({"type": "group"},)").repeated(count - 1);
        text += R"({"type": "group"}]}})";
        writeFile(dir, QStringLiteral("groups.vscene"), text);
    };
}

// The saved scene opens again, and the expression gives what it should there.
std::function<void(const QDir &, const FaultRun &)>
reopens(const QString &name, const QString &expression, const QString &expected)
{
    return [=](const QDir &dir, const FaultRun &) {
        const FaultRun again = runVantrel({QStringLiteral("run"),
                                           dir.filePath(name),
                                           QStringLiteral("-e"),
                                           QStringLiteral("print(%1)").arg(expression)},
                                          dir,
                                          80);
        EXPECT_EQ(again.exitCode, 0) << again.err.toStdString();
        EXPECT_EQ(again.out.trimmed().toStdString(), expected.toStdString());
    };
}

// A table, one row per input, however long: the size rule is for functions that do things.
// NOLINTNEXTLINE(readability-function-size)
std::vector<FaultCase> fileCases()
{
    return {
        // The whole small file fits the write buffer, so the failure only shows when it is
        // flushed: the old bytes must stay.
        {.name = "SmallSavePastFileSizeLimit",
         .arguments = {"run", "{dir}/in.vscene", "-e", addGroup, "--save", "{dir}/in.vscene"},
         .exitCode = 1,
         .message = "Cannot save .*in\\.vscene: .*(File too large|file size)",
         .prepare = prepareScene,
         .fileSizeLimitKiB = 1},
        {.name = "SmallSaveAsPastFileSizeLimit",
         .arguments = {"run", "{dir}/in.vscene", "--save", "{dir}/out.vscene"},
         .exitCode = 1,
         .message = "Cannot save .*out\\.vscene: ",
         .prepare = prepareScene,
         .fileSizeLimitKiB = 1},
        {.name = "SaveOntoDevice",
         .arguments = {"run", "-e", addGroup, "--save", "{dir}/null"},
         .exitCode = 1,
         .message = "Cannot save .*null: .*not a regular file",
         .prepare = [](const QDir &dir) { makeNullDevice(dir, QStringLiteral("null")); }},
        {.name = "SaveOntoFifo",
         .arguments = {"run", "-e", addGroup, "--save", "{dir}/target"},
         .exitCode = 1,
         .message = "Cannot save .*target: .*not a regular file",
         .prepare = [](const QDir &dir) { makeFifo(dir, QStringLiteral("target")); }},
        {.name = "SaveOntoFolder",
         .arguments = {"run", "--save", "{dir}"},
         .exitCode = 1,
         .message = "Cannot save .*: .*folder"},
        {.name = "SaveEmptyPath",
         .arguments = {"run", "--save", ""},
         .exitCode = 2,
         .message = "--save needs a file name"},
        {.name = "RunEmptyScenePath",
         .arguments = {"run", ""},
         .exitCode = 2,
         .message = "the scene file name is empty"},
        {.name = "RenderOntoDevice",
         .arguments = {"render", "-e", addGroup, "--out", "{dir}/null.png"},
         .exitCode = 1,
         .message = "cannot write .*null\\.png: .*not a regular file",
         .prepare = [](const QDir &dir) { makeNullDevice(dir, QStringLiteral("null.png")); }},
        {.name = "RenderOntoFifo",
         .arguments = {"render", "--out", "{dir}/picture.png"},
         .exitCode = 1,
         .message = "cannot write .*picture\\.png: .*not a regular file",
         .prepare = [](const QDir &dir) { makeFifo(dir, QStringLiteral("picture.png")); }},
        {.name = "RenderIntoMissingFolder",
         .arguments = {"render", "--out", "{dir}/missing/picture.png"},
         .exitCode = 1,
         .message = "cannot write .*missing/picture\\.png: .*no such folder"},
        {.name = "RenderUnknownFormat",
         .arguments = {"render", "--out", "{dir}/picture.bmp"},
         .exitCode = 2,
         .message = "--out takes a \\.png, \\.jpg or \\.jpeg file"},
        {.name = "RenderEmptyOut",
         .arguments = {"render", "--out", ""},
         .exitCode = 2,
         .message = "--out needs a file name"},
        {.name = "SceneIsFifo",
         .arguments = {"run", "{dir}/scene.vscene"},
         .exitCode = 1,
         .message = "scene\\.vscene: .*not a regular file",
         .prepare = [](const QDir &dir) { makeFifo(dir, QStringLiteral("scene.vscene")); },
         .timeoutSeconds = 10},
        {.name = "SceneIsDevice",
         .arguments = {"run", "/dev/zero"},
         .exitCode = 1,
         .message = "/dev/zero: .*not a regular file"},
        {.name = "SceneIsFolder",
         .arguments = {"run", "{dir}"},
         .exitCode = 1,
         .message = ": .*folder"},
        {.name = "SceneDuplicateKey",
         .arguments = {"run", "{dir}/in.vscene", "--save", "{dir}/in.vscene"},
         .exitCode = 1,
         .message = "in\\.vscene:[0-9]+:[0-9]+: the key \"name\" appears twice",
         .prepare = sceneWith("\"name\": \"Box\",", "\"name\": \"Box\", \"name\": \"Crate\",")},
        // What opens or is built within the documented limits can be saved, dumped and opened
        // again; one node more is refused at once.
        {.name = "AsManyNodesAsTheLimitOpenDumpAndSave",
         .arguments = {"run",
                       "{dir}/groups.vscene",
                       "-e",
                       "print(document.dump().length > 0)",
                       "--save",
                       "{dir}/saved.vscene"},
         .exitCode = 0,
         .prepare = groups(200000),
         .check = reopens(QStringLiteral("saved.vscene"),
                          QStringLiteral("document.root.children.length"),
                          QStringLiteral("200000")),
         .timeoutSeconds = 150},
        {.name = "OneNodeBeyondTheLimitIsRefused",
         .arguments = {"run", "{dir}/groups.vscene"},
         .exitCode = 1,
         .message = "groups\\.vscene: root: more than 200000 nodes",
         .prepare = groups(200001)},
        {.name = "LargestStackSaves",
         .arguments = {"run",
                       "-e",
                       "var book = document.root.addShape('generator.Book.HardCover', 'Book');"
                       "tools.stack([book], {repeats: 100000})",
                       "--save",
                       "{dir}/stack.vscene"},
         .exitCode = 0,
         .check = reopens(QStringLiteral("stack.vscene"),
                          QStringLiteral("document.findNode('Stack').children.length"),
                          QStringLiteral("100000")),
         .timeoutSeconds = 150},
        {.name = "SceneControlCharacterInString",
         .arguments = {"run", "{dir}/in.vscene"},
         .exitCode = 1,
         .message = "in\\.vscene:[0-9]+:[0-9]+: .*control character",
         .prepare = sceneWith("\"name\": \"Box\",", "\"name\": \"B\tox\",")},
    };
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Files, FaultTest, ::testing::ValuesIn(fileCases()), faultCaseName);

} // namespace vantrel::test

namespace vantrel::test {

// The picture's format follows the name's suffix, whatever its letter case.
TEST(RenderOut, WritesTheFormatItsSuffixNames)
{
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        GTEST_SKIP() << "drawing needs an X display for OpenGL (run under xvfb-run)";
    QTemporaryDir temporary;
    const QDir dir(temporary.path());
    const struct
    {
        const char *name;
        QByteArray magic;
    } pictures[] = {{"a.png", "\x89PNG\r\n"},
                    {"b.PNG", "\x89PNG\r\n"},
                    {"c.jpg", "\xff\xd8\xff"},
                    {"d.JPEG", "\xff\xd8\xff"}};
    for (const auto &picture : pictures) {
        const FaultRun run
            = runVantrel({QStringLiteral("render"),
                          QStringLiteral("-e"),
                          QStringLiteral("document.root.addShape('generator.Boxes.Box', 'Box')"),
                          QStringLiteral("--width"),
                          QStringLiteral("64"),
                          QStringLiteral("--out"),
                          dir.filePath(QLatin1String(picture.name))},
                         dir);
        EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
        EXPECT_TRUE(readFile(dir.filePath(QLatin1String(picture.name))).startsWith(picture.magic))
            << picture.name;
    }
}

} // namespace vantrel::test
