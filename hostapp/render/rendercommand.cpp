// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/render/rendercommand.h"

#include "hostapp/core/commands/demo.h"
#include "hostapp/core/commands/session.h"
#include "hostapp/core/files/filechecks.h"
#include "hostapp/render/renderer.h"

#include <QDir>
#include <QFileInfo>
#include <QImageWriter>
#include <QRegularExpression>
#include <QSaveFile>
#include <QTextStream>

namespace vantrel::render {

namespace {

int failed(QTextStream &err, const QString &message)
{
    err << "vantrel: " << message << '\n';
    err.flush();
    return 1;
}

// "Put On The Floor" -> "put-on-the-floor"
QString fileNamePart(const QString &step)
{
    static const QRegularExpression others(QStringLiteral("[^a-z0-9]+"));
    QString part = step.toLower().replace(others, QStringLiteral("-"));
    while (part.startsWith(QLatin1Char('-')))
        part.remove(0, 1);
    while (part.endsWith(QLatin1Char('-')))
        part.chop(1);
    return part;
}

} // namespace

const char *pictureFormat(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == QLatin1String("png"))
        return "png";
    if (suffix == QLatin1String("jpg") || suffix == QLatin1String("jpeg"))
        return "jpg";
    return nullptr;
}

bool writePicture(const QImage &picture, const QString &path, QString *errorMessage)
{
    auto refuse = [&](const QString &problem) {
        *errorMessage = QStringLiteral("cannot write %1: %2").arg(path, problem);
        return false; // the temporary file goes; the previous file stays
    };
    const char *format = pictureFormat(path);
    if (!format)
        return refuse(QStringLiteral("the name must end in .png, .jpg or .jpeg"));
    QString problem = host::outputFileProblem(path);
    if (!problem.isEmpty())
        return refuse(problem);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return refuse(file.errorString());
    QImageWriter writer(&file, format);
    if (qstrcmp(format, "jpg") == 0)
        writer.setQuality(95);
    if (!writer.write(picture)) {
        // A failed write of the file itself says more than the image writer's "Device error".
        return refuse(file.error() != QFileDevice::NoError ? file.errorString()
                                                           : writer.errorString());
    }
    if (!host::commitFile(file, &problem))
        return refuse(problem);
    return true;
}

int renderCommand(const RenderCommandOptions &options, QTextStream &out, QTextStream &err)
{
    // Before anything slow: a picture that could not be written would waste the whole run.
    const QString problem = host::outputFileProblem(options.outPath);
    if (!problem.isEmpty())
        return failed(err, QStringLiteral("cannot write %1: %2").arg(options.outPath, problem));
    Renderer renderer;
    QString error;
    if (!renderer.initialize(&error))
        return failed(err, error);
    return host::runScripts(options.run, out, err, [&](host::Session &session) {
        RenderOptions look;
        look.width = options.width;
        QString message;
        const QImage picture = renderer.render(session.document(), look, &message);
        if (picture.isNull())
            return failed(err, message);
        if (!writePicture(picture, options.outPath, &message))
            return failed(err, message);
        out << "wrote " << options.outPath << " (" << picture.width() << " x " << picture.height()
            << " pixels)\n";
        out.flush();
        return 0;
    });
}

int demoWithPictures(const QString &pluginPath,
                     const QString &savePath,
                     const QString &picturesFolder,
                     int width,
                     QTextStream &out,
                     QTextStream &err)
{
    Renderer renderer;
    QString error;
    if (!renderer.initialize(&error))
        return failed(err, error);
    if (!QDir().mkpath(picturesFolder))
        return failed(err, QStringLiteral("cannot create the folder %1").arg(picturesFolder));
    int number = 0;
    auto picture = [&](const QString &step, host::Document &document) {
        RenderOptions look;
        look.width = width;
        const QString path = QDir(picturesFolder)
                                 .filePath(QStringLiteral("%1-%2.png")
                                               .arg(++number, 2, 10, QLatin1Char('0'))
                                               .arg(fileNamePart(step)));
        QString message;
        const QImage image = renderer.render(document, look, &message);
        if (image.isNull() || !writePicture(image, path, &message)) {
            failed(err, message);
            return false;
        }
        out << "  picture: " << path << '\n';
        out.flush();
        return true;
    };
    return host::runDemo(pluginPath, savePath, out, err, picture);
}

} // namespace vantrel::render
