// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/types.h"

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QLatin1String>
#include <QString>

#include <initializer_list>
#include <memory>

namespace vantrel::host {

class BaseNode;
class Camera;
class Document;
class ShapeGenerator;

// Every name the scene format uses, typed once for SceneReader and SceneWriter.
namespace scenekey {
inline constexpr QLatin1String format("format"), version("version"), ambient("ambient"),
    lightingMode("lightingMode"), camera("camera"), selection("selection"), root("root");
inline constexpr QLatin1String target("target"), distance("distance"), yaw("yaw"), pitch("pitch"),
    fieldOfView("fieldOfView"), aspectRatio("aspectRatio");
inline constexpr QLatin1String name("name"), type("type"), visible("visible"), position("position"),
    rotation("rotation"), scale("scale"), children("children");
inline constexpr QLatin1String generator("generator"), params("params");
inline constexpr QLatin1String intensity("intensity"), shadowBlur("shadowBlur"),
    castShadows("castShadows"), lightMode("lightMode");
// The values of the type field.
inline constexpr QLatin1String group("group"), shape("shape"), light("light");
} // namespace scenekey

// Reads the contents of one scene file (SceneFile describes the format and the limits) into a
// new document: parses the JSON, checks every field and builds the scene. Each read* function
// returns false after recording the first problem; the document is then dropped, so partial
// results never escape.
class SceneReader
{
public:
    // Why a scene was refused: the place (a path to the field, or line:column for JSON syntax)
    // and the problem.
    struct Refusal
    {
        QString place;
        QString problem;
        bool syntax = false;

        // "<prefix>:14:9: problem", "<prefix>: place: problem" or "<prefix>: problem".
        QString message(const QString &prefix) const;
    };

    // modelDirectory is the folder that relative model paths in the file start from: the
    // folder of the scene file. A null one reads no model file and leaves the paths unchecked,
    // for a save checking that its output opens again: a model that went missing since it was
    // loaded must not stop the scene from being saved.
    explicit SceneReader(const QString &modelDirectory = QString())
        : m_modelDirectory(modelDirectory)
    {}

    // A new document (no undo steps) with the scene of json, or null with refusal() set.
    std::unique_ptr<Document> read(const QByteArray &json);
    const Refusal &refusal() const { return m_refusal; }

    // The problems and places that SceneFile also states when it refuses to read or to save.
    static QString sizeProblem(qint64 size);
    static QString depthProblem();
    static QString rangeProblem(double value, double limit);
    static QString childPlace(const QString &parentPlace, int index);

private:
    bool fail(const QString &place, const QString &problem)
    {
        m_refusal = {place, problem};
        return false;
    }
    bool onlyKnownKeys(const QJsonObject &object,
                       const QString &place,
                       std::initializer_list<QLatin1String> keys,
                       std::initializer_list<QLatin1String> extraKeys = {},
                       const QString &kind = QString());

    // One value at its place, by the type of the result: a number within -limit..limit, an
    // integer within -MaximumOther..MaximumOther, true or false, or 3 numbers within
    // -limit..limit. False after recording why the value is refused.
    bool parse(const QJsonValue &value, const QString &place, double *result, double limit);
    bool parse(const QJsonValue &value, const QString &place, float *result, double limit);
    bool parse(const QJsonValue &value, const QString &place, int *result);
    bool parse(const QJsonValue &value, const QString &place, bool *result);
    bool parse(const QJsonValue &value, const QString &place, Vector3 *result, double limit);
    // An optional field of object, read by parse(); an absent field leaves *result as it was.
    template<typename T, typename... Limit>
    bool optional(const QJsonObject &object,
                  const QString &place,
                  QLatin1String name,
                  T *result,
                  Limit... limit);
    bool mode(const QJsonObject &object, const QString &place, QLatin1String name, int *result);

    bool readScene(const QJsonObject &top, Document *document);
    bool readCamera(const QJsonValue &value, Camera *camera);
    bool readNode(const QJsonValue &value, BaseNode *parent, const QString &place, int depth);
    bool readParams(const QJsonValue &value, ShapeGenerator *generator, const QString &place);
    bool readSelection(const QJsonValue &value, Document *document);

    QString m_modelDirectory;
    Refusal m_refusal;
};

} // namespace vantrel::host
