// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVariant>
#include <QtPlugin>

// Offered by an object whose panel rows are not its own Qt properties: an editor's panel for the
// nodes selected in a document, where one row stands for a value of every selected node and a
// user's edit must become one undo step. PropertyListWidget finds it with qobject_cast and then
// reads and writes through it instead of through Qt properties; objects without it keep the
// plain property access.
class IPanelValues
{
public:
    IPanelValues(const IPanelValues &) = delete;
    IPanelValues &operator=(const IPanelValues &) = delete;

    // The value the row shows; an invalid QVariant when the objects behind it hold different
    // values, which the panel shows as mixed.
    virtual QVariant panelRead(const QString &property) const = 0;
    // A user's edit of the row. Empty when it was taken; otherwise the reason it was refused, and
    // then nothing changed.
    virtual QString panelWrite(const QString &property, const QVariant &value) = 0;
    // A slider drag begins or ends: the writes in between are one gesture of the user's.
    virtual void panelGestureStarted(const QString &property) = 0;
    virtual void panelGestureFinished(const QString &property) = 0;

protected:
    IPanelValues() = default;
    virtual ~IPanelValues() = default;
};
#define VANTREL_IPANELVALUES_IID "org.vantrel.host.IPanelValues"
Q_DECLARE_INTERFACE(IPanelValues, VANTREL_IPANELVALUES_IID)
