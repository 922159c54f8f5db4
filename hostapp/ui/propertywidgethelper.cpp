// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/ui/propertywidgethelper.h"

#include "host/idocumentcontext.h"
#include "host/iuserinterface.h"

#include <QString>
#include <QtDebug>

namespace {
constexpr int ErrorMessage = 2;
} // namespace

PropertyWidgetHelper::PropertyWidgetHelper(IApplicationContext &app, IDocumentContext &context)
    : m_app(app)
    , m_context(context)
{}

void PropertyWidgetHelper::ReportPanelError(const QString &text)
{
    if (IUserInterface *ui = m_context.GetUserInterface())
        ui->ShowMessage(text, ErrorMessage);
    else
        qWarning().noquote() << text;
}
