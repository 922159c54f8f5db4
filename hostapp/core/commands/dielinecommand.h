// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// vantrel dieline: the artwork sheet of one shape, drawn as an SVG a designer draws the artwork
// on. Every face is one closed outline named after the face, at real size in centimetres.

#include "host/hostexport.h"
#include "hostapp/core/scene/artworksheet.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTextStream>

namespace vantrel::host {

// The sheet of the generator at the parameters (a JSON object of parameter name to value, or an
// empty text for the defaults), the parameters checked exactly as a scene file's are. False
// with *error set when the generator is unknown, has no sheet, or a parameter is refused.
VANTREL_HOST_EXPORT bool dielineSheet(const QString &generatorId,
                                      const QString &paramsJson,
                                      ArtworkSheet *sheet,
                                      QString *error);

// The SVG document of the sheet: the page is the sheet in centimetres, each face a closed path
// (stroke only) with the face's name as id (spaces as hyphens) and title, and a label.
VANTREL_HOST_EXPORT QByteArray dielineSvg(const ArtworkSheet &sheet, const QString &title);

// `vantrel dieline GENERATOR [--params JSON] --out FILE.svg`; arguments start with "dieline".
// Writes the file atomically. Returns the exit status: 0, or 1 after a message on err.
VANTREL_HOST_EXPORT int
dielineCommand(const QStringList &arguments, QTextStream &out, QTextStream &err);

} // namespace vantrel::host
