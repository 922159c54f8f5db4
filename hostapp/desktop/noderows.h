// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QVariant>
#include <QVariantMap>

namespace vantrel::host {

class BaseNode;

// What the properties panel shows and edits of one node, by row key: "name", "visible",
// "position.x" (and y, z; likewise "rotation.*" and "scale.*"), "param.<parameter>" for a
// shape's generator parameters, "artwork", and a light's "intensity", "shadowBlur" and
// "castShadows". SelectionProperties combines the nodes of a selection from these.
class NodeRows
{
public:
    // The node's panel rows (PropertiesListBuilder rows), groups included. A numeric row also
    // carries the values a user may type ("limitMin", "limitMax") and a text row the longest
    // text ("limitLength"); "caption" names the value in messages and step names.
    static QList<QVariantMap> of(const BaseNode *node);
    // The node's value for the row.
    static QVariant read(const BaseNode *node, const QString &key);
    // Why the value cannot go into the row (described by row, one of of()'s), or empty.
    static QString check(const QVariantMap &row, const QVariant &value);
    // Writes the value (already checked) into the node, recorded in its document; returns why
    // the node refused it (and then it kept its value), or empty.
    static QString write(BaseNode *node, const QString &key, const QVariant &value);
};

} // namespace vantrel::host
