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

// The application context is part of the helper's signature for hosts whose panels need it;
// this host's panels only report to the document window.
PropertyWidgetHelper::PropertyWidgetHelper(IApplicationContext &, IDocumentContext &context)
    : m_context(context)
{}

void PropertyWidgetHelper::ReportPanelError(const QString &text)
{
    if (IUserInterface *ui = m_context.GetUserInterface())
        ui->ShowMessage(text, ErrorMessage);
    else
        qWarning().noquote() << text;
}
