// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Reading scene files: what is written reads back exactly, the documented example is the scene it
// describes, and broken, unreadable or absurdly large input is refused with its message.
#include "hostapp/core/document/document.h"
#include "hostapp/core/files/scenedump.h"
#include "hostapp/core/files/scenefile.h"
#include "hostapp/core/scene/lightnode.h"
#include "hostapp/core/scene/meshnode.h"
#include "tests/hostapp/filefixtures.h"
#include "tests/hostapp/scenefixtures.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <set>
#include <utility>
#include <vector>

using namespace vantrel::host;
using namespace vantrel::test;

namespace {

const QString s_errorDir = QStringLiteral(VANTREL_SOURCE_DIR "/tests/errors/");

QString nested(int levels)
{
    return QStringLiteral(
               "{\"format\": \"vantrel-scene\", \"version\": 1, \"root\": {\"children\": [")
           + QStringLiteral("{\"type\": \"group\", \"children\": [").repeated(levels)
           + QStringLiteral("]}").repeated(levels) + QStringLiteral("]}}");
}

// Every broken scene in tests/errors/ and the message that follows its path.
std::vector<std::pair<QString, QString>> brokenFixtureMessages()
{
    const QString nodeTooDeep = QStringLiteral("root")
                                + QStringLiteral(".children[0]").repeated(257)
                                + QStringLiteral(": nodes nested deeper than 256 levels");
    return {
        {"not_json.json", ":1:1: illegal value"},
        {"empty.json", ":1:1: unexpected end of data"},
        {"truncated.json", ":20:32: unexpected end of data"},
        {"json_missing_comma.json", ":9:17: unterminated object"},
        {"json_invalid_utf8.json", ":8:33: invalid UTF8 string"},
        {"json_nesting_too_deep.json", ":1:15905: too deeply nested document"},
        {"top_level_not_object.json", ": expected a JSON object at the top level, found an array"},
        {"scene_format_missing.json", ": format: required field is missing"},
        {"scene_format_wrong.json",
         ": format: expected \"vantrel-scene\", found \"blender-scene\""},
        {"scene_version_missing.json", ": version: required field is missing"},
        {"scene_version_not_integer.json", ": version: expected an integer, found 1.5"},
        {"scene_version_zero.json", ": version: expected 1 or higher, found 0"},
        {"scene_version_newer.json",
         ": written by a newer vantrel (version 2); this one reads version 1"},
        {"scene_field_unknown.json", ": unknown field \"colour\""},
        {"scene_root_missing.json", ": root: required field is missing"},
        {"scene_ambient_not_number.json", ": ambient: expected a number, found \"bright\""},
        {"scene_lighting_mode_unknown.json", ": lightingMode: expected 0 or 1, found 2"},
        {"camera_target_not_three_numbers.json", ": camera.target: expected 3 numbers, found 2"},
        {"camera_pitch_not_taken.json",
         ": camera.pitch: the camera does not take 95 (it would use 89)"},
        {"camera_field_unknown.json", ": camera: unknown field \"zoom\""},
        {"node_not_object.json", ": root.children[0]: expected an object, found 42"},
        {"node_type_missing.json", ": root.children[0].type: required field is missing"},
        {"node_type_unknown.json",
         ": root.children[1].type: expected \"group\", \"shape\" or \"light\", found \"camera\""},
        {"node_field_unknown.json", ": root.children[0]: unknown field \"postion\""},
        {"node_field_of_other_kind.json", ": root.children[0]: a group has no field \"generator\""},
        {"node_name_not_string.json", ": root.children[0].name: expected a string, found 7"},
        {"node_visible_not_boolean.json",
         ": root.children[0].visible: expected true or false, found \"yes\""},
        {"node_rotation_not_three_numbers.json",
         ": root.children[2].rotation: expected 3 numbers, found 2"},
        {"node_position_not_number.json",
         ": root.children[0].position[1]: expected a number, found \"1\""},
        {"node_position_too_far.json",
         ": root.children[0].position[0]: 20000000 is outside -10000000..10000000"},
        {"node_scale_too_large.json",
         ": root.children[0].children[0].scale[2]: 10000000 is outside -1000000..1000000"},
        {"node_children_not_array.json",
         ": root.children[0].children: expected an array, found an object"},
        {"node_nesting_too_deep.json", ": " + nodeTooDeep},
        {"generator_missing.json", ": root.children[0].generator: required field is missing"},
        {"generator_unknown.json",
         ": root.children[0].generator: unknown generator \"generator.Boxes.Crate\""},
        {"param_unknown.json",
         ": root.children[0].params: generator.Boxes.Box has no parameter \"colour\""},
        {"param_wrong_type.json",
         ": root.children[0].params.width: expected a number, found \"wide\""},
        {"param_outside_limits.json",
         ": root.children[0].params.coverAngle: generator.DiscBox.DVD does not take 200 (it "
         "would use 180)"},
        {"param_not_integer.json",
         ": root.children[0].params.type: expected an integer, found 1.5"},
        {"param_path_not_string.json",
         ": root.children[0].params.path: expected a string, found an array"},
        {"model_file_missing.json",
         ": root.children[0].params.path: " + s_errorDir
             + "models/no_such_bottle.obj: no such file"},
        {"node_artwork_not_string.json", ": root.children[0].artwork: expected a string, found 7"},
        {"node_artwork_missing_file.json",
         ": root.children[0].artwork: " + s_errorDir + "images/no_such_cover.png: no such file"},
        {"node_artwork_not_image.json",
         ": root.children[0].artwork: " + s_errorDir + "images/cover.png: not a PNG or JPEG image"},
        {"light_mode_unknown.json", ": root.children[0].lightMode: expected 0 or 1, found 3"},
        {"light_cast_shadows_not_boolean.json",
         ": root.children[0].castShadows: expected true or false, found 1"},
        {"selection_names_no_node.json", ": selection[1]: no node at \"0/7\""},
        {"selection_path_malformed.json",
         ": selection[0]: expected a node path such as \"0/2\", found \"first\""},
        {"selection_node_twice.json", ": selection[2]: \"0\" is listed twice"},
        {"selection_not_array.json", ": selection: expected an array, found \"0\""},
    };
}

} // namespace

TEST(SceneFile, RoundTripIsExactForEveryGeneratorAndNodeKind)
{
    const auto document = everythingScene();
    ASSERT_EQ(document->GetSelection().size(), 6u);
    QTemporaryDir dir;
    const QString first = dir.filePath(QStringLiteral("first.json"));
    const QString second = dir.filePath(QStringLiteral("second.json"));
    QString error;

    ASSERT_TRUE(SceneFile::save(first, *document, &error)) << qPrintable(error);
    const auto loaded = SceneFile::load(first, &error);
    ASSERT_TRUE(loaded) << qPrintable(error);
    EXPECT_EQ(dumpScene(*loaded), dumpScene(*document));
    EXPECT_EQ(loaded->history().undoCount(), 0) << "an opened scene has nothing to undo";

    ASSERT_TRUE(SceneFile::save(second, *loaded, &error)) << qPrintable(error);
    EXPECT_EQ(readAll(second), readAll(first)) << "saving the loaded scene changes no byte";
    EXPECT_EQ(readAll(first), SceneFile::toJson(*document));

    // The round trip compares the host's own dumps; spot-check the file itself against the text
    // the format documents, since a reader and writer could agree on something else.
    const QByteArray text = readAll(first);
    EXPECT_TRUE(text.contains("\"coverAngle\": 37.5")) << "a float that is exact in decimal";
    EXPECT_TRUE(text.contains("\"path\": \"" + s_jar.toUtf8() + '"'));
    EXPECT_TRUE(text.contains("\"selection\": [\"0/4\", ")) << "child-index paths";
}

TEST(SceneFile, DocumentedExampleIsTheSceneItDescribes)
{
    const QString docs
        = QString::fromUtf8(readAll(QStringLiteral(VANTREL_SOURCE_DIR "/docs/scene-format.md")));
    const QRegularExpressionMatch example
        = QRegularExpression(QStringLiteral("```json\n(.*?)```"),
                             QRegularExpression::DotMatchesEverythingOption)
              .match(docs);
    ASSERT_TRUE(example.hasMatch()) << "docs/scene-format.md shows a complete example";
    QString error;
    const auto document = SceneFile::fromJson(example.captured(1).toUtf8(), "example.json", &error);
    ASSERT_TRUE(document) << qPrintable(error);

    // The same scene built through the host: every field the example leaves out has the value a
    // new node, generator or camera has.
    Document expected;
    expected.SetAmbientIntensity(0.25f);
    expected.camera()->SetDistance(150.f);
    SceneNode *shelf = group(expected.root(), QStringLiteral("Shelf"));
    MeshNode *carton = shelf->createChildShape("generator.Boxes.Box", QStringLiteral("Carton"));
    carton->generator()->setProperty("width", 20.f);
    carton->generator()->setProperty("height", 30.f);
    carton->generator()->setProperty("depth", 10.f);
    carton->SetPosition(Vector3(-15.f, 0.f, 0.f), true);
    MeshNode *film = shelf->createChildShape("generator.DiscBox.DVD", QStringLiteral("Film"));
    film->generator()->setProperty("coverAngle", 37.5f);
    film->SetPosition(Vector3(12.f, 0.f, 0.f), true);
    film->SetRotation(Vector3(0.f, 0.f, 15.f), true);
    auto *light = static_cast<LightNode *>(expected.root()->CreateChildLight("Key light"));
    light->SetPosition(Vector3(100.f, -80.f, 150.f), true);
    light->SetIntensity(0.9f);
    light->SetCastShadows(true);
    expected.SetSelection({film}, Document::ReplaceSelection);
    EXPECT_EQ(dumpScene(*document), dumpScene(expected));
}
TEST(SceneFile, RefusesEachBrokenFixtureWithItsMessage)
{
    std::set<QString> listed;
    for (const auto &[file, message] : brokenFixtureMessages()) {
        listed.insert(file);
        const QString path = s_errorDir + file;
        QString error;
        EXPECT_EQ(SceneFile::load(path, &error), nullptr) << qPrintable(file);
        EXPECT_EQ(error.toStdString(), (path + message).toStdString());
    }
    const QStringList present = QDir(s_errorDir).entryList(QDir::Files);
    EXPECT_EQ(std::set<QString>(present.begin(), present.end()), listed)
        << "every fixture in tests/errors/ has its expected message here";
}

TEST(SceneFile, RefusesUnreadableAndAbsurdlyLargeInputAndTakesTheLimitsThemselves)
{
    QTemporaryDir dir;
    QString error;
    const QString absent = dir.filePath(QStringLiteral("absent.json"));
    EXPECT_EQ(SceneFile::load(absent, &error), nullptr);
    EXPECT_EQ(error.toStdString(), QString(absent + ": no such file").toStdString());
    EXPECT_EQ(SceneFile::load(dir.path(), &error), nullptr);
    EXPECT_EQ(error.toStdString(), QString(dir.path() + ": is a folder, not a file").toStdString());

    // A sparse file: the size is refused before a byte is read.
    const QString huge = dir.filePath(QStringLiteral("huge.json"));
    QFile file(huge);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.resize(SceneFile::MaximumFileSize + 1));
    file.close();
    EXPECT_EQ(SceneFile::load(huge, &error), nullptr);
    EXPECT_EQ(
        error.toStdString(),
        QString(
            huge
            + ": the file is 1073741825 bytes; scene files are limited to 1073741824 bytes (1 GiB)")
            .toStdString());

    // One node past the limit, refused before a million nodes are built.
    QByteArray many = "{\"format\": \"vantrel-scene\", \"version\": 1, \"root\": {\"children\": [";
    many += QByteArray("{\"type\": \"group\"},").repeated(SceneFile::MaximumNodeCount);
    many += "{\"type\": \"group\"}]}}";
    EXPECT_EQ(SceneFile::fromJson(many, "many.json", &error), nullptr);
    EXPECT_EQ(error.toStdString(),
              QString("many.json: root: more than 200000 nodes").toStdString());

    // The limits themselves are allowed.
    EXPECT_TRUE(SceneFile::fromJson(nested(256).toUtf8(), "deep.json", &error))
        << qPrintable(error);
    const QByteArray far = R"({"format": "vantrel-scene", "version": 1, "root": {"children": [
        {"type": "group", "position": [-10000000, 0, 1e7], "scale": [1e6, -1000000, 0],
         "rotation": [1e6, 0, -1e6]}]}})";
    EXPECT_TRUE(SceneFile::fromJson(far, "far.json", &error)) << qPrintable(error);
}
