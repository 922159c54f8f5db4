// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/files/scenereader.h"

#include "hostapp/core/document/document.h"
#include "hostapp/core/files/jsoncheck.h"
#include "hostapp/core/files/scenefile.h"
#include "hostapp/core/scene/basenode.h"
#include "hostapp/core/scene/generatorregistry.h"
#include "hostapp/core/scene/generators/externalmodelgenerator.h"
#include "hostapp/core/scene/lightnode.h"
#include "hostapp/core/scene/meshnode.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QMetaProperty>
#include <QRegularExpression>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <unordered_set>

namespace vantrel::host {

namespace {

namespace key = scenekey;

const std::initializer_list<QLatin1String> s_sceneKeys = {key::format,
                                                          key::version,
                                                          key::ambient,
                                                          key::lightingMode,
                                                          key::camera,
                                                          key::selection,
                                                          key::root};
const std::initializer_list<QLatin1String> s_cameraKeys
    = {key::target, key::distance, key::yaw, key::pitch, key::fieldOfView, key::aspectRatio};
const std::initializer_list<QLatin1String> s_nodeKeys
    = {key::name, key::type, key::visible, key::position, key::rotation, key::scale, key::children};
const std::initializer_list<QLatin1String> s_shapeKeys = {key::generator, key::params};
const std::initializer_list<QLatin1String> s_lightKeys
    = {key::intensity, key::shadowBlur, key::castShadows, key::lightMode};

bool listed(std::initializer_list<QLatin1String> keys, const QString &name)
{
    return std::find(keys.begin(), keys.end(), name) != keys.end();
}

// A number as the file writes it: integers without a fraction, others in the shortest form
// that reads back the same.
QString numberText(double value)
{
    if (value == std::floor(value) && std::abs(value) < 1e15)
        return QString::number(qint64(value));
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

// The shortest text that reads back as the same float: what a generator or the camera uses.
QString floatText(float value)
{
    char text[32];
    const std::to_chars_result end = std::to_chars(std::begin(text), std::end(text), value);
    return QString::fromLatin1(text, int(end.ptr - text));
}

// A string in double quotes, escaped as in JSON, so that a control character or a quote inside
// a name cannot garble the message.
QString quoted(const QString &text)
{
    const QByteArray json = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(json.mid(1, json.size() - 2)); // without the brackets
}

// What a message says was found instead: short strings and numbers are shown as they are.
QString found(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Null:
        return QStringLiteral("null");
    case QJsonValue::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QJsonValue::Double:
        return numberText(value.toDouble());
    case QJsonValue::String:
        return value.toString().size() <= 40 ? quoted(value.toString())
                                             : QStringLiteral("a string");
    case QJsonValue::Array:
        return QStringLiteral("an array");
    case QJsonValue::Object:
        return QStringLiteral("an object");
    case QJsonValue::Undefined:
        break;
    }
    return QStringLiteral("nothing");
}

QString field(const QString &place, QLatin1String name)
{
    return place.isEmpty() ? QString(name) : place + QLatin1Char('.') + name;
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

QString SceneReader::Refusal::message(const QString &prefix) const
{
    if (syntax)
        return QStringLiteral("%1:%2: %3").arg(prefix, place, problem);
    if (place.isEmpty())
        return QStringLiteral("%1: %2").arg(prefix, problem);
    return QStringLiteral("%1: %2: %3").arg(prefix, place, problem);
}

std::unique_ptr<Document> SceneReader::read(const QByteArray &json)
{
    if (json.size() > SceneFile::MaximumFileSize) {
        m_refusal = {QString(), sizeProblem(json.size())};
        return nullptr;
    }
    QJsonParseError parseError;
    const QJsonDocument parsed = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        m_refusal = syntaxRefusal(json, parseError);
        return nullptr;
    }
    // Qt's reader keeps the last of two equal keys and lets raw control characters through.
    const JsonProblem strict = checkJsonStrictly(json);
    if (strict.offset >= 0) {
        m_refusal = {lineAndColumn(json, int(strict.offset)), strict.problem, true};
        return nullptr;
    }
    if (!parsed.isObject()) {
        m_refusal = {QString(),
                     QStringLiteral("expected a JSON object at the top level, found an array")};
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
    return QStringLiteral("%1 is outside -%2..%2").arg(numberText(value), numberText(limit));
}

QString SceneReader::childPlace(const QString &parentPlace, int index)
{
    return QStringLiteral("%1.children[%2]").arg(parentPlace).arg(index);
}

bool SceneReader::onlyKnownKeys(const QJsonObject &object,
                                const QString &place,
                                std::initializer_list<QLatin1String> keys,
                                std::initializer_list<QLatin1String> extraKeys,
                                const QString &kind)
{
    for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
        const QString name = it.key();
        if (listed(keys, name) || listed(extraKeys, name))
            continue;
        // A field of another kind of node is a likelier mistake than a typing error.
        if (!kind.isEmpty() && (listed(s_shapeKeys, name) || listed(s_lightKeys, name)))
            return fail(place, QStringLiteral("a %1 has no field %2").arg(kind, quoted(name)));
        return fail(place, QStringLiteral("unknown field %1").arg(quoted(name)));
    }
    return true;
}

bool SceneReader::parse(const QJsonValue &value, const QString &place, double *result, double limit)
{
    if (!value.isDouble())
        return fail(place, QStringLiteral("expected a number, found %1").arg(found(value)));
    const double d = value.toDouble();
    if (!(std::abs(d) <= limit))
        return fail(place, rangeProblem(d, limit));
    *result = d;
    return true;
}

bool SceneReader::parse(const QJsonValue &value, const QString &place, float *result, double limit)
{
    double d = 0.0;
    if (!parse(value, place, &d, limit))
        return false;
    *result = float(d); // within float range: every limit is far below FLT_MAX
    return true;
}

bool SceneReader::parse(const QJsonValue &value, const QString &place, int *result)
{
    double d = 0.0;
    if (!value.isDouble() || value.toDouble() != std::floor(value.toDouble()))
        return fail(place, QStringLiteral("expected an integer, found %1").arg(found(value)));
    if (!parse(value, place, &d, SceneFile::MaximumOther))
        return false;
    *result = int(d);
    return true;
}

bool SceneReader::parse(const QJsonValue &value, const QString &place, bool *result)
{
    if (!value.isBool())
        return fail(place, QStringLiteral("expected true or false, found %1").arg(found(value)));
    *result = value.toBool();
    return true;
}

bool SceneReader::parse(const QJsonValue &value,
                        const QString &place,
                        Vector3 *result,
                        double limit)
{
    if (!value.isArray())
        return fail(place, QStringLiteral("expected 3 numbers, found %1").arg(found(value)));
    const QJsonArray array = value.toArray();
    if (array.size() != 3)
        return fail(place, QStringLiteral("expected 3 numbers, found %1").arg(array.size()));
    double v[3];
    for (int i = 0; i < 3; ++i) {
        if (!parse(array.at(i), QStringLiteral("%1[%2]").arg(place).arg(i), &v[i], limit))
            return false;
    }
    *result = Vector3(float(v[0]), float(v[1]), float(v[2]));
    return true;
}

template<typename T, typename... Limit>
bool SceneReader::optional(
    const QJsonObject &object, const QString &place, QLatin1String name, T *result, Limit... limit)
{
    const QJsonValue value = object.value(name);
    return value.isUndefined() || parse(value, field(place, name), result, limit...);
}

// The lighting mode of the scene and the mode of a light: 0 or 1.
bool SceneReader::mode(const QJsonObject &object,
                       const QString &place,
                       QLatin1String name,
                       int *result)
{
    const QString here = field(place, name);
    int mode = 0;
    if (!object.contains(name))
        return true;
    if (!parse(object.value(name), here, &mode))
        return false;
    if (mode != 0 && mode != 1)
        return fail(here, QStringLiteral("expected 0 or 1, found %1").arg(mode));
    *result = mode;
    return true;
}

bool SceneReader::readScene(const QJsonObject &top, Document *document)
{
    const QJsonValue format = top.value(key::format);
    if (format.isUndefined())
        return fail(key::format, QStringLiteral("required field is missing"));
    if (format.toString() != QLatin1String(SceneFile::FormatName))
        return fail(key::format,
                    QStringLiteral("expected \"%1\", found %2")
                        .arg(QLatin1String(SceneFile::FormatName), found(format)));
    const QJsonValue versionValue = top.value(key::version);
    int version = 0;
    if (versionValue.isUndefined())
        return fail(key::version, QStringLiteral("required field is missing"));
    if (!parse(versionValue, key::version, &version))
        return false;
    if (version < 1)
        return fail(key::version, QStringLiteral("expected 1 or higher, found %1").arg(version));
    if (version > SceneFile::CurrentVersion)
        return fail(QString(),
                    QStringLiteral("written by a newer vantrel (version %1); this one reads "
                                   "version %2")
                        .arg(version)
                        .arg(SceneFile::CurrentVersion));
    if (!onlyKnownKeys(top, QString(), s_sceneKeys))
        return false;

    const QJsonValue root = top.value(key::root);
    if (root.isUndefined())
        return fail(key::root, QStringLiteral("required field is missing"));
    if (!root.isObject())
        return fail(key::root, QStringLiteral("expected an object, found %1").arg(found(root)));
    const QJsonObject rootObject = root.toObject();
    if (!onlyKnownKeys(rootObject, key::root, {key::children}))
        return false;
    const QJsonValue children = rootObject.value(key::children);
    if (!children.isUndefined() && !children.isArray())
        return fail(field(key::root, key::children),
                    QStringLiteral("expected an array, found %1").arg(found(children)));
    if (countNodes(children) > SceneFile::MaximumNodeCount)
        return fail(key::root,
                    QStringLiteral("more than %1 nodes").arg(SceneFile::MaximumNodeCount));

    float ambient = document->GetAmbientIntensity();
    int lightingMode = document->lightingMode();
    if (!optional(top, QString(), key::ambient, &ambient, SceneFile::MaximumOther)
        || !mode(top, QString(), key::lightingMode, &lightingMode)
        || !readCamera(top.value(key::camera), document->camera()))
        return false;
    document->SetAmbientIntensity(ambient);
    document->SetLightingMode(lightingMode);

    const QJsonArray childArray = children.toArray();
    for (int i = 0; i < childArray.size(); ++i) {
        if (!readNode(childArray.at(i), document->root(), childPlace(key::root, i), 1))
            return false;
    }
    if (!readSelection(top.value(key::selection), document))
        return false;
    // Building the scene went through the recorded operations; an opened file has nothing to undo.
    document->history().clear();
    return true;
}

bool SceneReader::readCamera(const QJsonValue &value, Camera *camera)
{
    if (value.isUndefined())
        return true;
    const QString place = key::camera;
    if (!value.isObject())
        return fail(place, QStringLiteral("expected an object, found %1").arg(found(value)));
    const QJsonObject object = value.toObject();
    if (!onlyKnownKeys(object, place, s_cameraKeys))
        return false;
    Vector3 target = camera->GetTarget();
    if (!optional(object, place, key::target, &target, SceneFile::MaximumPosition))
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
        if (!optional(object, place, setting.name, &wanted, SceneFile::MaximumOther))
            return false;
        (camera->*setting.set)(wanted);
        const float taken = (camera->*setting.get)();
        if (taken != wanted)
            return fail(field(place, setting.name),
                        QStringLiteral("the camera does not take %1 (it would use %2)")
                            .arg(found(given), floatText(taken)));
    }
    return true;
}

bool SceneReader::readNode(const QJsonValue &value,
                           BaseNode *parent,
                           const QString &place,
                           int depth)
{
    if (depth > SceneFile::MaximumDepth)
        return fail(place, depthProblem());
    if (!value.isObject())
        return fail(place, QStringLiteral("expected an object, found %1").arg(found(value)));
    const QJsonObject object = value.toObject();

    const QJsonValue typeValue = object.value(key::type);
    const QString type = typeValue.toString();
    if (typeValue.isUndefined())
        return fail(field(place, key::type), QStringLiteral("required field is missing"));
    if (type != key::group && type != key::shape && type != key::light)
        return fail(field(place, key::type),
                    QStringLiteral("expected \"group\", \"shape\" or \"light\", found %1")
                        .arg(found(typeValue)));
    const bool isShape = type == key::shape;
    const bool isLight = type == key::light;
    if (!onlyKnownKeys(object,
                       place,
                       s_nodeKeys,
                       isShape   ? s_shapeKeys
                       : isLight ? s_lightKeys
                                 : std::initializer_list<QLatin1String>{},
                       type))
        return false;

    const QJsonValue nameValue = object.value(key::name);
    if (!nameValue.isUndefined() && !nameValue.isString())
        return fail(field(place, key::name),
                    QStringLiteral("expected a string, found %1").arg(found(nameValue)));
    const QString name = nameValue.toString();
    const QString nameProblem = SceneFile::textProblem(name, SceneFile::MaximumNameLength);
    if (!nameProblem.isEmpty())
        return fail(field(place, key::name), QStringLiteral("the name %1").arg(nameProblem));
    bool visible = true;
    Vector3 position;
    Vector3 rotation;
    Vector3 scale(1.f, 1.f, 1.f);
    if (!optional(object, place, key::visible, &visible)
        || !optional(object, place, key::position, &position, SceneFile::MaximumPosition)
        || !optional(object, place, key::rotation, &rotation, SceneFile::MaximumRotation)
        || !optional(object, place, key::scale, &scale, SceneFile::MaximumScale))
        return false;

    SceneNode *node = nullptr;
    if (isShape) {
        const QJsonValue generatorValue = object.value(key::generator);
        if (generatorValue.isUndefined())
            return fail(field(place, key::generator), QStringLiteral("required field is missing"));
        if (!generatorValue.isString())
            return fail(field(place, key::generator),
                        QStringLiteral("expected a string, found %1").arg(found(generatorValue)));
        std::unique_ptr<ShapeGenerator> generator
            = createGenerator(generatorValue.toString().toUtf8());
        if (!generator)
            return fail(field(place, key::generator),
                        QStringLiteral("unknown generator %1").arg(found(generatorValue)));
        if (!readParams(object.value(key::params), generator.get(), field(place, key::params)))
            return false;
        node = parent->createChildMesh(std::move(generator), name);
    } else if (isLight) {
        auto *light = static_cast<LightNode *>(parent->CreateChildLight(name));
        float intensity = light->GetIntensity();
        float shadowBlur = light->GetShadowBlur();
        bool castShadows = light->GetCastShadows();
        int lightMode = light->GetLightMode();
        if (!optional(object, place, key::intensity, &intensity, SceneFile::MaximumOther)
            || !optional(object, place, key::shadowBlur, &shadowBlur, SceneFile::MaximumOther)
            || !optional(object, place, key::castShadows, &castShadows)
            || !mode(object, place, key::lightMode, &lightMode))
            return false;
        light->applyIntensity(intensity);
        light->applyShadowBlur(shadowBlur);
        light->applyCastShadows(castShadows);
        light->applyLightMode(lightMode);
        node = light;
    } else {
        node = static_cast<SceneNode *>(parent->CreateChildGroup(name));
    }
    node->applyVisible(visible);
    node->applyPosition(position);
    node->applyRotation(rotation);
    node->applyScale(scale);

    const QJsonValue children = object.value(key::children);
    if (children.isUndefined())
        return true;
    if (!children.isArray())
        return fail(field(place, key::children),
                    QStringLiteral("expected an array, found %1").arg(found(children)));
    const QJsonArray childArray = children.toArray();
    for (int i = 0; i < childArray.size(); ++i) {
        if (!readNode(childArray.at(i), node, childPlace(place, i), depth + 1))
            return false;
    }
    return true;
}

bool SceneReader::readParams(const QJsonValue &value,
                             ShapeGenerator *generator,
                             const QString &place)
{
    if (value.isUndefined())
        return true;
    if (!value.isObject())
        return fail(place, QStringLiteral("expected an object, found %1").arg(found(value)));
    const QJsonObject params = value.toObject();
    const QStringList names = generator->parameterNames();
    const QString typeId = QString::fromLatin1(generator->GetTypeId());
    auto *model = qobject_cast<ExternalModelGenerator *>(generator);
    if (model)
        model->setBaseDirectory(m_modelDirectory);
    for (auto it = params.constBegin(); it != params.constEnd(); ++it) {
        if (!names.contains(it.key()))
            return fail(place,
                        QStringLiteral("%1 has no parameter %2").arg(typeId, quoted(it.key())));
        const QString here = place + QLatin1Char('.') + it.key();
        const QMetaObject *meta = generator->metaObject();
        const QMetaProperty property = meta->property(meta->indexOfProperty(qPrintable(it.key())));
        const QJsonValue given = it.value();
        QVariant wanted;
        double d = 0.0;
        int i = 0;
        bool b = false;
        switch (property.userType()) {
        case QMetaType::Float:
            if (!parse(given, here, &d, SceneFile::MaximumOther))
                return false;
            wanted = QVariant(float(d));
            break;
        case QMetaType::Double:
            if (!parse(given, here, &d, SceneFile::MaximumOther))
                return false;
            wanted = QVariant(d);
            break;
        case QMetaType::Int:
            if (!parse(given, here, &i))
                return false;
            wanted = QVariant(i);
            break;
        case QMetaType::Bool:
            if (!parse(given, here, &b))
                return false;
            wanted = QVariant(b);
            break;
        case QMetaType::QString:
            if (!given.isString())
                return fail(here, QStringLiteral("expected a string, found %1").arg(found(given)));
            if (const QString problem
                = SceneFile::textProblem(given.toString(), SceneFile::MaximumTextLength);
                !problem.isEmpty())
                return fail(here, QStringLiteral("the text %1").arg(problem));
            wanted = QVariant(given.toString());
            break;
        default:
            return fail(here, QStringLiteral("a parameter of this type cannot be read"));
        }
        if (model && m_modelDirectory.isNull())
            continue; // a save's check: the path was read and its type is right
        // The WRITE accessor limits the value; one it changes is outside what the shape takes.
        // A few values are refused outright, with their own reason (a model file that cannot
        // be read).
        property.write(generator, wanted);
        if (!generator->refusal().isEmpty())
            return fail(here, generator->refusal());
        const QVariant taken = property.read(generator);
        if (taken != wanted) {
            const QString takenText = taken.userType() == QMetaType::Float
                                          ? floatText(taken.toFloat())
                                          : found(QJsonValue::fromVariant(taken));
            return fail(here,
                        QStringLiteral("%1 does not take %2 (it would use %3)")
                            .arg(typeId, found(given), takenText));
        }
    }
    return true;
}

bool SceneReader::readSelection(const QJsonValue &value, Document *document)
{
    if (value.isUndefined())
        return true;
    if (!value.isArray())
        return fail(key::selection,
                    QStringLiteral("expected an array, found %1").arg(found(value)));
    const QJsonArray paths = value.toArray();
    std::vector<INode *> selection;
    std::unordered_set<INode *> seen;
    for (int i = 0; i < paths.size(); ++i) {
        const QString here = QStringLiteral("selection[%1]").arg(i);
        const QString path = paths.at(i).toString();
        static const QRegularExpression s_pathPattern(QStringLiteral("^[0-9]{1,9}(/[0-9]{1,9})*$"));
        if (!paths.at(i).isString() || !s_pathPattern.match(path).hasMatch())
            return fail(here,
                        QStringLiteral("expected a node path such as \"0/2\", found %1")
                            .arg(found(paths.at(i))));
        BaseNode *node = document->root();
        for (const QStringRef &step : path.splitRef(QLatin1Char('/'))) {
            const std::size_t index = step.toUInt();
            node = node && index < node->GetChildren().size() ? node->childNode(index) : nullptr;
        }
        if (!node)
            return fail(here, QStringLiteral("no node at \"%1\"").arg(path));
        if (!seen.insert(node).second)
            return fail(here, QStringLiteral("\"%1\" is listed twice").arg(path));
        selection.push_back(node);
    }
    document->SetSelection(selection, Document::ReplaceSelection);
    return true;
}

} // namespace vantrel::host
