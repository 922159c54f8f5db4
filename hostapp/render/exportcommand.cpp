// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/render/exportcommand.h"

#include "hostapp/core/commands/session.h"
#include "hostapp/core/files/filechecks.h"
#include "hostapp/render/gltfexporter.h"

#include <QFileInfo>
#include <QSaveFile>
#include <QTextStream>

namespace vantrel::render {

GltfForm gltfForm(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == QLatin1String("glb"))
        return GltfForm::Binary;
    if (suffix == QLatin1String("gltf"))
        return GltfForm::Text;
    return GltfForm::None;
}

bool writeGltf(const host::Document &document, const QString &path, QString *errorMessage)
{
    auto refuse = [&](const QString &problem) {
        *errorMessage = QStringLiteral("cannot write %1: %2").arg(path, problem);
        return false; // the temporary file goes; the previous file stays
    };
    const GltfForm form = gltfForm(path);
    if (form == GltfForm::None)
        return refuse(QStringLiteral("the name must end in .glb or .gltf"));
    QString problem = host::outputFileProblem(path);
    if (!problem.isEmpty())
        return refuse(problem);
    const GltfExporter exporter(document);
    const QByteArray bytes = form == GltfForm::Binary ? exporter.glb() : exporter.gltf();
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return refuse(file.errorString());
    if (file.write(bytes) != bytes.size())
        return refuse(file.errorString());
    if (!host::commitFile(file, &problem))
        return refuse(problem);
    return true;
}

int exportCommand(const ExportCommandOptions &options, QTextStream &out, QTextStream &err)
{
    auto failed = [&err](const QString &message) {
        err << "vantrel: " << message << '\n';
        err.flush();
        return 1;
    };
    // Before the scripts: a file that could not be written would waste the whole run.
    const QString problem = host::outputFileProblem(options.outPath);
    if (!problem.isEmpty())
        return failed(QStringLiteral("cannot write %1: %2").arg(options.outPath, problem));
    return host::runScripts(options.run, out, err, [&](host::Session &session) {
        QString message;
        if (!writeGltf(session.document(), options.outPath, &message))
            return failed(message);
        out << "wrote " << options.outPath << '\n';
        out.flush();
        return 0;
    });
}

} // namespace vantrel::render
