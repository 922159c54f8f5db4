// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
//
// vantrel-paint-artwork: paints the example artwork that ships in examples/artwork and that the
// demo prints on its shapes. Each image is painted on its shape's artwork sheet, face by face, at
// the shape's default size, so it lands where the dieline (`vantrel dieline`) says it will.
//
//     build/bin/vantrel-paint-artwork examples/artwork
//
// Every picture, title and text here is the project's own invention.

#include "hostapp/core/scene/artworksheet.h"
#include "hostapp/core/scene/generatorregistry.h"
#include "hostapp/core/scene/shapegenerator.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QTextStream>
#include <QtMath>

#include <functional>

using vantrel::host::ArtworkSheet;

namespace {

// The sheets are painted at this many pixels a centimetre: sharp at the demo's picture sizes and
// small enough to keep the repository light.
constexpr double PixelsPerCentimetre = 24.0;

// Paints one face; the painter is clipped to the face's outline and scaled to centimetres with
// the face's region at the origin.
using FacePainter = std::function<void(QPainter &, const ArtworkSheet::Face &)>;

struct Pack
{
    const char *file;
    const char *generator;
    QColor paper; // the colour of the whole sheet, the plain region and the card's edges
    FacePainter paint;
};

void text(QPainter &painter,
          const QRectF &box,
          const QString &words,
          double size,
          QColor colour,
          int flags = Qt::AlignCenter,
          int weight = QFont::Bold)
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(qMax(1, qRound(size * PixelsPerCentimetre)));
    font.setWeight(weight);
    painter.save();
    // Text is laid out in pixels, then scaled back to centimetres.
    painter.scale(1.0 / PixelsPerCentimetre, 1.0 / PixelsPerCentimetre);
    painter.setFont(font);
    painter.setPen(colour);
    const QRectF pixels(box.topLeft() * PixelsPerCentimetre, box.size() * PixelsPerCentimetre);
    painter.drawText(pixels, flags | Qt::TextWordWrap, words);
    painter.restore();
}

// Text running up a spine, read with the head of the book to the right as spines are printed.
void spineText(
    QPainter &painter, const QSizeF &spine, const QString &words, double size, QColor colour)
{
    painter.save();
    painter.translate(spine.width(), 0.0);
    painter.rotate(90.0);
    text(painter, QRectF(0.0, 0.0, spine.height(), spine.width()), words, size, colour);
    painter.restore();
}

// Lines of grey blocks standing for the blurb on a back cover.
void blurb(QPainter &painter, const QRectF &box, QColor colour)
{
    const double line = 0.55;
    for (int i = 0; box.top() + (i + 1) * line < box.bottom(); ++i) {
        const double length = box.width() * (i % 4 == 3 ? 0.6 : 0.95 - 0.05 * (i % 3));
        painter.fillRect(QRectF(box.left(), box.top() + i * line, length, 0.22), colour);
    }
}

// The fine lines of a book's page block.
void pageEdges(QPainter &painter, const QSizeF &size)
{
    painter.fillRect(QRectF(QPointF(), size), QColor(242, 236, 221));
    painter.setPen(QPen(QColor(214, 205, 186), 0.02));
    const bool across = size.width() > size.height();
    const double length = across ? size.width() : size.height();
    for (double at = 0.05; at < (across ? size.height() : size.width()); at += 0.08)
        painter.drawLine(across ? QLineF(0.0, at, length, at) : QLineF(at, 0.0, at, length));
}

void paperback(QPainter &painter, const ArtworkSheet::Face &face)
{
    const QSizeF size = face.region.size();
    const QColor ink(250, 244, 230);
    if (face.name == QLatin1String("front")) {
        QLinearGradient sky(0.0, 0.0, 0.0, size.height());
        sky.setColorAt(0.0, QColor(236, 120, 58));
        sky.setColorAt(1.0, QColor(120, 40, 70));
        painter.fillRect(QRectF(QPointF(), size), sky);
        painter.setBrush(QColor(255, 214, 120));
        painter.setPen(Qt::NoPen);
        painter.drawEllipse(QPointF(size.width() * 0.5, size.height() * 0.58), 3.2, 3.2);
        painter.fillRect(QRectF(0.0, size.height() * 0.66, size.width(), size.height()),
                         QColor(60, 24, 52));
        text(painter,
             QRectF(0.8, 1.2, size.width() - 1.6, 4.0),
             QStringLiteral("The Quiet\nWarehouse"),
             1.5,
             ink);
        text(painter,
             QRectF(0.8, size.height() - 3.0, size.width() - 1.6, 2.0),
             QStringLiteral("MARA LINDQVIST"),
             0.7,
             ink);
    } else if (face.name == QLatin1String("back")) {
        painter.fillRect(QRectF(QPointF(), size), QColor(120, 40, 70));
        blurb(painter,
              QRectF(1.2, 2.0, size.width() - 2.4, size.height() * 0.55),
              QColor(236, 190, 170));
        painter.fillRect(QRectF(size.width() - 4.2, size.height() - 3.0, 3.2, 2.0), Qt::white);
    } else if (face.name == QLatin1String("spine")) {
        painter.fillRect(QRectF(QPointF(), size), QColor(90, 30, 60));
        spineText(painter,
                  size,
                  QStringLiteral("THE QUIET WAREHOUSE"),
                  qMin(0.9, size.width() * 0.55),
                  ink);
    } else if (face.name != QLatin1String("plain")) {
        pageEdges(painter, size);
    }
}

void hardCover(QPainter &painter, const ArtworkSheet::Face &face)
{
    const QSizeF size = face.region.size();
    const QColor navy(28, 44, 84), gold(222, 184, 96);
    if (face.name == QLatin1String("front") || face.name == QLatin1String("back")) {
        painter.fillRect(QRectF(QPointF(), size), navy);
        painter.setPen(QPen(gold, 0.12));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(QRectF(0.8, 0.8, size.width() - 1.6, size.height() - 1.6));
        if (face.name == QLatin1String("back")) {
            blurb(painter,
                  QRectF(1.8, 2.2, size.width() - 3.6, size.height() * 0.4),
                  navy.lighter(190));
            return;
        }
        // A stack of three boxes, the book's emblem.
        const QPointF base(size.width() * 0.5, size.height() * 0.72);
        painter.setPen(Qt::NoPen);
        painter.setBrush(gold);
        painter.drawRect(QRectF(base.x() - 3.0, base.y() - 2.0, 6.0, 2.0));
        painter.drawRect(QRectF(base.x() - 2.2, base.y() - 4.2, 4.4, 2.0));
        painter.drawRect(QRectF(base.x() - 1.4, base.y() - 6.4, 2.8, 2.0));
        text(painter,
             QRectF(1.0, 1.6, size.width() - 2.0, 4.0),
             QStringLiteral("Light &\nShelf"),
             1.7,
             gold);
        text(painter,
             QRectF(1.0, size.height() - 3.2, size.width() - 2.0, 1.6),
             QStringLiteral("On showing things well"),
             0.6,
             gold,
             Qt::AlignCenter,
             QFont::Normal);
    } else if (face.name == QLatin1String("spine")) {
        painter.fillRect(QRectF(QPointF(), size), navy.darker(120));
        spineText(
            painter, size, QStringLiteral("LIGHT & SHELF"), qMin(1.0, size.width() * 0.5), gold);
    } else if (face.name != QLatin1String("plain")) {
        pageEdges(painter, size);
    }
}

// Red paper with a gold ribbon tied round the box: one band runs down the middle of the top,
// front, bottom and back, the other round the four sides at half height, and the bow sits on top.
void giftBox(QPainter &painter, const ArtworkSheet::Face &face)
{
    const QSizeF size = face.region.size();
    painter.fillRect(QRectF(QPointF(), size), QColor(176, 28, 40));
    painter.setPen(QPen(QColor(196, 48, 58), 0.25));
    for (double at = -size.height(); at < size.width(); at += 2.0)
        painter.drawLine(QLineF(at, 0.0, at + size.height(), size.height()));
    const QColor ribbon(236, 196, 90);
    const double band = 3.0;
    const bool side = face.name == QLatin1String("left") || face.name == QLatin1String("right");
    if (!side)
        painter.fillRect(QRectF(size.width() / 2 - band / 2, 0.0, band, size.height()), ribbon);
    if (side || face.name == QLatin1String("front") || face.name == QLatin1String("back"))
        painter.fillRect(QRectF(0.0, size.height() / 2 - band / 2, size.width(), band), ribbon);
    if (face.name == QLatin1String("top")) {
        painter.setPen(QPen(ribbon.darker(130), 0.2));
        painter.setBrush(ribbon);
        const QPointF knot(size.width() / 2, size.height() / 2);
        painter.drawEllipse(knot + QPointF(-2.2, 0.0), 2.2, 1.3);
        painter.drawEllipse(knot + QPointF(2.2, 0.0), 2.2, 1.3);
        painter.drawEllipse(knot, 0.9, 0.9);
    }
    if (face.name == QLatin1String("front")) {
        painter.setPen(QPen(QColor(120, 90, 40), 0.08));
        painter.setBrush(QColor(250, 244, 228));
        const QRectF tag(size.width() * 0.56, size.height() * 0.12, 7.0, 4.0);
        painter.drawRoundedRect(tag, 0.5, 0.5);
        text(painter, tag, QStringLiteral("For you"), 1.0, QColor(150, 30, 40));
    }
}

// A film's case: the inlay's back, spine and front, the rest the case's black plastic.
void discCase(QPainter &painter, const ArtworkSheet::Face &face)
{
    const QSizeF size = face.region.size();
    const QColor ink(240, 248, 255);
    if (face.name.contains(QLatin1String("front"))) {
        QRadialGradient glow(QPointF(size.width() * 0.5, size.height() * 0.4), size.height() * 0.6);
        glow.setColorAt(0.0, QColor(40, 150, 170));
        glow.setColorAt(1.0, QColor(8, 24, 48));
        painter.fillRect(QRectF(QPointF(), size), glow);
        painter.setPen(QPen(QColor(120, 230, 230, 160), 0.1));
        for (int i = 1; i < 8; ++i)
            painter.drawEllipse(
                QPointF(size.width() * 0.5, size.height() * 0.45), i * 1.1, i * 1.1);
        text(painter,
             QRectF(0.6, 0.8, size.width() - 1.2, 3.0),
             QStringLiteral("TIDE LINE"),
             1.6,
             ink);
        text(painter,
             QRectF(0.6, size.height() - 3.0, size.width() - 1.2, 2.0),
             QStringLiteral("a film about the sea"),
             0.6,
             ink,
             Qt::AlignCenter,
             QFont::Normal);
    } else if (face.name.contains(QLatin1String("back"))) {
        painter.fillRect(QRectF(QPointF(), size), QColor(8, 24, 48));
        blurb(painter,
              QRectF(1.0, 1.5, size.width() - 2.0, size.height() * 0.5),
              QColor(90, 140, 170));
    } else if (face.name.contains(QLatin1String("spine"))) {
        painter.fillRect(QRectF(QPointF(), size), QColor(8, 24, 48));
        spineText(painter, size, QStringLiteral("TIDE LINE"), qMin(0.8, size.width() * 0.6), ink);
    } else {
        painter.fillRect(QRectF(QPointF(), size), QColor(24, 24, 28));
    }
}

const Pack Packs[] = {
    {"gift-box.png", "generator.Boxes.Box", QColor(176, 28, 40), giftBox},
    {"paperback.png", "generator.Book.Paperback", QColor(242, 236, 221), paperback},
    {"hard-cover.png", "generator.Book.HardCover", QColor(242, 236, 221), hardCover},
    {"dvd-case.png", "generator.DiscBox.DVD", QColor(24, 24, 28), discCase},
};

QImage paint(const Pack &pack, const ArtworkSheet &sheet)
{
    QImage image(qCeil(sheet.width() * PixelsPerCentimetre),
                 qCeil(sheet.height() * PixelsPerCentimetre),
                 QImage::Format_RGB32);
    image.fill(pack.paper);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(PixelsPerCentimetre, PixelsPerCentimetre);
    for (const ArtworkSheet::Face &face : sheet.faces()) {
        painter.save();
        // Each face paints its whole region, so a face with a curved outline (a rounded corner)
        // is printed to its edge wherever the texture is sampled.
        painter.setClipRect(face.region);
        painter.translate(face.region.topLeft());
        pack.paint(painter, face);
        painter.restore();
    }
    return image;
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Paints the example artwork, one PNG for each "
                                                    "of the demo's shapes, on its artwork sheet."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("DIR"), QStringLiteral("Where the pictures go."));
    parser.process(application);
    QTextStream err(stderr);
    if (parser.positionalArguments().size() != 1) {
        err << "vantrel-paint-artwork: give the folder to write to (--help)\n";
        return 2;
    }
    const QDir folder(parser.positionalArguments().constFirst());
    for (const Pack &pack : Packs) {
        const auto generator = vantrel::host::createGenerator(QByteArray(pack.generator));
        const QString path = folder.filePath(QString::fromLatin1(pack.file));
        if (!generator || !paint(pack, generator->artworkSheet()).save(path)) {
            err << "vantrel-paint-artwork: cannot write " << path << "\n";
            return 1;
        }
        QTextStream(stdout) << path << "\n";
    }
    return 0;
}
