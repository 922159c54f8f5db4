// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Driving real windows as a user does: modal windows opened and worked from a timer (a modal
// window runs its own event loop, so the test cannot go on until it closes), numbers typed into a
// panel's fields, sliders moved with the keyboard, buttons clicked, and the ways a user closes a
// tool window without OK.
#pragma once

#include <QString>

#include <functional>
#include <vector>

class InputLineSlider;
class QDialog;
class QObject;
class QPoint;
class QWidget;
class QWindow;

namespace vantrel::test {

// Calls drive with the modal window that open() brings up, once it is on screen and active, and
// fails the test when none comes up. drive must close the window, or open() never returns; a
// window still open long after is closed (with whatever it opened over itself) and fails the
// test rather than hang it.
void withModal(const std::function<void()> &open, const std::function<void(QWidget *)> &drive);

// The text of the message box open() shows, closed with its default button.
QString messageOf(const std::function<void()> &open);

// The number field and slider of a setting in the window's property panel, or null.
InputLineSlider *sliderOf(QWidget *window, const QString &property);

// Types a value into a setting's number field and moves on with Tab, as a user would (Enter
// would also press the window's default button, OK).
void typeInto(QWidget *window, const QString &property, const QString &text);

// A setting's value as the window's settings hold it.
float valueOf(QWidget *window, const QString &property);

// Moves a setting's slider with the keyboard; returns the value the setting took.
float nudge(QWidget *window, const QString &property, Qt::Key key, int presses);

// Clicks the window's button of that object name with the mouse.
void press(QWidget *window, const char *button);

// Types a file name into a file dialog and accepts it with Return, once the dialog has read its
// folder and the name is what stands in the field, so that Return saves to that name.
void enterFileName(QWidget *fileDialog, const QString &name);

// A number as a script writes it, to the last digit a float holds.
QString number(float value);

// Drags with the left button, through the window system as a pointer does, from one point of the
// window to another (both in the window's coordinates), starting off in the direction of start.
// The drag starts inside the second move and runs its own event loop until the release, so the
// moves that carry it and the release are sent from a timer once a QDrag of source is under way.
void dragThroughWindowSystem(
    QWindow *window, QObject *source, const QPoint &from, const QPoint &to, const QPoint &start);

// One way a user closes a tool window without OK. Every one of them must end the way Cancel
// does, so the tests go through all of them.
struct WayOut
{
    const char *name; // for the failure message
    std::function<void(QDialog *)> close;

    void operator()(QDialog *window) const { close(window); }
};

// The Cancel button, Escape, and the window's close button (a close event), in that order.
const std::vector<WayOut> &waysToCloseWithoutOk();

} // namespace vantrel::test
