// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/core/scene/artworksheet.h"
#include "hostapp/core/scene/sheetprint.h"

namespace vantrel::host {

// The six panels of a carton w x h x d (centimetres) laid out as a cross, the way a folding
// carton is printed: left | front | right | back in a row, the top above the front and the
// bottom below it, each panel upright as seen from outside, so neighbouring panels meet along
// the edges they share on the folded box (the top's lower edge is the front's upper edge).
inline void addCartonPanels(ArtworkSheet &sheet, float w, float h, float d)
{
    sheet.addRectangle(QStringLiteral("top"), d, 0.f, w, d);
    sheet.addRectangle(QStringLiteral("left"), 0.f, d, d, h);
    sheet.addRectangle(QStringLiteral("front"), d, d, w, h);
    sheet.addRectangle(QStringLiteral("right"), d + w, d, d, h);
    sheet.addRectangle(QStringLiteral("back"), 2 * d + w, d, w, h);
    sheet.addRectangle(QStringLiteral("bottom"), d, d + h, w, d);
}

// The sides of a carton printing from the panels of the same names.
inline SheetSides cartonSides()
{
    return {QStringLiteral("front"),
            QStringLiteral("back"),
            QStringLiteral("left"),
            QStringLiteral("right"),
            QStringLiteral("top"),
            QStringLiteral("bottom"),
            QString()};
}

} // namespace vantrel::host
