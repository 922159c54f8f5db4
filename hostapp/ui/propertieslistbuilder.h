// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/ui/hostuiexport.h"

#include <QList>
#include <QString>
#include <QVariantMap>

// Names of the keys and kinds of a panel row (one QVariantMap per row). Every row has "kind";
// the other keys depend on it.
namespace PanelRow {
constexpr char Kind[] = "kind";
constexpr char Title[] = "title";       // kind: the panel's title; key "text"
constexpr char Group[] = "group";       // kind: a titled group of the rows after it; key "text"
constexpr char Slider[] = "slider";     // kind: a numeric slider with a number field
constexpr char Percent[] = "percent";   // kind: a slider for 0..1 shown as 0..100 %
constexpr char CheckBox[] = "checkbox"; // kind: a check box for a bool property
constexpr char Label[] = "label";       // kind: a line of text
constexpr char LineEdit[] = "lineedit"; // kind: a one-line text field for a string property
constexpr char File[] = "file";         // kind: a path field with a file dialog; key "filter"
constexpr char Text[] = "text";         // the row's label or caption
constexpr char Property[] = "property"; // the Qt property a row edits or shows
constexpr char Minimum[] = "min";
constexpr char Maximum[] = "max";
constexpr char Flags[] = "flags";           // PropertiesListBuilder::SliderFlags
constexpr char Decimals[] = "decimals";     // digits after the point in the number field
constexpr char Order[] = "order";           // PropertiesListBuilder::eOrder
constexpr char Side[] = "side";             // PropertiesListBuilder::eSide
constexpr char SizeChange[] = "sizeChange"; // a label's font size change in points
constexpr char Filter[] = "filter";         // a file row's dialog filter, "Images (*.png)"
} // namespace PanelRow

// Describes a property panel, row by row in display order. A settings object builds one in
// GetPropertiesList(); PropertyListWidget turns the rows into widgets. The first row is the
// panel's title: the widget takes it as its accessible name, and shows it only as the caption of
// rows added before the first AddPanel (the tool window's title bar already names the tool).
class VANTREL_HOSTUI_EXPORT PropertiesListBuilder
{
public:
    // Where a check box or label stands in its row.
    enum eOrder {
        TextFirst = 0,   // the text in the label column, the control in the field column
        ControlFirst = 1 // the control first, its text after it, across the whole row
    };
    // How a label's text is aligned in its row.
    enum eSide { LeftSide = 0, RightSide = 1, CentreSide = 2 };
    // Bits of AddSlider's display code. Bits not listed here are accepted and ignored, so a
    // code written for a richer panel still shows a sensible slider.
    enum SliderFlag {
        TickMarks = 0x002,    // tick marks under the slider, ten intervals
        WholeNumbers = 0x020, // the value moves in whole numbers whatever the decimals say
        Degrees = 0x080,      // the number field shows a degree sign after the value
        // The bits below are part of the codes the tools pass as the host library defines them.
        // This panel accepts them and ignores them; each is named after the sliders whose codes
        // carry it, not after a meaning this panel would give it.
        SeedStyle = 0x008,       // only in the code of the Stack window's seed slider
        FractionStyle = 0x040,   // in the codes of every slider that shows decimals
        GridStyle = 0x100,       // in the codes of Step and Repeat's counts and steps
        LightAngleStyle = 0x200, // only in the code of Easy Lighting's two angles
        OneDecimalStyle = 0x800  // in the codes of the sliders with one decimal
    };

    explicit PropertiesListBuilder(const QString &title);

    // Starts a group; the rows after it, up to the next group, are framed under the caption (an
    // empty caption gives a frame without a title).
    void AddPanel(const QString &caption);
    // A slider from min to max for a numeric property, with a number field that takes typed
    // values. flags: SliderFlag bits. decimals: digits after the point in the number field
    // (0 to 6); the slider then moves in steps of one unit of the last digit, but in at most
    // 100 000 steps over the whole range. Integer properties always show whole numbers.
    void AddSlider(const QString &label,
                   const QString &property,
                   float min,
                   float max,
                   int flags,
                   int decimals);
    // A slider for a property in the range 0 to 1, shown as 0 to 100 %. wholePercent true moves
    // in whole percents; false in tenths of a percent, for finer settings.
    void AddPercentSlider(const QString &label, const QString &property, bool wholePercent);
    // A check box for a bool property.
    void AddCheckBox(const QString &label, const QString &property, eOrder order);
    // A line of text. sizeChange enlarges (or, negative, reduces) the font by that many points.
    // valueProperty, when not empty, names a property whose value is shown after the text and
    // kept up to date. An empty text without a property is a blank line that spaces the rows.
    void AddLabel(const QString &text,
                  int sizeChange,
                  eOrder order,
                  eSide side,
                  const QString &valueProperty);

    // A one-line text field for a string property; the value is written when the user presses
    // Enter or leaves the field after changing it.
    void AddLineEdit(const QString &label, const QString &property);
    // A path field with a button that opens a file dialog showing the files filter names
    // ("Images (*.png *.jpg)", several separated by ";;"). A typed path counts on Enter.
    void AddFileChooser(const QString &label, const QString &property, const QString &filter);

    // The rows so far, the title row first.
    QList<QVariantMap> GetList() const { return m_rows; }
    operator QList<QVariantMap>() const { return m_rows; }

private:
    QList<QVariantMap> m_rows;
};
