// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/types.h"
#include "hostapp/core/files/jsonfieldchecker.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QLatin1String>
#include <QString>

#include <memory>

namespace vantrel::host {

class BaseNode;
class Camera;
class Document;

// Every name the scene format uses, typed once for SceneReader and SceneWriter.
namespace scenekey {
inline const QLatin1String format("format"), version("version"), ambient("ambient"),
    lightingMode("lightingMode"), camera("camera"), selection("selection"), root("root");
inline const QLatin1String target("target"), distance("distance"), yaw("yaw"), pitch("pitch"),
    fieldOfView("fieldOfView"), aspectRatio("aspectRatio");
inline const QLatin1String name("name"), type("type"), visible("visible"), position("position"),
    rotation("rotation"), scale("scale"), children("children");
inline const QLatin1String generator("generator"), params("params"), artwork("artwork");
inline const QLatin1String intensity("intensity"), shadowBlur("shadowBlur"),
    castShadows("castShadows"), lightMode("lightMode");
// The values of the type field.
inline const QLatin1String group("group"), shape("shape"), light("light");
} // namespace scenekey

// Reads the contents of one scene file (SceneFile describes the format and the limits) into a
// new document: parses the JSON, checks every field and builds the scene. Each read* function
// returns false after recording the first problem; the document is then dropped, so partial
// results never escape. The nodes are SceneNodeReader's, the generic field checks
// JsonFieldChecker's.
class SceneReader
{
public:
    // Why a scene was refused.
    using Refusal = JsonRefusal;

    // modelDirectory is the folder that relative model and artwork paths in the file start
    // from: the folder of the scene file. A null one reads no model or image file and leaves
    // the paths unchecked, for a save checking that its output opens again: a file that went
    // missing since it was loaded must not stop the scene from being saved.
    explicit SceneReader(const QString &modelDirectory = QString());

    // A new document (no undo steps) with the scene of json, or null with refusal() set.
    std::unique_ptr<Document> read(const QByteArray &json);
    const Refusal &refusal() const { return m_check.refusal(); }

    // The problems and places that SceneFile also states when it refuses to read or to save.
    static QString sizeProblem(qint64 size);
    static QString depthProblem();
    static QString rangeProblem(double value, double limit);
    static QString childPlace(const QString &parentPlace, int index);

    // The lighting mode of the scene and the mode of a light, optional: 0 or 1.
    static bool readMode(JsonFieldChecker &check,
                         const QJsonObject &object,
                         const QString &place,
                         QLatin1String name,
                         int *result);

private:
    bool readScene(const QJsonObject &top, Document *document);
    bool readHeader(const QJsonObject &top);
    bool readRoot(const QJsonObject &top, QJsonArray *children);
    bool readCamera(const QJsonValue &value, Camera *camera);
    bool readSelection(const QJsonValue &value, Document *document);

    QString m_modelDirectory;
    JsonFieldChecker m_check;
};

} // namespace vantrel::host
