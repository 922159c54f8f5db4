// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The Properties dock driven as a user drives it: numbers typed into its fields, its sliders
// dragged with the mouse, its check boxes clicked, files picked. Each result is compared with
// the dump a headless session's script makes of the same edit, and undo with the dump before.
#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/basenode.h"
#include "hostapp/desktop/propertiespanel.h"
#include "hostapp/ui/filechooser.h"
#include "hostapp/ui/inputlineslider.h"
#include "hostapp/ui/propertylistwidget.h"
#include "tests/support/mainwindowdriver.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDockWidget>
#include <QFileDialog>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>
#include <QStyleOptionSlider>
#include <QTest>
#include <QTimer>
#include <QToolButton>

namespace {

using namespace vantrel::host;
using namespace vantrel::test;

class PropertiesPanelTest : public MainWindowDriver
{
protected:
    PropertiesPanel &panel() { return PropertiesPanel::of(m_window->propertiesDock()); }
    PropertyListWidget *list() { return panel().list(); }
    // The window back in its event loop for a moment: the dock catches up with the document on
    // the next pass, as a user sees it.
    static void settle() { QTest::qWait(30); }

    // Opens the sample scene and selects the nodes of those names, as the script `select` does.
    void openAndSelect(const QStringList &names)
    {
        ASSERT_TRUE(m_window->openFile(sampleScene()));
        std::vector<INode *> nodes;
        for (const QString &name : names)
            nodes.push_back(findNode(name));
        document().SetSelection(nodes, Document::ReplaceSelection);
        settle();
        ASSERT_NE(list(), nullptr);
    }
    static QString select(const QStringList &names)
    {
        return QStringLiteral("document.selection = ['%1'].map(function (n) { return "
                              "document.findNode(n); });")
            .arg(names.join(QStringLiteral("', '")));
    }
    // Types into the line edit and presses Enter, as a user replaces a field's text.
    static void type(QLineEdit *field, const QString &text)
    {
        field->setFocus();
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Backspace);
        QTest::keyClicks(field, text);
        QTest::keyClick(field, Qt::Key_Return);
        settle();
    }
    QLineEdit *numberField(const QString &property)
    {
        auto *slider = qobject_cast<InputLineSlider *>(list()->findWidget(property));
        return slider ? slider->field() : nullptr;
    }
    int undoCount() { return document().history().undoCount(); }
    QString undoText() { return m_window->undoAction()->text(); }
};

TEST_F(PropertiesPanelTest, TypedWidthIsOneNamedStepLikeTheScriptAndUndoRestoresTheScene)
{
    openAndSelect({QStringLiteral("Hard Cover")});
    const std::string before = dump();
    const int steps = undoCount();
    const std::string expected
        = scripted(sampleScene(),
                   select({QStringLiteral("Hard Cover")})
                       + QStringLiteral("document.selection[0].setParam('width', 17.5);"));
    ASSERT_NE(numberField(QStringLiteral("param.width")), nullptr);
    type(numberField(QStringLiteral("param.width")), QStringLiteral("17.5"));
    EXPECT_EQ(dump(), expected);
    EXPECT_EQ(undoCount(), steps + 1);
    EXPECT_EQ(undoText(), QStringLiteral("&Undo Change Width"));
    EXPECT_EQ(numberField(QStringLiteral("param.width"))->text(), QStringLiteral("17.50"));
    pick(editMenu(), QStringLiteral("&Undo Change Width"));
    EXPECT_EQ(dump(), before);
    // The field follows the undo, once the window is back in its event loop.
    settle();
    EXPECT_NE(numberField(QStringLiteral("param.width"))->text(), QStringLiteral("17.50"));

    m_window->resizeDocks(
        {m_window->sceneDock(), m_window->propertiesDock()}, {160, 600}, Qt::Vertical);
    type(numberField(QStringLiteral("param.width")), QStringLiteral("2000"));
    screenshot(m_window->propertiesDock(), QStringLiteral("propertiespanel-book"));
}

TEST_F(PropertiesPanelTest, ASliderDragOfSeveralMovesIsOneStep)
{
    openAndSelect({QStringLiteral("Hard Cover")});
    const std::string before = dump();
    const int steps = undoCount();
    auto *row = qobject_cast<InputLineSlider *>(list()->findWidget(QStringLiteral("position.x")));
    ASSERT_NE(row, nullptr);
    QSlider *slider = row->slider();
    QStyleOptionSlider option;
    option.initFrom(slider);
    option.orientation = slider->orientation();
    option.minimum = slider->minimum();
    option.maximum = slider->maximum();
    option.sliderPosition = slider->sliderPosition();
    option.sliderValue = slider->value();
    const QPoint handle
        = slider->style()
              ->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, slider)
              .center();
    QTest::mousePress(slider, Qt::LeftButton, Qt::NoModifier, handle);
    for (int step = 1; step <= 5; ++step) {
        QMouseEvent move(QEvent::MouseMove,
                         handle + QPoint(8 * step, 0),
                         slider->mapToGlobal(handle + QPoint(8 * step, 0)),
                         Qt::NoButton,
                         Qt::LeftButton,
                         Qt::NoModifier);
        QApplication::sendEvent(slider, &move);
        settle();
    }
    QTest::mouseRelease(slider, Qt::LeftButton, Qt::NoModifier, handle + QPoint(40, 0));
    settle();
    EXPECT_NE(dump(), before);
    EXPECT_EQ(undoCount(), steps + 1);
    EXPECT_EQ(undoText(), QStringLiteral("&Undo Change Position"));
    // The whole drag is what the script would do with the value it ended at.
    const std::string expected = scripted(
        sampleScene(),
        select({QStringLiteral("Hard Cover")})
            + QStringLiteral("var n = document.selection[0]; n.position = [%1, n.position[1], "
                             "n.position[2]];")
                  .arg(double(row->getValue()), 0, 'g', 9));
    EXPECT_EQ(dump(), expected);
    pick(editMenu(), QStringLiteral("&Undo Change Position"));
    EXPECT_EQ(dump(), before);
}

TEST_F(PropertiesPanelTest, RefusedValuesChangeNothingAndShowWhy)
{
    openAndSelect({QStringLiteral("Hard Cover"), QStringLiteral("Paperback")});
    const std::string before = dump();
    const int steps = undoCount();

    type(numberField(QStringLiteral("param.width")), QStringLiteral("5000"));
    EXPECT_EQ(dump(), before);
    EXPECT_EQ(undoCount(), steps);
    EXPECT_EQ(list()->refusal(), QStringLiteral("Width must be between 0.01 and 1000 cm"));
    EXPECT_TRUE(list()->findWidget(QStringLiteral("param.width"))->property("refused").toBool());
    EXPECT_TRUE(list()->findChild<QLabel *>(QStringLiteral("refusal"))->isVisible());

    // An image that cannot be read: the first book would take nothing either.
    const QString broken = m_folder.filePath(QStringLiteral("broken.png"));
    QFile file(broken);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("not an image");
    file.close();
    auto *chooser = qobject_cast<FileChooser *>(list()->findWidget(QStringLiteral("artwork")));
    ASSERT_NE(chooser, nullptr);
    type(chooser->field(), broken);
    EXPECT_EQ(dump(), before);
    EXPECT_EQ(undoCount(), steps);
    EXPECT_TRUE(list()->refusal().startsWith(broken + QStringLiteral(": ")))
        << list()->refusal().toStdString();
    EXPECT_TRUE(chooser->property("refused").toBool());

    // A good value clears the mark.
    type(numberField(QStringLiteral("param.width")), QStringLiteral("14"));
    EXPECT_TRUE(list()->refusal().isEmpty());
    EXPECT_FALSE(list()->findWidget(QStringLiteral("param.width"))->property("refused").toBool());
    EXPECT_EQ(undoCount(), steps + 1);
}

TEST_F(PropertiesPanelTest, SharedRowsEditEverySelectedShapeAndDifferingValuesShowMixed)
{
    const QStringList shapes{
        QStringLiteral("Paperback"), QStringLiteral("Hard Cover"), QStringLiteral("DVD Case")};
    openAndSelect(shapes);
    // Only what all three have: no paperback style, no case's cover angle.
    EXPECT_EQ(list()->findWidget(QStringLiteral("param.type")), nullptr);
    EXPECT_EQ(list()->findWidget(QStringLiteral("param.coverAngle")), nullptr);
    EXPECT_NE(list()->findWidget(QStringLiteral("param.height")), nullptr);
    auto *width
        = qobject_cast<InputLineSlider *>(list()->findWidget(QStringLiteral("param.width")));
    ASSERT_NE(width, nullptr);
    EXPECT_TRUE(width->isMixed());
    EXPECT_EQ(width->field()->placeholderText(), QStringLiteral("mixed"));
    auto *name = qobject_cast<QLineEdit *>(list()->findWidget(QStringLiteral("name")));
    ASSERT_NE(name, nullptr);
    EXPECT_TRUE(name->text().isEmpty());
    auto *visible = qobject_cast<QCheckBox *>(list()->findWidget(QStringLiteral("visible")));
    ASSERT_NE(visible, nullptr);
    EXPECT_EQ(visible->checkState(), Qt::Checked);

    const int steps = undoCount();
    const std::string expected = scripted(
        sampleScene(),
        select(shapes)
            + QStringLiteral(
                "document.selection.forEach(function (n) { n.setParam('width', 12); });"));
    type(width->field(), QStringLiteral("12"));
    EXPECT_EQ(dump(), expected);
    EXPECT_EQ(undoCount(), steps + 1);
    EXPECT_FALSE(width->isMixed());
    EXPECT_EQ(width->field()->text(), QStringLiteral("12.00"));

    // Hiding all three, then showing them: one step each.
    visible->click();
    EXPECT_EQ(dump(),
              scripted(sampleScene(),
                       select(shapes)
                           + QStringLiteral("document.selection.forEach(function (n) {"
                                            " n.setParam('width', 12); n.visible = false; });")));
    EXPECT_EQ(undoText(), QStringLiteral("&Undo Hide"));
    EXPECT_EQ(undoCount(), steps + 2);
}

TEST_F(PropertiesPanelTest, ALightsRowsAndRenamingThroughTheNameField)
{
    openAndSelect({QStringLiteral("Key Light")});
    EXPECT_EQ(list()->findWidget(QStringLiteral("param.width")), nullptr);
    EXPECT_EQ(list()->findWidget(QStringLiteral("artwork")), nullptr);
    ASSERT_NE(numberField(QStringLiteral("intensity")), nullptr);
    ASSERT_NE(numberField(QStringLiteral("shadowBlur")), nullptr);
    auto *shadows = qobject_cast<QCheckBox *>(list()->findWidget(QStringLiteral("castShadows")));
    ASSERT_NE(shadows, nullptr);
    EXPECT_TRUE(shadows->isChecked());
    const std::string before = dump();

    shadows->click();
    type(numberField(QStringLiteral("intensity")), QStringLiteral("1.25"));
    type(numberField(QStringLiteral("shadowBlur")), QStringLiteral("2"));
    EXPECT_EQ(list()->refusal(), QStringLiteral("Shadow Blur must be between 0 and 1"));
    type(qobject_cast<QLineEdit *>(list()->findWidget(QStringLiteral("name"))),
         QStringLiteral("Sun"));
    EXPECT_EQ(undoText(), QStringLiteral("&Undo Rename"));
    EXPECT_EQ(dump(),
              scripted(sampleScene(),
                       select({QStringLiteral("Key Light")})
                           + QStringLiteral("var l = document.selection[0]; l.castShadows = false;"
                                            " l.intensity = 1.25; l.name = 'Sun';")));
    // A name no scene file could hold is refused.
    type(qobject_cast<QLineEdit *>(list()->findWidget(QStringLiteral("name"))),
         QString(300, QLatin1Char('n')));
    EXPECT_EQ(list()->refusal(), QStringLiteral("Name: is 300 characters long; the limit is 256"));
    EXPECT_EQ(qobject_cast<QLineEdit *>(list()->findWidget(QStringLiteral("name")))->text(),
              QStringLiteral("Sun"));
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(dump(), before);
}

TEST_F(PropertiesPanelTest, ArtworkChosenInTheFileDialogAndNothingSelected)
{
    openAndSelect({QStringLiteral("Hard Cover")});
    const QString image = m_folder.filePath(QStringLiteral("cover.png"));
    QImage picture(64, 96, QImage::Format_RGB32);
    picture.fill(Qt::darkCyan);
    ASSERT_TRUE(picture.save(image));
    const std::string expected
        = scripted(sampleScene(),
                   select({QStringLiteral("Hard Cover")})
                       + QStringLiteral("document.selection[0].artwork = '%1';").arg(image));
    auto *chooser = qobject_cast<FileChooser *>(list()->findWidget(QStringLiteral("artwork")));
    ASSERT_NE(chooser, nullptr);
    bool answered = false;
    QTimer::singleShot(0, [&] {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        dialog->selectFile(image);
        static_cast<QDialog *>(dialog)->accept(); // as the Open button does
        answered = true;
    });
    QTest::mouseClick(chooser->button(), Qt::LeftButton);
    settle();
    EXPECT_TRUE(answered);
    EXPECT_EQ(dump(), expected);
    EXPECT_EQ(undoText(), QStringLiteral("&Undo Change Artwork"));
    EXPECT_EQ(chooser->path(), image);

    // "" takes the artwork off again.
    type(chooser->field(), QString());
    EXPECT_EQ(dump(),
              scripted(sampleScene(),
                       select({QStringLiteral("Hard Cover")})
                           + QStringLiteral("document.selection[0].artwork = '';")));

    document().SetSelection({}, Document::ReplaceSelection);
    settle();
    EXPECT_EQ(list(), nullptr);
    EXPECT_TRUE(panel().findChild<QLabel *>(QStringLiteral("noSelection"))->isVisible());
}

} // namespace
