// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// What the tool window tests share: a settings object, window, tool and tool-bar helper made the
// way the tools make theirs, and a session with the tool registered.
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

namespace toolwindowtest {

using namespace vantrel::host;

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
inline INode *topLevel(Document &document, const QString &name)
{
    for (INode *node : document.GetRootNode()->GetChildren()) {
        if (node->GetName() == name)
            return node;
    }
    return nullptr;
}

inline void settleDeletes()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

inline void typeInto(QLineEdit *field, const QString &text)
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

} // namespace toolwindowtest
