// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// The nodes of a scene file: one node object (group, shape or light) with its placement and
// children, each checked field by field and built under its parent. SceneReader reads the rest
// of the file and hands every top-level node here.

#include "host/types.h"
#include "hostapp/core/scene/artworkimage.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QString>

namespace vantrel::host {

class BaseNode;
class JsonFieldChecker;
class SceneNode;
class ShapeGenerator;

class SceneNodeReader
{
public:
    // Problems are recorded in check. modelDirectory as for SceneReader (for artwork too).
    SceneNodeReader(JsonFieldChecker &check, const QString &modelDirectory)
        : m_check(check)
        , m_modelDirectory(modelDirectory)
    {}

    // Reads the node at place (depth 1 for a child of the root) and its children, building them
    // under parent. False after recording the first problem.
    bool readNode(const QJsonValue &value, BaseNode *parent, const QString &place, int depth);

private:
    // The fields every node has.
    struct Common
    {
        QString type;
        QString name;
        bool visible = true;
        Vector3 position;
        Vector3 rotation;
        Vector3 scale{1.f, 1.f, 1.f};
    };

    bool readCommon(const QJsonObject &object, const QString &place, Common *common);
    bool readType(const QJsonObject &object, const QString &place, QString *type);
    // The new node, or null after recording why there is none.
    SceneNode *readShape(const QJsonObject &object,
                         BaseNode *parent,
                         const QString &place,
                         const QString &name);
    SceneNode *readLight(const QJsonObject &object,
                         BaseNode *parent,
                         const QString &place,
                         const QString &name);
    // The optional artwork path and, unless this is a save's check, its image; false after
    // recording why the path or the image is refused.
    bool readArtwork(const QJsonObject &object,
                     const QString &place,
                     QString *path,
                     ArtworkImagePtr *image);
    bool readChildren(const QJsonObject &object, SceneNode *node, const QString &place, int depth);
    bool readParams(const QJsonValue &value, ShapeGenerator *generator, const QString &place);
    // One parameter's value, by the type of its property; false after recording why not.
    bool readParam(const QJsonValue &given, int type, const QString &here, QVariant *wanted);
    // Writes wanted through the property's WRITE accessor; false when the shape refuses it or
    // would take another value.
    bool applyParam(ShapeGenerator *generator,
                    const char *name,
                    const QJsonValue &given,
                    const QVariant &wanted,
                    const QString &here);

    JsonFieldChecker &m_check;
    QString m_modelDirectory;
};

} // namespace vantrel::host
