// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/desktop/desktopexport.h"

#include <QByteArray>
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

// name when no node of the document's scene is called so, otherwise the name numbered with the
// first free number from 2 ("Hard Cover Book 2"). A number the name already ends in is replaced,
// so that a copy of "Box 2" becomes "Box 3", not "Box 2 2".
VANTREL_DESKTOP_EXPORT QString uniqueNodeName(const Document &document, const QString &name);

} // namespace vantrel::host
