// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tests/support/windowdriver.h"

#include "hostapp/ui/inputlineslider.h"
#include "hostapp/ui/propertylistwidget.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QCoreApplication>
#include <QDialog>
#include <QDrag>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSlider>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <string>

namespace vantrel::test {

namespace {

// How long a drive may take before its window counts as left open. Long, because the sanitizer
// build on a busy machine is slow; a hung test would otherwise wait for CTest's own timeout.
constexpr int LeftOpenAfterMs = 45000;

// Closes the modal windows still open over and including modal, each reported as a failure:
// what the window opened over itself (a question) goes first, then the window.
void closeLeftOpen(QWidget *modal)
{
    if (!modal->isVisible())
        return;
    for (int closed = 0; closed < 8; ++closed) {
        QWidget *top = QApplication::activeModalWidget();
        if (!top)
            break;
        auto *box = qobject_cast<QMessageBox *>(top);
        ADD_FAILURE() << "a modal window was left open: " << top->windowTitle().toStdString()
                      << (box ? " \"" + box->text().toStdString() + '"' : std::string());
        if (auto *dialog = qobject_cast<QDialog *>(top))
            dialog->reject();
        else
            top->close();
        if (top == modal)
            break;
    }
}

} // namespace

void withModal(const std::function<void()> &open, const std::function<void(QWidget *)> &drive)
{
    QWidget *before = QApplication::activeModalWidget();
    bool driven = false;
    QTimer timer;
    timer.setInterval(20);
    QObject::connect(&timer, &QTimer::timeout, [&] {
        QWidget *modal = QApplication::activeModalWidget();
        if (driven || !modal || modal == before || !modal->isVisible())
            return;
        driven = true;
        timer.stop();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(modal));
        // Keyboard focus moves, and a number field commits what was typed, only in the active
        // window; without a window manager a new window is not always made active at once.
        modal->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(modal));
        // A drive that fails half-way, or a window that opens another over itself, must fail
        // the test, not leave it waiting for ever in the window's own event loop. Armed before
        // the drive, which may itself be stuck in such a loop.
        QTimer::singleShot(LeftOpenAfterMs, modal, [modal] { closeLeftOpen(modal); });
        drive(modal);
    });
    timer.start();
    open();
    timer.stop();
    EXPECT_TRUE(driven) << "no modal window came up";
}

QString messageOf(const std::function<void()> &open)
{
    QString text;
    withModal(open, [&text](QWidget *modal) {
        auto *box = qobject_cast<QMessageBox *>(modal);
        ASSERT_NE(box, nullptr) << "the modal window is not a message box";
        text = box->text();
        box->accept();
    });
    return text;
}

InputLineSlider *sliderOf(QWidget *window, const QString &property)
{
    auto *panel = window->findChild<PropertyListWidget *>();
    return panel ? qobject_cast<InputLineSlider *>(panel->findWidget(property)) : nullptr;
}

void typeInto(QWidget *window, const QString &property, const QString &text)
{
    InputLineSlider *slider = sliderOf(window, property);
    ASSERT_NE(slider, nullptr) << property.toStdString();
    QLineEdit *field = slider->field();
    // The field commits when it loses the focus, which happens only in the active window; the
    // window system may still be handing the activation over, so Qt is told at once.
    QApplication::setActiveWindow(window);
    field->setFocus();
    field->selectAll();
    QTest::keyClicks(field, text);
    QTest::keyClick(field, Qt::Key_Tab);
}

float valueOf(QWidget *window, const QString &property)
{
    auto *panel = window->findChild<PropertyListWidget *>();
    return panel ? panel->panelValue(property).toFloat() : 0.f;
}

float nudge(QWidget *window, const QString &property, Qt::Key key, int presses)
{
    InputLineSlider *slider = sliderOf(window, property);
    EXPECT_NE(slider, nullptr) << property.toStdString();
    if (!slider)
        return 0.f;
    slider->slider()->setFocus();
    for (int i = 0; i < presses; ++i)
        QTest::keyClick(slider->slider(), key);
    return valueOf(window, property);
}

void press(QWidget *window, const char *button)
{
    auto *found = window->findChild<QAbstractButton *>(QString::fromLatin1(button));
    ASSERT_NE(found, nullptr) << button;
    QTest::mouseClick(found, Qt::LeftButton);
}

void enterFileName(QWidget *fileDialog, const QString &name)
{
    auto *field = fileDialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    ASSERT_NE(field, nullptr);
    // The dialog opens in the current file's folder, reads it in the background and then selects
    // the current file in its list, which is what Return saves to when the list has a selection.
    // On a busy machine that selection can come after the typing (which clears it), and Return
    // would then ask to replace that file. A user waits for the list to settle, looks before
    // pressing Return and types the name again if need be; so does this.
    auto *list = fileDialog->findChild<QAbstractItemView *>(QStringLiteral("listView"));
    ASSERT_NE(list, nullptr);
    const auto listSelects = [list] { return !list->selectionModel()->selectedRows().isEmpty(); };
    // Settled. A dialog whose starting file does not exist selects nothing, and goes on after
    // the wait.
    static_cast<void>(QTest::qWaitFor(listSelects, 5000));
    const auto typed
        = [field, &name, &listSelects] { return field->text() == name && !listSelects(); };
    for (int attempt = 0; attempt < 5; ++attempt) {
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, name);
        if (QTest::qWaitFor(typed, 1000))
            break;
    }
    EXPECT_EQ(field->text().toStdString(), name.toStdString());
    EXPECT_TRUE(list->selectionModel()->selectedRows().isEmpty());
    QTest::keyClick(field, Qt::Key_Return);
}

QString number(float value)
{
    return QString::number(double(value), 'g', 9);
}

const std::vector<WayOut> &waysToCloseWithoutOk()
{
    static const std::vector<WayOut> ways = {
        {"the Cancel button",
         [](QDialog *w) { w->findChild<QPushButton *>(QStringLiteral("cancel"))->click(); }},
        {"Escape",
         [](QDialog *w) {
             QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
             QCoreApplication::sendEvent(w, &escape);
         }},
        {"the close button", [](QDialog *w) { w->close(); }},
    };
    return ways;
}

void dragThroughWindowSystem(
    QWindow *window, QObject *source, const QPoint &from, const QPoint &to, const QPoint &start)
{
    QTimer carry;
    carry.setInterval(10);
    QObject::connect(&carry, &QTimer::timeout, window, [&carry, source, window, from, to] {
        if (!source->findChild<QDrag *>())
            return;
        carry.stop();
        for (int step = 1; step <= 8; ++step)
            QTest::mouseMove(window, from + (to - from) * step / 8);
        QTest::mouseRelease(window, Qt::LeftButton, {}, to);
    });
    carry.start();
    QTest::mousePress(window, Qt::LeftButton, {}, from);
    QTest::mouseMove(window, from + start / 5);
    QTest::mouseMove(window, from + start);
}

} // namespace vantrel::test
