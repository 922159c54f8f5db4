// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/document/document.h"
#include "hostapp/core/files/scenedump.h"
#include "hostapp/core/files/scenefile.h"
#include "hostapp/core/scene/generatorregistry.h"
#include "hostapp/core/scene/lightnode.h"
#include "hostapp/core/scene/meshnode.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QMetaProperty>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <cstdio>
#include <set>

#include <sys/stat.h>

using namespace vantrel::host;

namespace {

const QString s_errorDir = QStringLiteral(VANTREL_SOURCE_DIR "/tests/errors/");
const QString s_jar = QStringLiteral(VANTREL_SOURCE_DIR "/examples/models/jar.obj");

QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(path);
    ASSERT_EQ(file.write(bytes), bytes.size());
}

SceneNode *group(BaseNode *parent, const QString &name)
{
    return static_cast<SceneNode *>(parent->CreateChildGroup(name));
}

// Moves every parameter of the shape off its default, within the generator's limits, and checks
// that each one did move, so that the round trip below carries nothing by luck of defaults.
void setEveryParameter(MeshNode *shape, int seed)
{
    ShapeGenerator *generator = shape->generator();
    const QVariantMap defaults = generator->parameters();
    for (auto it = defaults.constBegin(); it != defaults.constEnd(); ++it) {
        const QByteArray name = it.key().toLatin1();
        if (it->userType() == QMetaType::Float)
            generator->setProperty(name, it->toFloat() * 0.7f + 0.013f * float(seed + 1));
        else if (it->userType() == QMetaType::Int)
            generator->setProperty(name, it->toInt() + 1);
        else
            generator->setProperty(name, s_jar); // a model file that exists
        EXPECT_NE(generator->property(name), *it)
            << generator->GetTypeId() << " " << name.constData() << " kept its default";
    }
}

// A scene with every generator and every node kind, and awkward floats everywhere.
std::unique_ptr<Document> everythingScene()
{
    auto document = std::make_unique<Document>();
    BaseNode *root = document->root();
    SceneNode *shelf = group(root, QStringLiteral("Shelf \"A\" \u00e9t\u00e9 / 2"));
    shelf->SetPosition(Vector3(0.1f, -1.f / 3.f, 9999999.f), true);
    shelf->SetRotation(Vector3(90.f, -37.5f, 1e-7f), true);
    shelf->SetScale(Vector3(2.f, 0.5f, -1e6f), 0);
    shelf->SetVisible(false);

    int seed = 0;
    std::vector<INode *> selection;
    for (const QByteArray &id : generatorIdentifiers()) {
        MeshNode *shape = shelf->createChildShape(id, QString::fromLatin1(id));
        shape->SetPosition(Vector3(float(seed) / 7.f, 1e-40f, -3.75f), true);
        shape->SetRotation(Vector3(0.f, 0.f, float(seed) * 17.3f), true);
        setEveryParameter(shape, seed++);
        if (seed % 5 == 0)
            selection.push_back(shape);
    }
    // Parameters at their defaults are written too, and a cover at 0 is not a missing cover.
    SceneNode *films = group(root, QStringLiteral("Films"));
    films->createChildShape("generator.DiscBox.DVD", QStringLiteral("Closed"));
    films->createChildShape("generator.DiscBox.DVD", QStringLiteral("Open"))
        ->generator()
        ->setProperty("coverAngle", 37.5f);
    // Any node may have children, shapes and lights included.
    auto *light = static_cast<LightNode *>(
        films->childNode(1)->CreateChildLight(QStringLiteral("Key light")));
    light->SetPosition(Vector3(120.f, -80.5f, 150.25f), true);
    light->SetIntensity(1.35f);
    light->SetShadowBlur(0.2f);
    light->SetCastShadows(true);
    light->SetLightMode(LightNode::DirectionalLight);
    light->SetVisible(false);
    light->CreateChildGroup(QString());
    root->CreateChildLight(QStringLiteral("Fill"));
    selection.push_back(light);
    selection.push_back(shelf);

    document->SetSelection(selection, Document::ReplaceSelection);
    document->SetAmbientIntensity(0.1234567f);
    document->SetLightingMode(Document::HeadLight);
    Camera *camera = document->camera();
    camera->SetTarget(Vector3(1.5f, -2.25f, 30.1f));
    camera->SetDistance(250.125f);
    camera->setYaw(-123.4f);
    camera->setPitch(-45.6f);
    camera->setFieldOfView(27.5f);
    camera->SetAspectRatio(16.f / 9.f);
    return document;
}

QString nested(int levels)
{
    return QStringLiteral(
               "{\"format\": \"vantrel-scene\", \"version\": 1, \"root\": {\"children\": [")
           + QStringLiteral("{\"type\": \"group\", \"children\": [").repeated(levels)
           + QStringLiteral("]}").repeated(levels) + QStringLiteral("]}}");
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
    const QString nodeTooDeep = QStringLiteral("root")
                                + QStringLiteral(".children[0]").repeated(257)
                                + QStringLiteral(": nodes nested deeper than 256 levels");
    const std::vector<std::pair<QString, QString>> cases = {
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
        {"light_mode_unknown.json", ": root.children[0].lightMode: expected 0 or 1, found 3"},
        {"light_cast_shadows_not_boolean.json",
         ": root.children[0].castShadows: expected true or false, found 1"},
        {"selection_names_no_node.json", ": selection[1]: no node at \"0/7\""},
        {"selection_path_malformed.json",
         ": selection[0]: expected a node path such as \"0/2\", found \"first\""},
        {"selection_node_twice.json", ": selection[2]: \"0\" is listed twice"},
        {"selection_not_array.json", ": selection: expected an array, found \"0\""},
    };
    std::set<QString> listed;
    for (const auto &[file, message] : cases) {
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

TEST(SceneFile, FailedSaveSaysWhyAndKeepsThePreviousFile)
{
    QTemporaryDir dir;
    QString error;
    Document document;
    group(document.root(), QStringLiteral("Shelf"));

    const QString noFolder = dir.filePath(QStringLiteral("missing/shelf.json"));
    EXPECT_FALSE(SceneFile::save(noFolder, document, &error));
    EXPECT_EQ(error.toStdString(),
              QString("Cannot save " + noFolder + ": no such folder: " + dir.filePath("missing"))
                  .toStdString());

    const QString folder = dir.filePath(QStringLiteral("folder.json"));
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("folder.json")));
    EXPECT_FALSE(SceneFile::save(folder, document, &error));
    EXPECT_EQ(error.toStdString(),
              QString("Cannot save " + folder + ": is a folder").toStdString());
    EXPECT_TRUE(QFileInfo(folder).isDir());

    // A FIFO stays a FIFO: a temporary file renamed over it would replace it.
    const QString fifo = dir.filePath(QStringLiteral("fifo.json"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    EXPECT_FALSE(SceneFile::save(fifo, document, &error));
    EXPECT_EQ(error.toStdString(),
              QString("Cannot save " + fifo + ": is not a regular file (a device, FIFO or socket)")
                  .toStdString());
    EXPECT_FALSE(QFileInfo(fifo).isFile());
    EXPECT_EQ(SceneFile::load(fifo, &error), nullptr) << "refused at once, not read for ever";
    EXPECT_EQ(error.toStdString(),
              QString(fifo + ": is not a regular file (a device, FIFO or socket)").toStdString());
    ASSERT_TRUE(QFile::remove(fifo));

    // Scenes the loader would refuse are not written, so the user keeps a file that opens.
    const QString previous = dir.filePath(QStringLiteral("shelf.json"));
    writeFile(previous, "the previous contents\n");
    static_cast<SceneNode *>(document.root()->childNode(0))
        ->SetPosition(Vector3(2e7f, 0.f, 0.f), true);
    EXPECT_FALSE(SceneFile::save(previous, document, &error));
    EXPECT_EQ(error.toStdString(),
              QString("Cannot save " + previous
                      + ": root.children[0].position[0]: 20000000 is outside -10000000..10000000")
                  .toStdString());
    Document deep;
    BaseNode *node = deep.root();
    for (int level = 0; level < 300; ++level)
        node = group(node, QString());
    EXPECT_FALSE(SceneFile::save(previous, deep, &error));
    EXPECT_EQ(error.toStdString(),
              QString("Cannot save " + previous + ": root"
                      + QStringLiteral(".children[0]").repeated(257)
                      + ": nodes nested deeper than 256 levels")
                  .toStdString());
    EXPECT_EQ(readAll(previous), "the previous contents\n");
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList{"shelf.json"});
}

TEST(SceneFile, WriteFailureHalfWayLeavesThePreviousFile)
{
    QTemporaryDir dir;
    const QString scene = dir.filePath(QStringLiteral("scene.json"));
    const QString target = dir.filePath(QStringLiteral("target/shelf.json"));
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("target")));
    QString error;
    const auto document = everythingScene();
    ASSERT_TRUE(SceneFile::save(scene, *document, &error)) << qPrintable(error);
    const QByteArray sceneBytes = readAll(scene);
    ASSERT_GT(sceneBytes.size(), 8192);
    writeFile(target, "the previous contents\n");

    auto saveWithLimit = [&](qint64 bytes) {
        QProcess helper;
        helper.start(QStringLiteral(VANTREL_SAVE_WITH_FILE_LIMIT),
                     {QString::number(bytes), scene, target});
        EXPECT_TRUE(helper.waitForFinished(30000));
        EXPECT_EQ(helper.exitStatus(), QProcess::NormalExit);
        return std::make_pair(helper.exitCode(),
                              QString::fromLocal8Bit(helper.readAllStandardError()));
    };
    const auto [code, message] = saveWithLimit(4096);
    EXPECT_EQ(code, 1);
    EXPECT_EQ(message.toStdString(),
              ("Cannot save " + target + ": File too large\n").toStdString());
    EXPECT_EQ(readAll(target), "the previous contents\n");
    EXPECT_EQ(QDir(dir.filePath(QStringLiteral("target"))).entryList(QDir::Files | QDir::Hidden),
              QStringList{"shelf.json"})
        << "no temporary file is left behind";

    // The same save with room enough succeeds: the limit, not the helper, made it fail.
    const auto [roomyCode, roomyMessage] = saveWithLimit(sceneBytes.size() + 1);
    EXPECT_EQ(roomyCode, 0) << qPrintable(roomyMessage);
    EXPECT_EQ(readAll(target), sceneBytes);
}

// The limits agree: a scene within the node, depth and text limits makes a file within the size
// limit, so that whatever opens or is built within them can be saved. The bound is derived from
// the writer's real output: the longest line a node of each kind can have, at the deepest level,
// with a name of the longest UTF-8 encoding, every number as long as a number's text can be and
// every text parameter at its limit.
TEST(SceneFile, EveryNodeWithinTheLimitsFitsTheFileLimit)
{
    const QString longestName(SceneFile::MaximumNameLength, QChar(0x20ac)); // 3 bytes in UTF-8
    Document document;
    BaseNode *parent = document.root();
    for (int level = 1; level < SceneFile::MaximumDepth; ++level)
        parent = group(parent, QString());
    auto *light = static_cast<LightNode *>(parent->CreateChildLight(longestName));
    light->SetCastShadows(true);
    group(parent, longestName);
    for (const QByteArray &id : generatorIdentifiers()) {
        MeshNode *shape = parent->createChildShape(id, longestName);
        if (shape->generator()->parameters().contains(QStringLiteral("path")))
            shape->generator()->setProperty("path", s_jar);
    }
    const QByteArray text = SceneFile::toJson(document);
    QString error;
    ASSERT_TRUE(SceneFile::fromJson(text, QStringLiteral("deepest.json"), &error))
        << qPrintable(error);

    // The shortest-round-trip text of a double is at most 24 characters
    // ("-2.2250738585072014e-308").
    static const QRegularExpression number(QStringLiteral("-?[0-9][0-9.e+-]*"));
    static const QRegularExpression string(QStringLiteral("\"path\": \"[^\"]*\""));
    qint64 longest = 0;
    int lines = 0;
    for (const QByteArray &line : text.split('\n')) {
        if (!line.contains(longestName.toUtf8()))
            continue;
        ++lines;
        QString bound = QString::fromUtf8(line);
        bound.replace(number, QStringLiteral("-2.2250738585072014e-308"));
        bound.replace(string,
                      QStringLiteral("\"path\": \"%1\"")
                          .arg(QString(SceneFile::MaximumTextLength, QChar(0x20ac))));
        longest = std::max<qint64>(longest, bound.toUtf8().size() + 1);
    }
    EXPECT_EQ(lines, int(generatorIdentifiers().size()) + 2) << "a line for every node";
    const qint64 topLevel = text.left(text.indexOf("\"children\": [")).size() + 4096;
    std::printf("longest node line: %lld bytes\n", (long long) longest);
    EXPECT_LE(SceneFile::MaximumNodeCount * longest + topLevel, SceneFile::MaximumFileSize)
        << "the longest node line is " << longest << " bytes";

    // Beyond the text limits, neither a file nor a save takes the node.
    Document tooLong;
    group(tooLong.root(), QString(SceneFile::MaximumNameLength + 1, QLatin1Char('x')));
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("long.json"));
    EXPECT_FALSE(SceneFile::save(path, tooLong, &error));
    EXPECT_EQ(error.toStdString(),
              ("Cannot save " + path
               + ": root.children[0].name: the name is 257 characters long; the limit is 256")
                  .toStdString());
    const QByteArray tabbed = R"({"format": "vantrel-scene", "version": 1, "root": {"children": [
             {"type": "group", "name": "A\tB"}]}})";
    EXPECT_FALSE(SceneFile::fromJson(tabbed, QStringLiteral("tab.json"), &error));
    EXPECT_EQ(error.toStdString(),
              "tab.json: root.children[0].name: the name holds a control character (code 9)");
}
