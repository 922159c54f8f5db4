// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/commands/dielinecommand.h"

#include "hostapp/core/document/document.h"
#include "hostapp/core/files/scenefile.h"
#include "hostapp/core/scene/generatorregistry.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/core/scene/scenenode.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QXmlStreamWriter>

#include <algorithm>
#include <memory>

namespace vantrel::host {

namespace {

const QString s_paramsName = QStringLiteral("--params");

// Centimetres in SVG user units: a tenth of a micrometre is below any printer's step.
QString number(qreal value)
{
    return QString::number(value, 'f', 4).remove(QRegExp(QStringLiteral("\\.?0+$")));
}

QString pathData(const QVector<QPolygonF> &loops)
{
    QStringList data;
    for (const QPolygonF &loop : loops) {
        // The loops are closed (last point = first): Z draws the last side.
        for (int i = 0; i + 1 < loop.size(); ++i)
            data << QStringLiteral("%1%2 %3")
                        .arg(i == 0 ? QLatin1Char('M') : QLatin1Char('L'))
                        .arg(number(loop[i].x()), number(loop[i].y()));
        data << QStringLiteral("Z");
    }
    return data.join(QLatin1Char(' '));
}

// The parameters go through the scene reader, inside a one-shape scene, so that they meet the
// very checks and messages a scene file's do; the message's place is given as --params.
bool readShape(const QString &generatorId,
               const QJsonObject &params,
               ArtworkSheet *sheet,
               QString *error)
{
    QJsonObject shape{{QStringLiteral("type"), QStringLiteral("shape")},
                      {QStringLiteral("name"), QStringLiteral("Dieline")},
                      {QStringLiteral("generator"), generatorId},
                      {QStringLiteral("params"), params}};
    const QJsonObject scene{
        {QStringLiteral("format"), QString::fromLatin1(SceneFile::FormatName)},
        {QStringLiteral("version"), SceneFile::CurrentVersion},
        {QStringLiteral("root"), QJsonObject{{QStringLiteral("children"), QJsonArray{shape}}}}};
    QString message;
    const std::unique_ptr<Document> document = SceneFile::fromJson(
        QJsonDocument(scene).toJson(QJsonDocument::Compact), s_paramsName, &message);
    if (!document) {
        // "--params:1:123: root.children[0].params.width: ..." reads "--params.width: ...".
        const QString place = QStringLiteral("root.children[0].params");
        const int at = message.indexOf(place);
        *error = at < 0 ? message : s_paramsName + message.mid(at + place.size());
        return false;
    }
    const RootNode *root = document->root();
    const auto *mesh
        = root->GetChildren().empty() ? nullptr : qobject_cast<MeshNode *>(root->childNode(0));
    if (!mesh) {
        *error = QStringLiteral("%1: no shape was made").arg(generatorId);
        return false;
    }
    *sheet = mesh->generator()->artworkSheet();
    return true;
}

} // namespace

bool dielineSheet(const QString &generatorId,
                  const QString &paramsJson,
                  ArtworkSheet *sheet,
                  QString *error)
{
    const std::unique_ptr<ShapeGenerator> generator = createGenerator(generatorId.toLatin1());
    if (!generator) {
        *error = QStringLiteral("unknown generator \"%1\"; the generators are: %2")
                     .arg(generatorId, QString::fromLatin1(generatorIdentifiers().join(", ")));
        return false;
    }
    // Known before any parameter is read, so that no model file is opened for nothing.
    if (generator->artworkSheet().isEmpty()) {
        *error = QStringLiteral("%1: models read from files carry their own texture "
                                "coordinates; there is no artwork sheet")
                     .arg(generatorId);
        return false;
    }
    QJsonObject params;
    if (!paramsJson.isNull()) {
        QJsonParseError parseError;
        const QJsonDocument json = QJsonDocument::fromJson(paramsJson.toUtf8(), &parseError);
        if (parseError.error != QJsonParseError::NoError) {
            *error = QStringLiteral("%1: not JSON: %2 at character %3")
                         .arg(s_paramsName, parseError.errorString())
                         .arg(parseError.offset + 1);
            return false;
        }
        if (!json.isObject()) {
            *error = QStringLiteral("%1: expected an object of parameter names and values")
                         .arg(s_paramsName);
            return false;
        }
        params = json.object();
    }
    return readShape(generatorId, params, sheet, error);
}

QByteArray dielineSvg(const ArtworkSheet &sheet, const QString &title)
{
    QByteArray svg;
    QXmlStreamWriter xml(&svg);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("svg"));
    xml.writeDefaultNamespace(QStringLiteral("http://www.w3.org/2000/svg"));
    const QString width = number(sheet.width()), height = number(sheet.height());
    xml.writeAttribute(QStringLiteral("width"), width + QStringLiteral("cm"));
    xml.writeAttribute(QStringLiteral("height"), height + QStringLiteral("cm"));
    // One user unit is a centimetre, the scene's unit, so the outlines keep the mesh's numbers.
    xml.writeAttribute(QStringLiteral("viewBox"), QStringLiteral("0 0 %1 %2").arg(width, height));
    xml.writeTextElement(QStringLiteral("title"), title);
    xml.writeStartElement(QStringLiteral("g"));
    xml.writeAttribute(QStringLiteral("fill"), QStringLiteral("none"));
    xml.writeAttribute(QStringLiteral("stroke"), QStringLiteral("#000000"));
    xml.writeAttribute(QStringLiteral("stroke-width"), QStringLiteral("0.02"));
    for (const ArtworkSheet::Face &face : sheet.faces()) {
        xml.writeStartElement(QStringLiteral("path"));
        xml.writeAttribute(QStringLiteral("id"), QString(face.name).replace(QLatin1Char(' '), '-'));
        xml.writeAttribute(QStringLiteral("fill-rule"), QStringLiteral("evenodd"));
        xml.writeAttribute(QStringLiteral("d"), pathData(face.outline));
        xml.writeTextElement(QStringLiteral("title"), face.name);
        xml.writeEndElement();
    }
    xml.writeEndElement();
    // The labels: small enough for the narrowest strip (a spine, an edge) to hold its name.
    xml.writeStartElement(QStringLiteral("g"));
    xml.writeAttribute(QStringLiteral("fill"), QStringLiteral("#000000"));
    xml.writeAttribute(QStringLiteral("font-family"), QStringLiteral("sans-serif"));
    xml.writeAttribute(QStringLiteral("text-anchor"), QStringLiteral("middle"));
    for (const ArtworkSheet::Face &face : sheet.faces()) {
        const QRectF &r = face.region;
        const qreal size = std::clamp(std::min(r.width(), r.height()) / 3., 0.05, 0.6);
        xml.writeStartElement(QStringLiteral("text"));
        xml.writeAttribute(QStringLiteral("x"), number(r.center().x()));
        xml.writeAttribute(QStringLiteral("y"), number(r.center().y() + size / 3));
        xml.writeAttribute(QStringLiteral("font-size"), number(size));
        xml.writeCharacters(face.name);
        xml.writeEndElement();
    }
    xml.writeEndElement();
    xml.writeEndDocument();
    return svg;
}

int dielineCommand(const QStringList &arguments, QTextStream &out, QTextStream &err)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Write the artwork sheet of a shape as an SVG dieline: every face a closed outline\n"
        "named after it, at real size in centimetres. Without GENERATOR, list the generators."));
    parser.addHelpOption();
    const QCommandLineOption params(
        QStringLiteral("params"),
        QStringLiteral("The shape's parameters, a JSON object as in scene files."),
        QStringLiteral("json"));
    const QCommandLineOption outFile(
        QStringLiteral("out"), QStringLiteral("The SVG file to write."), QStringLiteral("file"));
    parser.addOptions({params, outFile});
    parser.addPositionalArgument(QStringLiteral("dieline"), QString(), QStringLiteral("dieline"));
    parser.addPositionalArgument(QStringLiteral("generator"),
                                 QStringLiteral("The generator identifier."));
    QStringList withProgram = arguments;
    withProgram.prepend(QStringLiteral("vantrel"));
    const auto fail = [&err](const QString &message) {
        err << "vantrel dieline: " << message << '\n';
        return 1;
    };
    if (!parser.parse(withProgram))
        return fail(parser.errorText());
    if (parser.isSet(QStringLiteral("help"))) {
        out << parser.helpText();
        return 0;
    }
    const QStringList positional = parser.positionalArguments();
    if (positional.size() < 2) {
        out << "Generators:\n";
        for (const QByteArray &id : generatorIdentifiers())
            out << "  " << id << '\n';
        return 0;
    }
    if (positional.size() > 2)
        return fail(QStringLiteral("one generator at a time, not \"%1\"")
                        .arg(positional.mid(1).join(QLatin1Char(' '))));
    if (parser.value(outFile).isEmpty())
        return fail(QStringLiteral("needs --out FILE.svg"));
    ArtworkSheet sheet;
    QString error;
    if (!dielineSheet(positional.at(1), parser.value(params), &sheet, &error))
        return fail(error);
    const QByteArray svg = dielineSvg(sheet, positional.at(1));
    const QString path = parser.value(outFile);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(svg) != svg.size() || !file.commit())
        return fail(QStringLiteral("Cannot save %1: %2").arg(path, file.errorString()));
    return 0;
}

} // namespace vantrel::host
