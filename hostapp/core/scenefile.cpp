// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scenefile.h"

#include "hostapp/core/document.h"
#include "hostapp/core/scenereader.h"
#include "hostapp/core/scenewriter.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace vantrel::host {

namespace {

// QFile reports a short write (the disk filled up half-way) without a reason; writing the rest
// then fails at once with the system's reason, such as "No space left on device".
bool writeAll(QSaveFile *file, const QByteArray &bytes)
{
    qint64 written = 0;
    while (written < bytes.size()) {
        const qint64 count = file->write(bytes.constData() + written, bytes.size() - written);
        if (count <= 0)
            return false;
        written += count;
    }
    return true;
}

} // namespace

std::unique_ptr<Document> SceneFile::load(const QString &path, QString *errorMessage)
{
    QFile file(path);
    QByteArray json;
    QString problem;
    if (!file.open(QIODevice::ReadOnly)) {
        problem = QStringLiteral("cannot read the file: %1").arg(file.errorString());
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
    // Checked before the JSON is built: the file's nesting limit also bounds the writer's
    // recursion.
    const QString deepPlace = SceneWriter::tooDeepPlace(document);
    if (!deepPlace.isEmpty())
        return refuse({deepPlace, SceneReader::depthProblem()});
    // A file that would not open again is worse than no save: the previous file stays, and the
    // message names the node to fix.
    const QByteArray bytes = toJson(document);
    SceneReader reader; // checks the file's own contents, not the model files it names
    if (!reader.read(bytes))
        return refuse(reader.refusal());

    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !writeAll(&file, bytes) || !file.commit())
        return refuse({QString(), file.errorString()}); // the previous file is untouched
    return true;
}

QByteArray SceneFile::toJson(const Document &document)
{
    return SceneWriter::write(document);
}

} // namespace vantrel::host
