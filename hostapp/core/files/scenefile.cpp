// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/files/scenefile.h"

#include "hostapp/core/document/document.h"
#include "hostapp/core/files/filechecks.h"
#include "hostapp/core/files/jsontext.h"
#include "hostapp/core/files/scenereader.h"
#include "hostapp/core/files/scenewriter.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace vantrel::host {

std::unique_ptr<Document> SceneFile::load(const QString &path, QString *errorMessage)
{
    QFile file(path);
    QByteArray json;
    // Only a regular file: opening a FIFO would wait for a writer for ever.
    QString problem;
    if (!openRegularFile(file, path, &problem)) {
        // problem says why
    } else if (file.size() > MaximumFileSize) {
        problem = SceneReader::sizeProblem(file.size()); // refused before a byte is read
    } else {
        // In pieces, up to one byte past the limit: a device may hold more than its size says,
        // and read(MaximumFileSize + 1) would reserve the whole limit for every file.
        QByteArray piece;
        do {
            piece = file.read(qMin<qint64>(1 << 20, MaximumFileSize + 1 - json.size()));
            json += piece;
        } while (!piece.isEmpty() && json.size() <= MaximumFileSize);
        if (file.error() != QFileDevice::NoError)
            problem = QStringLiteral("cannot read the file: %1").arg(file.errorString());
    }
    if (problem.isEmpty())
        return fromJson(json, path, errorMessage);
    if (errorMessage)
        *errorMessage = QStringLiteral("%1: %2").arg(path, problem);
    return nullptr;
}

std::unique_ptr<Document>
SceneFile::fromJson(const QByteArray &json, const QString &fileName, QString *errorMessage)
{
    SceneReader reader(QFileInfo(fileName).absolutePath());
    std::unique_ptr<Document> document = reader.read(json);
    if (!document && errorMessage)
        *errorMessage = reader.refusal().message(fileName);
    return document;
}

bool SceneFile::save(const QString &path, const Document &document, QString *errorMessage)
{
    const QString prefix = QStringLiteral("Cannot save %1").arg(path);
    auto refuse = [&](const SceneReader::Refusal &refusal) {
        if (errorMessage)
            *errorMessage = refusal.message(prefix);
        return false;
    };
    const QString targetProblem = outputFileProblem(path);
    if (!targetProblem.isEmpty())
        return refuse({QString(), targetProblem});
    // A file that would not open again is worse than no save: the previous file stays, and the
    // message names the node to fix.
    const SceneReader::Refusal limits = SceneWriter::check(document);
    if (!limits.problem.isEmpty())
        return refuse(limits);

    // Written as it is made: memory for a buffer, not for the whole text.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return refuse({QString(), file.errorString()});
    JsonText out(&file);
    SceneWriter::write(document, out);
    if (!out.flush()) {
        file.cancelWriting(); // the previous file is untouched
        return refuse({QString(), out.errorString()});
    }
    QString problem;
    if (!commitFile(file, &problem))
        return refuse({QString(), problem});
    return true;
}

QString SceneFile::textProblem(const QString &text, int limit)
{
    if (text.size() > limit)
        return QStringLiteral("is %1 characters long; the limit is %2").arg(text.size()).arg(limit);
    for (const QChar c : text) {
        if (c.unicode() < 0x20 || c.unicode() == 0x7f)
            return QStringLiteral("holds a control character (code %1)").arg(c.unicode());
    }
    return QString();
}

QByteArray SceneFile::toJson(const Document &document)
{
    return SceneWriter::write(document);
}

} // namespace vantrel::host
