// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/desktop/desktopexport.h"

#include <QByteArray>
#include <QSet>
#include <QString>

#include <vector>

namespace vantrel::host {

class Document;

// What the Add menu calls each shape the host can build, grouped as users think of them.
struct ShapeName
{
    const char *generatorId;
    const char *name;  // "Hard Cover Book"
    const char *group; // the Add menu's submenu: "Books"
};

// Every parameter-built shape, in menu order (the model file shape is Import Model...).
VANTREL_DESKTOP_EXPORT const std::vector<ShapeName> &shapeNames();

// The human name of a generator, or the identifier itself for one not in the table.
VANTREL_DESKTOP_EXPORT QString shapeName(const QByteArray &generatorId);

// Names for new nodes that no node of the scene has yet: the name itself when it is free,
// otherwise numbered with the first free number from 2 ("Hard Cover Book 2"). A number the name
// already ends in is replaced, so that a copy of "Box 2" becomes "Box 3", not "Box 2 2". The
// scene's names are read once, so that naming thousands of copies stays cheap.
class VANTREL_DESKTOP_EXPORT UniqueNames
{
public:
    explicit UniqueNames(const Document &document);
    // A free name, from then on taken.
    QString take(const QString &name);

private:
    QSet<QString> m_taken;
};

} // namespace vantrel::host
