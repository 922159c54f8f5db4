// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/core/commands/runcommand.h"
#include "hostapp/render/renderexport.h"

class QImage;
class QTextStream;

namespace vantrel::render {

struct RenderCommandOptions
{
    host::RunOptions run; // the scene and the scripts, as `vantrel run` takes them (no save)
    QString outPath;      // the picture to write: .png, .jpg or .jpeg (checked by the caller)
    int width = 0;        // pixels, MinimumPictureWidth..MaximumPictureSide (checked by the caller)
};

// `vantrel render`: checks that the picture can be written where asked, then makes the OpenGL
// context (so that a machine without one fails before any script runs), runs the scripts as
// `vantrel run` does, then draws the document as its camera sees it and writes the picture. Returns
// the exit status: 0, or 1 when there is no OpenGL, the scene or a script fails, or the picture
// cannot be written (the message names the file).
VANTREL_RENDER_EXPORT int
renderCommand(const RenderCommandOptions &options, QTextStream &out, QTextStream &err);

// `vantrel demo --pictures DIR`: the demo, with a picture of the scene written into the folder
// (created when missing) after the sample scene is built and after each tool step, named
// 01-sample-scene.png, 02-put-on-the-floor.png, ... Returns the exit status as runDemo does, and
// 1 when there is no OpenGL or a picture cannot be written.
VANTREL_RENDER_EXPORT int demoWithPictures(const QString &pluginPath,
                                           const QString &savePath,
                                           const QString &picturesFolder,
                                           int width,
                                           QTextStream &out,
                                           QTextStream &err);

// The picture format for a file name, by its suffix in any letter case: "png" for .png, "jpg" for
// .jpg and .jpeg; null for any other name.
VANTREL_RENDER_EXPORT const char *pictureFormat(const QString &path);

// Writes the picture in the format its suffix names (see pictureFormat()). The file is replaced
// only once the whole picture is written; otherwise it is left as it was and the message names
// the file and the reason.
VANTREL_RENDER_EXPORT bool
writePicture(const QImage &picture, const QString &path, QString *errorMessage);

} // namespace vantrel::render
