// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The dieline: the sheet drawn as SVG, and the parameters checked as a scene file's are.

#include "hostapp/core/commands/dielinecommand.h"
#include "hostapp/core/scene/generatorregistry.h"
#include "hostapp/core/scene/shapegenerator.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QXmlStreamReader>

using namespace vantrel::host;

namespace {

// Every closed subpath of an SVG path: the count of "M" and of "Z" must agree.
bool closedPath(const QString &d, int *loops)
{
    *loops = d.count(QLatin1Char('M'));
    return *loops > 0 && d.count(QLatin1Char('Z')) == *loops && d.trimmed().endsWith('Z');
}

} // namespace

TEST(Dieline, EverySheetIsAnSvgOfItsFacesAtRealSize)
{
    for (const QByteArray &id : generatorIdentifiers()) {
        const ArtworkSheet sheet = createGenerator(id)->artworkSheet();
        if (sheet.isEmpty())
            continue; // the model read from a file, refused below
        QXmlStreamReader xml(dielineSvg(sheet, QString::fromLatin1(id)));
        QStringList titles;
        int paths = 0;
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement)
                continue;
            const QXmlStreamAttributes a = xml.attributes();
            if (xml.name() == QLatin1String("svg")) {
                EXPECT_EQ(a.value("width").toString(),
                          QString::number(double(sheet.width())) + QStringLiteral("cm"))
                    << id.constData();
                const QStringList box = a.value("viewBox").toString().split(' ');
                ASSERT_EQ(box.size(), 4) << id.constData();
                EXPECT_NEAR(box[2].toDouble(), sheet.width(), 1e-3) << id.constData();
                EXPECT_NEAR(box[3].toDouble(), sheet.height(), 1e-3) << id.constData();
            } else if (xml.name() == QLatin1String("path")) {
                const ArtworkSheet::Face &face = sheet.faces().value(paths++);
                int loops = 0;
                EXPECT_TRUE(closedPath(a.value("d").toString(), &loops)) << id.constData();
                EXPECT_EQ(loops, face.outline.size()) << id.constData();
                EXPECT_FALSE(a.value("id").contains(' '));
                EXPECT_EQ(a.value("fill").toString(), QString()) << "stroke only, from the group";
            } else if (xml.name() == QLatin1String("title")) {
                titles << xml.readElementText();
            }
        }
        EXPECT_FALSE(xml.hasError()) << id.constData() << ": " << xml.errorString().toStdString();
        EXPECT_EQ(paths, sheet.faces().size()) << id.constData();
        for (const ArtworkSheet::Face &face : sheet.faces())
            EXPECT_TRUE(titles.contains(face.name)) << id.constData() << face.name.toStdString();
    }
}

TEST(Dieline, ParametersAreCheckedAsSceneFilesCheckThem)
{
    ArtworkSheet sheet;
    QString error;
    ASSERT_TRUE(dielineSheet("generator.Boxes.Box", R"({"width": 30, "depth": 5})", &sheet, &error))
        << error.toStdString();
    EXPECT_NEAR(sheet.face("front")->region.width(), 30., 1e-4);
    EXPECT_NEAR(sheet.face("left")->region.width(), 5., 1e-4);

    const struct
    {
        const char *generator, *params, *message;
    } refused[] = {
        {"generator.Boxes.Crate", "", "unknown generator \"generator.Boxes.Crate\"; the"},
        {"generator.external.model",
         "",
         "generator.external.model: models read from files carry their own texture coordinates; "
         "there is no artwork sheet"},
        {"generator.Boxes.Box", "{\"width\": ", "--params: not JSON: "},
        {"generator.Boxes.Box", "[1, 2]", "--params: expected an object"},
        {"generator.Boxes.Box",
         R"({"thickness": 2})",
         "--params: generator.Boxes.Box has no parameter \"thickness\""},
        {"generator.Boxes.Box", R"({"width": "wide"})", "--params.width: expected a number"},
        {"generator.DiscBox.DVD",
         R"({"coverAngle": 200})",
         "--params.coverAngle: generator.DiscBox.DVD does not take 200 (it would use 180)"},
    };
    for (const auto &r : refused) {
        error.clear();
        EXPECT_FALSE(dielineSheet(r.generator, QString::fromLatin1(r.params), &sheet, &error))
            << r.params;
        EXPECT_TRUE(error.startsWith(QString::fromLatin1(r.message)))
            << "got: " << error.toStdString();
    }
}

TEST(Dieline, CommandWritesTheFileOrNothing)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("box.svg");
    QString outText, errText;
    QTextStream out(&outText), err(&errText);
    EXPECT_EQ(dielineCommand({"dieline", "generator.Boxes.Box", "--out", path}, out, err), 0)
        << errText.toStdString();
    EXPECT_TRUE(QFile::exists(path));
    EXPECT_EQ(dielineCommand({"dieline", "generator.Boxes.Box"}, out, err), 1);
    EXPECT_EQ(dielineCommand({"dieline",
                              "generator.Boxes.Box",
                              "--params",
                              "{\"width\": 0}",
                              "--out",
                              dir.filePath("small.svg")},
                             out,
                             err),
              1);
    EXPECT_FALSE(QFile::exists(dir.filePath("small.svg"))) << "nothing written on a bad parameter";
    EXPECT_EQ(dielineCommand(
                  {"dieline", "generator.Boxes.Box", "--out", dir.filePath("no/such/dir/x.svg")},
                  out,
                  err),
              1);
    err.flush();
    EXPECT_TRUE(errText.contains("needs --out FILE.svg"));
    EXPECT_TRUE(errText.contains("does not take 0")) << errText.toStdString();
    EXPECT_TRUE(errText.contains("Cannot save")) << errText.toStdString();
    EXPECT_EQ(dielineCommand({"dieline"}, out, err), 0);
    out.flush();
    EXPECT_TRUE(outText.contains("generator.Book.HardCover")) << "the generators are listed";
}
