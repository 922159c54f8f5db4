// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// The tool window frame: OK and every other way out, the frame, the panel and its object.
#include "tests/frame/toolwindowtest.h"
#include "tests/support/windowdriver.h"

using namespace toolwindowtest;
using vantrel::test::dump;
using vantrel::test::WayOut;
using vantrel::test::waysToCloseWithoutOk;

TEST_F(ToolWindowTest, OkKeepsOneUndoStepAndEveryOtherWayOutRestoresTheScene)
{
    const QByteArray before = dump(m_session.document());
    const int stepsBefore = m_session.document().history().undoCount();

    for (const WayOut &wayOut : waysToCloseWithoutOk()) {
        SCOPED_TRACE(wayOut.name);
        TestWindow *window = open();
        ASSERT_NE(window, nullptr);
        ASSERT_TRUE(panel(window)->setPanelValue(QStringLiteral("angle"), 30.0));
        ASSERT_TRUE(panel(window)->setPanelValue(QStringLiteral("count"), 12.0));
        ASSERT_TRUE(panel(window)->setPanelValue(QStringLiteral("keep"), false));
        EXPECT_NE(dump(m_session.document()), before) << "the preview shows at once";
        QPointer<QDialog> watched(window);
        wayOut(window);
        settleDeletes();
        EXPECT_TRUE(watched.isNull()) << "the host deletes a closed window";
        EXPECT_EQ(dump(m_session.document()), before);
        EXPECT_EQ(m_session.document().history().undoCount(), stepsBefore);
    }

    TestWindow *window = open();
    ASSERT_TRUE(panel(window)->setPanelValue(QStringLiteral("angle"), 30.0));
    ASSERT_TRUE(panel(window)->setPanelValue(QStringLiteral("count"), 12.0));
    const QByteArray preview = dump(m_session.document());
    window->findChild<QPushButton *>(QStringLiteral("ok"))->click();
    settleDeletes();
    EXPECT_EQ(m_session.userInterface().openWindow(), nullptr);
    EXPECT_EQ(dump(m_session.document()), preview) << "OK keeps the last preview";
    EXPECT_EQ(m_session.document().history().undoCount(), stepsBefore + 1);
    m_session.document().undo();
    EXPECT_EQ(dump(m_session.document()), before) << "one undo step takes the whole window back";
}

TEST_F(ToolWindowTest, TheWindowHasTheToolWindowFrame)
{
    TestWindow *window = open();
    auto *ok = window->findChild<QPushButton *>(QStringLiteral("ok"));
    auto *cancel = window->findChild<QPushButton *>(QStringLiteral("cancel"));
    ASSERT_TRUE(ok && cancel);
    EXPECT_EQ(ok->text(), QStringLiteral("OK"));
    EXPECT_EQ(cancel->text(), QStringLiteral("Cancel"));
    EXPECT_TRUE(ok->autoDefault());
    EXPECT_TRUE(ok->isDefault()) << "Enter presses OK";
    EXPECT_EQ(ok->parent(), cancel->parent());

    auto *box = window->findChild<QDialogButtonBox *>();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->buttonRole(ok), QDialogButtonBox::AcceptRole);
    EXPECT_EQ(box->buttonRole(cancel), QDialogButtonBox::RejectRole);
    EXPECT_EQ(box->contentsMargins(), QMargins(20, 25, 5, 5));
    EXPECT_EQ(box->layout()->spacing(), 10);
    EXPECT_EQ(window->layout()->spacing(), 0);
    EXPECT_EQ(window->layout()->indexOf(panel(window)), 0);
    EXPECT_EQ(window->layout()->indexOf(box), 1);

    EXPECT_EQ(window->windowTitle(), QStringLiteral("Test Tool"));
    EXPECT_EQ(window->size(), QSize(600, 420));
    EXPECT_EQ(window->minimumSize(), window->maximumSize()) << "cannot be resized";
    EXPECT_FALSE(window->windowFlags() & Qt::WindowContextHelpButtonHint);
    EXPECT_TRUE(window->windowFlags() & Qt::MSWindowsFixedSizeDialogHint);
    EXPECT_GE(window->metaObject()->indexOfSlot("onAccept()"), 0);
    window->reject();
}

TEST_F(ToolWindowTest, ThePanelWritesAtOnceAndShowsWhatTheObjectKept)
{
    TestWindow *window = open();
    PropertyListWidget *list = panel(window);
    auto *settings = static_cast<TestSettings *>(window->settings());
    auto *angle = qobject_cast<InputLineSlider *>(list->findWidget(QStringLiteral("angle")));
    auto *share = qobject_cast<InputLineSlider *>(list->findWidget(QStringLiteral("share")));
    auto *count = qobject_cast<InputLineSlider *>(list->findWidget(QStringLiteral("count")));
    auto *keep = qobject_cast<QCheckBox *>(list->findWidget(QStringLiteral("keep")));
    ASSERT_TRUE(angle && share && count && keep);
    EXPECT_EQ(list->findWidget(QStringLiteral("nothing")), nullptr);

    // A slider drag reaches the property and the scene at once.
    angle->slider()->setValue(angle->slider()->maximum() * 3 / 4); // 3/4 of -180..180
    EXPECT_FLOAT_EQ(settings->angle(), 90.0f);
    EXPECT_EQ(angle->field()->text(), QStringLiteral("90.0\u00b0"));
    EXPECT_FLOAT_EQ(
        qobject_cast<ITransformations *>(topLevel(m_session.document(), QStringLiteral("Preview")))
            ->GetRotation()
            .z,
        90.0f);

    // A typed number beyond the object's limit shows the limit the object applied.
    typeInto(angle->field(), QStringLiteral("500"));
    EXPECT_FLOAT_EQ(settings->angle(), 180.0f);
    EXPECT_EQ(angle->field()->text(), QStringLiteral("180.0\u00b0"));
    typeInto(count->field(), QStringLiteral("-7"));
    EXPECT_EQ(settings->count(), 1);
    EXPECT_EQ(count->field()->text(), QStringLiteral("1"));
    typeInto(angle->field(), QStringLiteral("twelve"));
    EXPECT_FLOAT_EQ(settings->angle(), 180.0f) << "text that is no number changes nothing";
    EXPECT_EQ(angle->field()->text(), QStringLiteral("180.0\u00b0"));

    // Percent sliders show 0..100 % and write 0..1; an integer setting rounds.
    typeInto(share->field(), QStringLiteral("40 %"));
    EXPECT_FLOAT_EQ(settings->share(), 0.4f);
    EXPECT_FLOAT_EQ(m_session.document().GetAmbientIntensity(), 0.4f);
    typeInto(count->field(), QStringLiteral("14.6"));
    EXPECT_EQ(settings->count(), 15);
    // Writing the count moved the share too; changed() made the panel show it.
    EXPECT_EQ(share->field()->text(), QStringLiteral("50 %"));

    keep->click();
    EXPECT_FALSE(settings->keep());
    EXPECT_FALSE(topLevel(m_session.document(), QStringLiteral("Preview"))->IsVisible());

    // A change made elsewhere shows after updateAll().
    settings->setAngle(-45);
    settings->setKeep(true);
    EXPECT_EQ(angle->field()->text(), QStringLiteral("180.0\u00b0")) << "not refreshed yet";
    list->updateAll();
    EXPECT_EQ(angle->field()->text(), QStringLiteral("-45.0\u00b0"));
    EXPECT_TRUE(keep->isChecked());
    EXPECT_DOUBLE_EQ(list->panelValue(QStringLiteral("angle")).toDouble(), -45.0);

    // The panel refuses what a user could not enter.
    EXPECT_FALSE(list->setPanelValue(QStringLiteral("angle"), QStringLiteral("12")));
    EXPECT_FALSE(list->setPanelValue(QStringLiteral("keep"), 1));
    EXPECT_FALSE(list->setPanelValue(QStringLiteral("missing"), 1));
    EXPECT_FALSE(list->panelValue(QStringLiteral("missing")).isValid());
    window->reject();
}

TEST_F(ToolWindowTest, ThePanelOutlivesItsObjectWithoutTouchingIt)
{
    // The window's own order: the settings object goes first, then the helper, then the panel.
    const QByteArray before = dump(m_session.document());
    auto *settings = new TestSettings(&m_session.document());
    struct CountingHelper final : IPropertyListHelper
    {
        void ReportPanelError(const QString &) override { ++errors; }
        int errors = 0;
    } helper;
    auto *list = new PropertyListWidget(settings, &helper);
    auto *angle = qobject_cast<InputLineSlider *>(list->findWidget(QStringLiteral("angle")));
    ASSERT_NE(angle, nullptr);
    angle->field()->setText(QStringLiteral("33"));
    angle->field()->setModified(true); // typed but not yet confirmed
    delete settings;
    EXPECT_EQ(dump(m_session.document()), before) << "not accepted: the preview went";
    emit angle->field()->editingFinished(); // the field loses focus as the window goes
    list->updateAll();
    EXPECT_FALSE(list->setPanelValue(QStringLiteral("count"), 3.0) && helper.errors);
    delete list;
    EXPECT_EQ(helper.errors, 0);
    EXPECT_EQ(dump(m_session.document()), before);
}

TEST_F(ToolWindowTest, ARowNamingAMissingSettingIsReportedAndDisabled)
{
    struct Broken final : ToolSettings
    {
        Broken()
            : ToolSettings(nullptr, false)
        {}
        QList<QVariantMap> GetPropertiesList() override
        {
            PropertiesListBuilder builder(QStringLiteral("Broken"));
            builder.AddSlider(QStringLiteral("Width"), QStringLiteral("width"), 0, 1, 0, 2);
            return builder;
        }
    } broken;
    PropertyWidgetHelper helper(m_session.application(), m_session.context());
    PropertyListWidget list(&broken, &helper);
    ASSERT_EQ(m_session.userInterface().messages().size(), 1);
    EXPECT_EQ(m_session.userInterface().messages().front().text,
              QStringLiteral(
                  "The panel's row \"Width\" names the setting \"width\", which does not exist"));
    EXPECT_EQ(m_session.userInterface().messages().front().kind, 2);
    EXPECT_FALSE(list.findWidget(QStringLiteral("width"))->isEnabled());
    EXPECT_FALSE(list.setPanelValue(QStringLiteral("width"), 0.5));
}
