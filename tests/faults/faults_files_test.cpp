// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Scene files and pictures: saves that fail half-way, special files as targets and sources, empty
// paths, picture formats, damaged JSON.

#include "tests/faults/faultcase.h"

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
