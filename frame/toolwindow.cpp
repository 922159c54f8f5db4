// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "frame/toolwindow.h"

#include "frame/toolsettings.h"
#include "host/idocumentcontext.h"
#include "hostapp/ui/button.h"
#include "hostapp/ui/propertylistwidget.h"

#include <QDialogButtonBox>
#include <QLayout>
#include <QVBoxLayout>

ToolButtons MakeToolButtons(QDialog &window)
{
    auto *box = new QDialogButtonBox(Qt::Horizontal);
    box->setContentsMargins(20, 25, 5, 5);
    box->layout()->setSpacing(10);
    box->setCenterButtons(false);

    auto *ok = new Button(QStringLiteral("OK"), &window);
    ok->setObjectName(QStringLiteral("ok"));
    ok->setAutoDefault(true);
    auto *cancel = new Button(QStringLiteral("Cancel"), &window);
    cancel->setObjectName(QStringLiteral("cancel"));
    box->addButton(ok, QDialogButtonBox::AcceptRole);
    box->addButton(cancel, QDialogButtonBox::RejectRole);
    QObject::connect(cancel, &QPushButton::clicked, &window, &QDialog::reject);
    return ToolButtons{box, ok, cancel};
}

void FinishToolWindow(QDialog &window, const QString &title, const QSize &size)
{
    window.setFixedSize(size);
    window.setWindowTitle(title);
    // A dialog's default flags carry the context-help hint: toggling it removes the button.
    window.setWindowFlags((window.windowFlags() | Qt::MSWindowsFixedSizeDialogHint)
                          ^ Qt::WindowContextHelpButtonHint);
}

ToolWindow::ToolWindow(IApplicationContext &app, IDocumentContext &context, QWidget *parent)
    : QDialog(parent)
    , m_document(context.GetDocument())
    , m_helper(app, context)
{}

ToolWindow::~ToolWindow()
{
    // Settles the tool's undo group (or camera): kept when accepted, taken back otherwise.
    delete m_settings;
}

void ToolWindow::setUp(ToolSettings *settings, const QString &title, const QSize &size)
{
    m_settings = settings;
    m_panel = new PropertyListWidget(settings, &m_helper, this);

    const ToolButtons buttons = MakeToolButtons(*this);
    connect(buttons.ok, &QPushButton::clicked, this, &ToolWindow::onAccept);
    connect(settings, &ToolSettings::changed, m_panel, &PropertyListWidget::updateAll);

    auto *layout = new QVBoxLayout(this);
    layout->setSpacing(0);
    layout->addWidget(m_panel);
    layout->addWidget(buttons.box);
    FinishToolWindow(*this, title, size);
}

void ToolWindow::onAccept()
{
    if (m_settings)
        m_settings->setAccepted(true);
    QDialog::accept();
}
