// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/models/artworkfile.h"

#include "hostapp/core/files/filecache.h"
#include "hostapp/core/files/filechecks.h"

#include <QAtomicInt>
#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>

namespace vantrel::host {

namespace {

FileCache<QImage> s_cache;
QAtomicInt s_decodeCount;

// The whole file, or an empty array with *problem set. Reading it at once lets the end of a
// JPEG be checked and keeps a file changed half-way through from mixing two versions.
QByteArray fileBytes(const QString &path, QString *problem)
{
    QFile file;
    if (!openRegularFile(file, path, problem)) // a folder, FIFO or device, without waiting on it
        return QByteArray();
    if (file.size() == 0) {
        *problem = QStringLiteral("the file is empty");
        return QByteArray();
    }
    if (file.size() > ArtworkFile::MaximumFileSize) {
        *problem = QStringLiteral("the file is %1 bytes; artwork images are limited to %2 MiB")
                       .arg(file.size())
                       .arg(ArtworkFile::MaximumFileSize >> 20);
        return QByteArray();
    }
    QByteArray bytes = file.readAll();
    if (bytes.size() != file.size())
        *problem = QStringLiteral("cannot read the file: %1").arg(file.errorString());
    return bytes;
}

// Whether JPEG data runs to its end marker. The JPEG reader fills in grey what a cut-off file
// lacks and reports success, so a half-copied file would otherwise print half a picture. The
// walk goes from segment to segment by their lengths (so a thumbnail inside the header is
// skipped whole) and through each scan's data to the marker after it: inside that data a 0xFF
// byte is always followed by 0x00 or a restart marker. Bytes after the end marker (some cameras
// append their own) do not matter.
bool jpegIsComplete(const QByteArray &bytes)
{
    const auto *data = reinterpret_cast<const uchar *>(bytes.constData());
    const qsizetype size = bytes.size();
    const auto isRestart = [](uchar marker) { return marker >= 0xD0 && marker <= 0xD7; };
    qsizetype i = 2; // after the start marker, which the format check has seen
    while (i + 1 < size) {
        const uchar marker = data[i + 1];
        if (data[i] != 0xFF)
            return false;
        if (marker == 0xD9)
            return true;
        if (marker == 0xFF || marker == 0x01 || isRestart(marker)) { // fill, or no length
            i += marker == 0xFF ? 1 : 2;
            continue;
        }
        if (i + 3 >= size)
            return false;
        const int length = (data[i + 2] << 8) | data[i + 3];
        if (length < 2)
            return false;
        i += 2 + length;
        if (marker != 0xDA)
            continue;
        while (i + 1 < size && !(data[i] == 0xFF && data[i + 1] != 0x00 && !isRestart(data[i + 1])))
            ++i;
    }
    return false;
}

// Why the picture's stated size is refused, or an empty string.
QString sizeProblem(const QSize &size)
{
    if (!size.isValid() || size.isEmpty())
        return QStringLiteral("the image states no valid size");
    if (size.width() > ArtworkFile::MaximumSide || size.height() > ArtworkFile::MaximumSide
        || qint64(size.width()) * size.height() > ArtworkFile::MaximumPixelCount) {
        return QStringLiteral("the image is %1 x %2 pixels; artwork is limited to %3 pixels a "
                              "side and %4 pixels in all")
            .arg(size.width())
            .arg(size.height())
            .arg(ArtworkFile::MaximumSide)
            .arg(ArtworkFile::MaximumPixelCount);
    }
    return QString();
}

// The decoded image of the file's bytes, or a null image with *problem set.
QImage decode(QByteArray bytes, QString *problem)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    // The contents decide, never the name: a text file named .png is no image.
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    const QByteArray format = reader.format();
    if (format != "png" && format != "jpeg") {
        *problem = format.isEmpty() ? QStringLiteral("not a PNG or JPEG image")
                                    : QStringLiteral("the image is %1; artwork must be PNG or JPEG")
                                          .arg(QString::fromLatin1(format.toUpper()));
        return QImage();
    }
    // The header's size, before a single pixel is allocated: Qt 5 sets no limit of its own.
    *problem = sizeProblem(reader.size());
    if (!problem->isEmpty())
        return QImage();
    if (format == "jpeg" && !jpegIsComplete(bytes)) {
        *problem = QStringLiteral("the JPEG data is cut off or damaged");
        return QImage();
    }
    s_decodeCount.fetchAndAddRelaxed(1);
    QImage image = reader.read();
    if (image.isNull()) {
        *problem
            = QStringLiteral("the image data cannot be decoded (%1)").arg(reader.errorString());
        return QImage();
    }
    if (!sizeProblem(image.size()).isEmpty()) { // a header that understated the picture
        *problem = QStringLiteral("the image data does not match its header");
        return QImage();
    }
    return image.convertToFormat(QImage::Format_RGBA8888);
}

} // namespace

ArtworkImagePtr ArtworkFile::load(const QString &path, QString *errorMessage)
{
    return s_cache.load(
        path, errorMessage, [](const QString &file, QString *error) { return read(file, error); });
}

ArtworkImagePtr ArtworkFile::read(const QString &path, QString *errorMessage)
{
    QString problem;
    const QByteArray bytes = fileBytes(path, &problem);
    QImage image;
    if (problem.isEmpty())
        image = decode(bytes, &problem);
    if (image.isNull()) {
        if (errorMessage)
            *errorMessage = QStringLiteral("%1: %2").arg(path, problem);
        return nullptr;
    }
    return std::make_shared<const QImage>(std::move(image));
}

int ArtworkFile::decodeCount()
{
    return s_decodeCount.loadRelaxed();
}

} // namespace vantrel::host
