// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/ui/hostuiexport.h"
#include "hostapp/ui/ipropertylisthelper.h"

class IApplicationContext;
class IDocumentContext;

// The host's panel helper for a document window: panel errors go to that window's user
// interface as error messages (on standard error when the document has no window).
class VANTREL_HOSTUI_EXPORT PropertyWidgetHelper final : public IPropertyListHelper
{
public:
    PropertyWidgetHelper(IApplicationContext &app, IDocumentContext &context);

    void ReportPanelError(const QString &text) override;

private:
    IDocumentContext &m_context;
};
