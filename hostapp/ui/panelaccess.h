// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QVariant>
#include <QtPlugin>

// Offered by a tool window's property panel so that scripts can read and change it as a user
// would (document.window.get and set): a change goes through the panel's widget into the settings
// object's property, exactly like a slider move.
class PanelAccess
{
public:
    PanelAccess(const PanelAccess &) = delete;
    PanelAccess &operator=(const PanelAccess &) = delete;

    // The value the panel shows for the property; invalid when the panel has no such row.
    virtual QVariant panelValue(const QString &property) const = 0;
    // A user's edit of that row; false when there is no such row or the value is not one.
    virtual bool setPanelValue(const QString &property, const QVariant &value) = 0;

protected:
    PanelAccess() = default;
    virtual ~PanelAccess() = default;
};
#define VANTREL_PANELACCESS_IID "org.vantrel.host.PanelAccess"
Q_DECLARE_INTERFACE(PanelAccess, VANTREL_PANELACCESS_IID)

// The property panel inside a tool window (any of its descendants that offers PanelAccess), or
// null when the window has none.
inline PanelAccess *FindPanel(const QObject *window)
{
    const QList<QObject *> children
        = window ? window->findChildren<QObject *>() : QList<QObject *>();
    for (QObject *child : children) {
        if (auto *panel = qobject_cast<PanelAccess *>(child))
            return panel;
    }
    return nullptr;
}
