// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/ui/propertywidgethelper.h"

#include <QDialog>

class Button;
class IApplicationContext;
class IDocument;
class IDocumentContext;
class PropertyListWidget;
class QDialogButtonBox;
class QSize;
class ToolSettings;

// The OK / Cancel row every tool window ends with: OK ("ok") auto-default with the accept role,
// Cancel ("cancel") with the reject role and connected to the window's reject(). The caller
// connects OK to its own accept slot.
struct ToolButtons
{
    QDialogButtonBox *box;
    Button *ok;
    Button *cancel;
};
ToolButtons MakeToolButtons(QDialog &window);

// Gives a tool window its fixed size and title and the flags of every tool window: fixed size,
// no context-help button in the title bar.
void FinishToolWindow(QDialog &window, const QString &title, const QSize &size);

// A tool window: the host's property panel for a settings object above the OK / Cancel row.
// OK marks the settings accepted; every other way out (Cancel, Esc, the title-bar close button)
// leaves them unaccepted. Destroying the window destroys the settings object, which keeps or
// takes back the tool's changes; the window remembers nothing of the scene itself.
class ToolWindow : public QDialog
{
    Q_OBJECT

public:
    ~ToolWindow() override;

    ToolSettings *settings() const { return m_settings; }

protected:
    ToolWindow(IApplicationContext &app, IDocumentContext &context, QWidget *parent);

    IDocument *document() const { return m_document; }
    // Takes ownership of the settings object (made for document()) and builds the window
    // around its panel.
    void setUp(ToolSettings *settings, const QString &title, const QSize &size);

protected slots:
    void onAccept();

private:
    IDocument *m_document;
    ToolSettings *m_settings = nullptr;
    PropertyListWidget *m_panel = nullptr;
    PropertyWidgetHelper m_helper;
};
