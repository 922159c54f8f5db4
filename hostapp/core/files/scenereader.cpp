// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/files/scenereader.h"

#include "hostapp/core/document/document.h"
#include "hostapp/core/files/jsoncheck.h"
#include "hostapp/core/files/scenefile.h"
#include "hostapp/core/files/scenenodereader.h"
#include "hostapp/core/scene/basenode.h"
#include "hostapp/core/scene/camera.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

#include <unordered_set>

namespace vantrel::host {

namespace {

namespace key = scenekey;

const JsonFieldChecker::Keys s_sceneKeys = {key::format,
                                            key::version,
                                            key::ambient,
                                            key::lightingMode,
                                            key::camera,
                                            key::selection,
                                            key::root};
const JsonFieldChecker::Keys s_cameraKeys
    = {key::target, key::distance, key::yaw, key::pitch, key::fieldOfView, key::aspectRatio};
QString field(const QString &place, QLatin1String name)
{
    return JsonFieldChecker::field(place, name);
}

QString found(const QJsonValue &value)
{
    return JsonFieldChecker::found(value);
}

// The nodes below a children array, as far as the structure can be followed. This runs before
// anything is built, so that an absurd file is refused without building a million nodes first.
// Its recursion is bounded by QJsonDocument's own nesting limit.
qint64 countNodes(const QJsonValue &children)
{
    if (!children.isArray())
        return 0;
    const QJsonArray array = children.toArray();
    qint64 count = array.size();
    for (const QJsonValue &child : array)
        count += countNodes(child.toObject().value(key::children));
    return count;
}

// Line and column (both from 1, columns in characters) of a byte offset into UTF-8 text.
QString lineAndColumn(const QByteArray &text, int offset)
{
    int line = 1;
    int column = 1;
    for (int i = 0; i < qBound(0, offset, text.size()); ++i) {
        if (text.at(i) == '\n') {
            ++line;
            column = 1;
        } else if ((uchar(text.at(i)) & 0xC0) != 0x80) { // not a continuation byte
            ++column;
        }
    }
    return QStringLiteral("%1:%2").arg(line).arg(column);
}

// Where a JSON syntax error lies. QJsonParseError::offset is one past the offending character
// for the errors the parser finds after taking the next token, and on it for the others. At the
// end of the data the two cases look alike, so the data is parsed again with a space after it:
// then a wrong last character still lies on the data, and running out lies beyond it.
SceneReader::Refusal syntaxRefusal(const QByteArray &json, QJsonParseError error)
{
    if (error.offset >= json.size()) {
        QJsonDocument::fromJson(json + ' ', &error);
        if (error.offset > json.size())
            return {
                lineAndColumn(json, json.size()), QStringLiteral("unexpected end of data"), true};
    }
    int offset = error.offset;
    switch (error.error) {
    case QJsonParseError::UnterminatedObject:
    case QJsonParseError::MissingNameSeparator:
    case QJsonParseError::UnterminatedArray:
    case QJsonParseError::MissingValueSeparator:
    case QJsonParseError::IllegalValue:
    case QJsonParseError::MissingObject:
    case QJsonParseError::DeepNesting:
        --offset;
        break;
    default:
        break;
    }
    return {lineAndColumn(json, offset), error.errorString(), true};
}

} // namespace

SceneReader::SceneReader(const QString &modelDirectory)
    : m_modelDirectory(modelDirectory)
    , m_check(SceneFile::MaximumOther)
{}

std::unique_ptr<Document> SceneReader::read(const QByteArray &json)
{
    if (json.size() > SceneFile::MaximumFileSize) {
        m_check.fail(QString(), sizeProblem(json.size()));
        return nullptr;
    }
    QJsonParseError parseError;
    const QJsonDocument parsed = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        m_check.setRefusal(syntaxRefusal(json, parseError));
        return nullptr;
    }
    // Qt's reader keeps the last of two equal keys and lets raw control characters through.
    const JsonProblem strict = checkJsonStrictly(json);
    if (strict.offset >= 0) {
        m_check.setRefusal({lineAndColumn(json, int(strict.offset)), strict.problem, true});
        return nullptr;
    }
    if (!parsed.isObject()) {
        m_check.fail(QString(),
                     QStringLiteral("expected a JSON object at the top level, found an array"));
        return nullptr;
    }
    auto document = std::make_unique<Document>();
    if (!readScene(parsed.object(), document.get()))
        return nullptr;
    return document;
}

QString SceneReader::sizeProblem(qint64 size)
{
    return QStringLiteral("the file is %1 bytes; scene files are limited to %2 bytes (%3 GiB)")
        .arg(size)
        .arg(SceneFile::MaximumFileSize)
        .arg(SceneFile::MaximumFileSize >> 30);
}

QString SceneReader::depthProblem()
{
    return QStringLiteral("nodes nested deeper than %1 levels").arg(SceneFile::MaximumDepth);
}

QString SceneReader::rangeProblem(double value, double limit)
{
    return JsonFieldChecker::rangeProblem(value, limit);
}

QString SceneReader::childPlace(const QString &parentPlace, int index)
{
    return QStringLiteral("%1.children[%2]").arg(parentPlace).arg(index);
}

bool SceneReader::readMode(JsonFieldChecker &check,
                           const QJsonObject &object,
                           const QString &place,
                           QLatin1String name,
                           int *result)
{
    const QString here = field(place, name);
    int mode = 0;
    if (!object.contains(name))
        return true;
    if (!check.parse(object.value(name), here, &mode))
        return false;
    if (mode != 0 && mode != 1)
        return check.fail(here, QStringLiteral("expected 0 or 1, found %1").arg(mode));
    *result = mode;
    return true;
}

bool SceneReader::readScene(const QJsonObject &top, Document *document)
{
    QJsonArray children;
    if (!readHeader(top) || !readRoot(top, &children))
        return false;

    float ambient = document->GetAmbientIntensity();
    int lightingMode = document->lightingMode();
    if (!m_check.optional(top, QString(), key::ambient, &ambient, SceneFile::MaximumOther)
        || !readMode(m_check, top, QString(), key::lightingMode, &lightingMode)
        || !readCamera(top.value(key::camera), document->camera()))
        return false;
    document->SetAmbientIntensity(ambient);
    document->SetLightingMode(lightingMode);

    SceneNodeReader nodes(m_check, m_modelDirectory);
    for (int i = 0; i < children.size(); ++i) {
        if (!nodes.readNode(children.at(i), document->root(), childPlace(key::root, i), 1))
            return false;
    }
    if (!readSelection(top.value(key::selection), document))
        return false;
    // Building the scene went through the recorded operations; an opened file has nothing to undo.
    document->history().clear();
    return true;
}

// The format and its version, and no fields but the scene's.
bool SceneReader::readHeader(const QJsonObject &top)
{
    const QJsonValue format = top.value(key::format);
    if (!m_check.required(top, QString(), key::format))
        return false;
    if (format.toString() != QLatin1String(SceneFile::FormatName))
        return m_check.fail(key::format,
                            QStringLiteral("expected \"%1\", found %2")
                                .arg(QLatin1String(SceneFile::FormatName), found(format)));
    int version = 0;
    if (!m_check.required(top, QString(), key::version)
        || !m_check.parse(top.value(key::version), key::version, &version))
        return false;
    if (version < 1)
        return m_check.fail(key::version,
                            QStringLiteral("expected 1 or higher, found %1").arg(version));
    if (version > SceneFile::CurrentVersion)
        return m_check.fail(
            QString(),
            QStringLiteral("written by a newer vantrel (version %1); this one reads "
                           "version %2")
                .arg(version)
                .arg(SceneFile::CurrentVersion));
    return m_check.onlyKnownKeys(top, QString(), {s_sceneKeys});
}

// The root object and the array of its children, counted before anything is built.
bool SceneReader::readRoot(const QJsonObject &top, QJsonArray *children)
{
    const QJsonValue root = top.value(key::root);
    if (!m_check.required(top, QString(), key::root))
        return false;
    if (!root.isObject())
        return m_check.fail(key::root,
                            QStringLiteral("expected an object, found %1").arg(found(root)));
    const QJsonObject rootObject = root.toObject();
    if (!m_check.onlyKnownKeys(rootObject, key::root, {{key::children}}))
        return false;
    const QJsonValue childrenValue = rootObject.value(key::children);
    if (!childrenValue.isUndefined() && !childrenValue.isArray())
        return m_check.fail(
            field(key::root, key::children),
            QStringLiteral("expected an array, found %1").arg(found(childrenValue)));
    if (countNodes(childrenValue) > SceneFile::MaximumNodeCount)
        return m_check.fail(key::root,
                            QStringLiteral("more than %1 nodes").arg(SceneFile::MaximumNodeCount));
    *children = childrenValue.toArray();
    return true;
}

bool SceneReader::readCamera(const QJsonValue &value, Camera *camera)
{
    if (value.isUndefined())
        return true;
    const QString place = key::camera;
    if (!value.isObject())
        return m_check.fail(place,
                            QStringLiteral("expected an object, found %1").arg(found(value)));
    const QJsonObject object = value.toObject();
    if (!m_check.onlyKnownKeys(object, place, {s_cameraKeys}))
        return false;
    Vector3 target = camera->GetTarget();
    if (!m_check.optional(object, place, key::target, &target, SceneFile::MaximumPosition))
        return false;
    camera->SetTarget(target);

    // The camera limits these; a value it would change is refused rather than silently moved.
    struct Setting
    {
        QLatin1String name;
        void (Camera::*set)(float);
        float (Camera::*get)() const;
    };
    const Setting settings[] = {
        {key::distance, &Camera::SetDistance, &Camera::GetDistance},
        {key::yaw, &Camera::setYaw, &Camera::yaw},
        {key::pitch, &Camera::setPitch, &Camera::pitch},
        {key::fieldOfView, &Camera::setFieldOfView, &Camera::GetFieldOfView},
        {key::aspectRatio, &Camera::SetAspectRatio, &Camera::GetAspectRatio},
    };
    for (const Setting &setting : settings) {
        const QJsonValue given = object.value(setting.name);
        float wanted = (camera->*setting.get)();
        if (!m_check.optional(object, place, setting.name, &wanted, SceneFile::MaximumOther))
            return false;
        (camera->*setting.set)(wanted);
        const float taken = (camera->*setting.get)();
        if (taken != wanted)
            return m_check.fail(field(place, setting.name),
                                QStringLiteral("the camera does not take %1 (it would use %2)")
                                    .arg(found(given), JsonFieldChecker::floatText(taken)));
    }
    return true;
}

bool SceneReader::readSelection(const QJsonValue &value, Document *document)
{
    if (value.isUndefined())
        return true;
    if (!value.isArray())
        return m_check.fail(key::selection,
                            QStringLiteral("expected an array, found %1").arg(found(value)));
    const QJsonArray paths = value.toArray();
    std::vector<INode *> selection;
    std::unordered_set<INode *> seen;
    for (int i = 0; i < paths.size(); ++i) {
        const QString here = QStringLiteral("selection[%1]").arg(i);
        const QString path = paths.at(i).toString();
        static const QRegularExpression s_pathPattern(QStringLiteral("^[0-9]{1,9}(/[0-9]{1,9})*$"));
        if (!paths.at(i).isString() || !s_pathPattern.match(path).hasMatch())
            return m_check.fail(here,
                                QStringLiteral("expected a node path such as \"0/2\", found %1")
                                    .arg(found(paths.at(i))));
        BaseNode *node = document->root();
        for (const QStringRef &step : path.splitRef(QLatin1Char('/'))) {
            const std::size_t index = step.toUInt();
            node = node && index < node->GetChildren().size() ? node->childNode(index) : nullptr;
        }
        if (!node)
            return m_check.fail(here, QStringLiteral("no node at \"%1\"").arg(path));
        if (!seen.insert(node).second)
            return m_check.fail(here, QStringLiteral("\"%1\" is listed twice").arg(path));
        selection.push_back(node);
    }
    document->SetSelection(selection, Document::ReplaceSelection);
    return true;
}

} // namespace vantrel::host
