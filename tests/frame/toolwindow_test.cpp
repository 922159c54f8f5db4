// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "frame/toolbarhelper.h"
#include "frame/toolsettings.h"
#include "frame/toolwindow.h"
#include "host/idocument.h"
#include "host/inode.h"
#include "host/itool.h"
#include "host/itransformations.h"
#include "hostapp/core/commands/session.h"
#include "hostapp/ui/inputlineslider.h"
#include "hostapp/ui/propertieslistbuilder.h"
#include "hostapp/ui/propertylistwidget.h"
#include "tests/support/testsupport.h"
#include "tests/support/windowdriver.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QCheckBox>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLayout>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSlider>

#include <algorithm>
#include <functional>

using namespace vantrel::host;
using vantrel::test::dump;
using vantrel::test::WayOut;
using vantrel::test::waysToCloseWithoutOk;

namespace {

// A settings object like the tools' own: it adds a "Preview" group when it starts and each write
// acts on the scene at once, within its own limits. Writing "count" also changes "share", the way
// a tool's setting can move another one (the panel learns of it through changed()).
class TestSettings final : public ToolSettings
{
    Q_OBJECT
    Q_PROPERTY(float angle READ angle WRITE setAngle)
    Q_PROPERTY(float share READ share WRITE setShare)
    Q_PROPERTY(int count READ count WRITE setCount)
    Q_PROPERTY(bool keep READ keep WRITE setKeep)

public:
    explicit TestSettings(IDocument *document)
        : ToolSettings(document, true)
        , m_preview(document->GetRootNode()->CreateChildGroup(QStringLiteral("Preview")))
    {}

    float angle() const { return m_angle; }
    void setAngle(float angle)
    {
        m_angle = std::clamp(angle, -180.0f, 180.0f);
        transformations()->SetRotation(Vector3{0, 0, m_angle}, false);
    }
    float share() const { return m_share; }
    void setShare(float share)
    {
        m_share = std::clamp(share, 0.0f, 1.0f);
        document()->SetAmbientIntensity(m_share);
    }
    int count() const { return m_count; }
    void setCount(int count)
    {
        m_count = std::clamp(count, 1, 30);
        transformations()->SetPosition(Vector3{float(m_count), 0, 0}, false);
        setShare(m_count / 30.0f);
        emit changed();
    }
    bool keep() const { return m_keep; }
    void setKeep(bool keep)
    {
        m_keep = keep;
        m_preview->SetVisible(keep);
    }

    QList<QVariantMap> GetPropertiesList() override
    {
        PropertiesListBuilder builder(QStringLiteral("Test Tool"));
        builder.AddPanel(QStringLiteral("Settings"));
        builder.AddSlider(QStringLiteral("Angle"), QStringLiteral("angle"), -180, 180, 2754, 1);
        builder.AddPercentSlider(QStringLiteral("Share"), QStringLiteral("share"), true);
        builder.AddSlider(QStringLiteral("Count"), QStringLiteral("count"), 1, 30, 288, 0);
        builder.AddCheckBox(
            QStringLiteral("Keep"), QStringLiteral("keep"), PropertiesListBuilder::TextFirst);
        return builder;
    }

private:
    ITransformations *transformations() const
    {
        return qobject_cast<ITransformations *>(m_preview);
    }

    INode *m_preview;
    float m_angle = 0;
    float m_share = 0;
    int m_count = 1;
    bool m_keep = true;
};

class TestWindow final : public ToolWindow
{
    Q_OBJECT

public:
    TestWindow(IApplicationContext &app, IDocumentContext &context)
        : ToolWindow(app, context, nullptr)
    {
        setUp(new TestSettings(document()), QStringLiteral("Test Tool"), QSize(600, 420));
    }
};

// Opens the test window the way the tools open theirs, and remembers the contexts it ran on.
class TestWindowTool final : public ITool
{
public:
    explicit TestWindowTool(IApplicationContext &app)
        : m_app(app)
    {}
    QString GetTitle() const override { return QStringLiteral("Test Tool..."); }
    QKeySequence GetShortcut() const override { return QKeySequence(); }
    int GetOrder() const override { return 9; }
    bool IsEnabled(const IDocumentContext &) const override { return true; }
    void Execute(IDocumentContext &context) override
    {
        executedOn.append(&context);
        context.GetUserInterface()->ShowToolWindow(new TestWindow(m_app, context));
    }
    void AttachToDocument(IDocumentContext &) override {}

    QList<IDocumentContext *> executedOn;

private:
    IApplicationContext &m_app;
};

class TestToolbarHelper final : public ToolbarHelper
{
    Q_OBJECT

public:
    TestToolbarHelper(ITool *tool, IDocumentContext *context, int position)
        : ToolbarHelper(tool, context, QStringLiteral("TestButton"), position)
    {
        connect(action(), &QAction::triggered, this, &TestToolbarHelper::onTest);
    }

private slots:
    void onTest() { runTool(); }
};

// The top-level node of that name, or null.
INode *topLevel(Document &document, const QString &name)
{
    for (INode *node : document.GetRootNode()->GetChildren()) {
        if (node->GetName() == name)
            return node;
    }
    return nullptr;
}

void settleDeletes()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void typeInto(QLineEdit *field, const QString &text)
{
    field->setText(text);
    field->setModified(true);
    emit field->editingFinished();
}

class ToolWindowTest : public ::testing::Test
{
protected:
    ToolWindowTest()
    {
        QString error;
        m_session.document().GetRootNode()->CreateChildGroup(QStringLiteral("Shelf"));
        m_tool = new TestWindowTool(m_session.application());
        m_session.tools().RegisterTool(m_tool);
    }

    TestWindow *open()
    {
        m_tool->Execute(m_session.context());
        return static_cast<TestWindow *>(m_session.userInterface().openWindow());
    }
    PropertyListWidget *panel(QDialog *window) { return window->findChild<PropertyListWidget *>(); }

    QString run(const QString &program)
    {
        QString error;
        QStringList printed;
        QObject::connect(&m_session.runner(),
                         &ScriptRunner::printed,
                         &m_session.runner(),
                         [&printed](const QString &line) { printed.append(line); });
        const bool ok = m_session.runner().evaluate(program, QStringLiteral("test.js"), &error);
        QObject::disconnect(&m_session.runner(), &ScriptRunner::printed, nullptr, nullptr);
        return ok ? printed.join(QLatin1Char('\n')) : QStringLiteral("error: ") + error;
    }

    Session m_session;
    TestWindowTool *m_tool;
};

} // namespace

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

TEST_F(ToolWindowTest, AToolbarActionRunsItsToolOnTheContextItWasMadeFor)
{
    HeadlessUserInterface otherUi;
    Document otherDocument;
    DocumentContext other(&otherDocument, &otherUi);

    auto *late = new TestToolbarHelper(m_tool, &m_session.context(), 110);
    auto *early = new TestToolbarHelper(m_tool, &m_session.context(), 100);
    new TestToolbarHelper(m_tool, &other, 100);
    EXPECT_EQ(late->parent(), &m_session.userInterface());
    EXPECT_EQ(early->parent(), &m_session.userInterface());

    const QList<QAction *> actions = m_session.userInterface().toolbarActions();
    ASSERT_EQ(actions.size(), 2);
    EXPECT_EQ(actions[0]->parent(), &m_session.userInterface());
    EXPECT_EQ(actions[0]->text(), QStringLiteral("Test Tool..."));
    EXPECT_EQ(actions[0]->property("buttonId").toString(), QStringLiteral("TestButton"));

    // The other document's button opens the window there, whatever else is open.
    otherUi.toolbarActions().front()->trigger();
    ASSERT_EQ(m_tool->executedOn.size(), 1);
    EXPECT_EQ(m_tool->executedOn.back(), &other);
    EXPECT_NE(otherUi.openWindow(), nullptr);
    EXPECT_EQ(m_session.userInterface().openWindow(), nullptr);
    actions[1]->trigger();
    EXPECT_EQ(m_tool->executedOn.back(), &m_session.context());
    otherUi.openWindow()->reject();
    m_session.userInterface().openWindow()->reject();
    settleDeletes();
}

TEST_F(ToolWindowTest, ScriptsDriveTheRealPanel)
{
    const QByteArray before = dump(m_session.document());
    EXPECT_EQ(run(QStringLiteral(
                  "document.runTool('Test Tool...');"
                  "var w = document.window;"
                  "w.set('angle', 500); w.set('count', 6); w.set('keep', false);"
                  "print(w.title, w.get('angle'), w.get('count'), w.get('share'), w.get('keep'));"
                  "w.cancel();"
                  "print(document.window, document.findNode('Preview'))")),
              QStringLiteral("Test Tool 180 6 0.20000000298023224 false\nnull null"));
    EXPECT_EQ(dump(m_session.document()), before);

    EXPECT_EQ(run(QStringLiteral("document.runTool('Test Tool...');"
                                 "document.window.set('width', 3)")),
              QStringLiteral(
                  "error: test.js:1: Error: The window has no setting \"width\" that takes 3"));
    EXPECT_EQ(run(QStringLiteral("document.runTool('Test Tool...');"
                                 "document.window.set('keep', 'yes')")),
              QStringLiteral(
                  "error: test.js:1: Error: The window has no setting \"keep\" that takes yes"));
    EXPECT_EQ(dump(m_session.document()), before) << "a failed script leaves nothing behind";

    EXPECT_EQ(run(QStringLiteral("document.runTool('Test Tool...');"
                                 "document.window.set('count', 4); document.window.accept();"
                                 "print(document.findNode('Preview').position)")),
              QStringLiteral("4,0,0"));
}

TEST_F(ToolWindowTest, OneWindowAtATimeWithItsUndoGroupsNested)
{
    const QByteArray before = dump(m_session.document());

    // A script running a tool closes the open window first, as Cancel would, so that the next
    // tool's undo group does not open inside the old one's.
    EXPECT_EQ(run(QStringLiteral("document.runTool('Test Tool...');"
                                 "var first = document.window; first.set('count', 12);"
                                 "document.runTool('Test Tool...');"
                                 "var second = document.window;"
                                 "print(first === second, second.get('count'), document.ambient);"
                                 "try { first.cancel(); } catch (e) { print('closed'); }"
                                 "second.set('count', 6); second.accept();"
                                 "print(document.findNodes('Preview').length, document.ambient)")),
              QStringLiteral("false 1 0.30000001192092896\nclosed\n1 0.20000000298023224"));
    EXPECT_EQ(m_session.document().history().openGroupCount(), 0);
    m_session.document().undo();
    EXPECT_EQ(dump(m_session.document()), before);

    // A window handed over while another is open opened its group inside the open one's: it is
    // the one refused, at once, and the open window's preview stays as it was.
    QPointer<TestWindow> first = open();
    ASSERT_TRUE(panel(first)->setPanelValue(QStringLiteral("count"), 12.0));
    const QByteArray preview = dump(m_session.document());
    m_tool->Execute(m_session.context());
    EXPECT_EQ(m_session.userInterface().openWindow(), first.data());
    EXPECT_EQ(dump(m_session.document()), preview);
    EXPECT_EQ(m_session.document().history().openGroupCount(), 1);
    first->reject();
    settleDeletes();
    EXPECT_EQ(dump(m_session.document()), before);
    EXPECT_EQ(m_session.document().history().openGroupCount(), 0);
}

#include "toolwindow_test.moc"
