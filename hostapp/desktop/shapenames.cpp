// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/desktop/shapenames.h"

#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/basenode.h"

#include <QRegularExpression>

namespace vantrel::host {

namespace {

void collectNames(const INode *node, QSet<QString> &names)
{
    for (const INode *child : node->GetChildren()) {
        names.insert(child->GetName());
        collectNames(child, names);
    }
}

} // namespace

const std::vector<ShapeName> &shapeNames()
{
    static const std::vector<ShapeName> names = {
        {"generator.Book.HardCover", "Hard Cover Book", "Books"},
        {"generator.Book.Paperback", "Paperback", "Books"},
        {"generator.Book.PaperbackRoundCorners", "Paperback With Round Corners", "Books"},
        {"generator.Book.Stepback", "Stepback Paperback", "Books"},
        {"generator.Book.Magazine", "Magazine", "Books"},
        {"generator.Boxes.Box", "Box", "Boxes"},
        {"generator.Boxes.SlidingBox", "Sliding Box", "Boxes"},
        {"generator.Boxes.TaggedBox", "Box With Hang Tag", "Boxes"},
        {"generator.DiscBox.DVD", "DVD Case", "Disc Cases"},
        {"generator.DiscBox.BluRay", "Blu-ray Case", "Disc Cases"},
        {"generator.DiscBox.SlimCD", "Slim CD Case", "Disc Cases"},
        {"generator.DiscBox.DigipakCD", "CD Digipak", "Disc Cases"},
        {"generator.DiscBox.DigipakDVD", "DVD Digipak", "Disc Cases"},
        {"generator.DiscBox.Disc", "Disc", "Discs"},
        {"generator.Devices.iPad", "iPad", "Devices"},
        {"generator.Devices.iPhone4", "iPhone 4", "Devices"},
        {"generator.Devices.iPhone5", "iPhone 5", "Devices"},
        {"generator.Images.Image", "Image", "Images"},
        {"generator.canvas.simple", "Canvas", "Canvas"},
    };
    return names;
}

QString shapeName(const QByteArray &generatorId)
{
    for (const ShapeName &entry : shapeNames()) {
        if (generatorId == entry.generatorId)
            return QString::fromUtf8(entry.name);
    }
    return QString::fromLatin1(generatorId);
}

UniqueNames::UniqueNames(const Document &document)
{
    collectNames(document.root(), m_taken);
}

QString UniqueNames::take(const QString &name)
{
    QString free = name;
    if (m_taken.contains(name)) {
        static const QRegularExpression numbered(QStringLiteral("^(.*\\S) \\d+$"));
        const QRegularExpressionMatch match = numbered.match(name);
        const QString base = match.hasMatch() ? match.captured(1) : name;
        for (int number = 2; m_taken.contains(free); ++number)
            free = QStringLiteral("%1 %2").arg(base).arg(number);
    }
    m_taken.insert(free);
    return free;
}

} // namespace vantrel::host
