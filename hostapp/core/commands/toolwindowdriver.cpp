// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/commands/toolwindowdriver.h"

#include "host/itool.h"
#include "hostapp/core/commands/session.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/document/headlessuserinterface.h"
#include "hostapp/ui/panelaccess.h"

#include <QAction>
#include <QCoreApplication>
#include <QDialog>
#include <QPushButton>
#include <QTextStream>

namespace vantrel::host {

namespace {

// What a user does with a tool window once it is open: move its sliders and press OK. The
// window is the tool's own, driven through its real property panel.
bool driveWindow(Session &session,
                 const QString &opener,
                 const PanelSettings &settings,
                 QTextStream &out,
                 QTextStream &err)
{
    QDialog *window = session.userInterface().openWindow();
    PanelAccess *panel = FindPanel(window);
    auto *ok = window ? window->findChild<QPushButton *>(QStringLiteral("ok")) : nullptr;
    if (!panel || !ok) {
        err << "vantrel: " << opener << " opened no settings window\n";
        return false;
    }
    out << "window \"" << window->windowTitle() << "\":";
    for (const auto &[property, value] : settings) {
        panel->setPanelValue(QLatin1String(property), value);
        out << ' ' << property << ' ' << panel->panelValue(QLatin1String(property)).toDouble();
    }
    out << ", OK\n";
    ok->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return true;
}

} // namespace

// A tool window opened from its tool-bar button.
bool runToolbarWindow(Session &session,
                      const QString &buttonId,
                      const PanelSettings &settings,
                      QTextStream &out,
                      QTextStream &err)
{
    QAction *button = nullptr;
    for (QAction *action : session.userInterface().toolbarActions()) {
        if (action->property("buttonId").toString() == buttonId)
            button = action;
    }
    if (!button) {
        err << "vantrel: the plug-in put no \"" << buttonId << "\" button on the tool bar\n";
        return false;
    }
    session.document().history().setNextStepName(button->text());
    button->trigger();
    return driveWindow(
        session, QStringLiteral("the \"%1\" button").arg(button->text()), settings, out, err);
}

// A tool window opened from the tool list, as tools without a tool-bar button are.
bool runListedWindow(Session &session,
                     const QString &title,
                     const PanelSettings &settings,
                     QTextStream &out,
                     QTextStream &err)
{
    ITool *tool = session.tools().findTool(title);
    if (!tool) {
        err << "vantrel: the plug-in registered no \"" << title << "\" tool\n";
        return false;
    }
    session.document().history().setNextStepName(title);
    tool->Execute(session.context());
    return driveWindow(session, QStringLiteral("\"%1\"").arg(title), settings, out, err);
}

} // namespace vantrel::host
