// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/ui/hostuiexport.h"

#include <QString>
#include <QWidget>

class QLineEdit;
class QSlider;

// A slider with an editable number field beside it. Values are in the property's own units;
// the field shows them multiplied by a display scale (100 for percents) with a fixed number of
// decimals and an optional suffix ("°", " %"). Moving the slider or typing a number and pressing
// Enter (or leaving the field) is a user edit and emits valueEdited. A typed number is passed on
// as typed, even outside the slider's range: whoever receives it applies its own limits and
// shows the result with SetValue.
class VANTREL_HOSTUI_EXPORT InputLineSlider : public QWidget
{
    Q_OBJECT

public:
    // What SetValue does with its value.
    enum SetMode {
        EditAsUser = 0,  // show it and emit valueEdited, as if the user had typed it
        ShowLimited = 1, // show it limited to the slider's range, no signal
        ShowAsGiven = 2  // show it as given (the slider at the nearest end when outside), no signal
    };

    // decimals: digits after the point in display units. The slider moves in steps of one unit
    // of the last digit, in at most 100 000 steps over the range.
    InputLineSlider(float min,
                    float max,
                    int decimals,
                    float displayScale = 1.0f,
                    const QString &suffix = QString(),
                    QWidget *parent = nullptr);

    void setTickMarks(bool on);
    // The number field's width: by default just wide enough for the longest value of the range;
    // a panel gives all its sliders the widest of their widths so that the sliders line up.
    int fieldWidth() const;
    void setFieldWidth(int width);

    // The value shown now, in the property's units.
    float getValue() const { return m_value; }
    // mode: a SetMode; an unknown mode is taken as ShowAsGiven.
    virtual void SetValue(int mode, float value);

    // Shows that the value differs between the objects the row stands for: an empty field with
    // the placeholder "mixed" and the slider at its start, until the next value is shown.
    void showMixed();
    bool isMixed() const;
    // Whether the user is busy with the widget (dragging the slider, or typing in the field), so
    // that a refresh from outside would undo what they are doing.
    bool isBusy() const;

    QSlider *slider() const { return m_slider; }
    QLineEdit *field() const { return m_field; }

signals:
    void valueEdited(float value);
    // The user takes hold of the slider and lets it go: the edits in between are one drag.
    void dragStarted();
    void dragFinished();

private:
    void display(float value);
    int positionOf(float value) const;
    float valueAt(int position) const;
    void onSliderChanged(int position);
    void onFieldEdited();

    float m_min;
    float m_max;
    int m_decimals;
    float m_scale;
    QString m_suffix;
    int m_steps;
    float m_value;
    QSlider *m_slider;
    QLineEdit *m_field;
};
