// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/iuserinterfaceproperties.h"
#include "hostapp/desktop/desktopexport.h"
#include "hostapp/ui/ipanelvalues.h"

#include <QObject>
#include <QPointer>

#include <vector>

namespace vantrel::host {

class BaseNode;
class Document;

// The editable values of the nodes selected in a document, as the rows of a property panel.
//
// The rows are those every selected node has (same key, same kind): the node's name and
// visibility, its placement, a shape's parameters and artwork, a light's settings. A row reads
// as the selected nodes' common value, or invalid (mixed) when they differ. A write goes to
// every selected node as one undo step named after the row ("Rename", "Change Width"), or, when
// the value is out of the row's range or any node refuses it, changes nothing and says why.
// A slider drag is one step however many values it writes.
class VANTREL_DESKTOP_EXPORT SelectionProperties : public QObject,
                                                   public IUserInterfaceProperties,
                                                   public IPanelValues
{
    Q_OBJECT
    Q_INTERFACES(IUserInterfaceProperties IPanelValues)

public:
    explicit SelectionProperties(QObject *parent = nullptr);
    ~SelectionProperties() override;

    void setDocument(Document *document);
    Document *document() const { return m_document; }

    // The selected nodes that have panel rows (every kind but the root).
    std::vector<BaseNode *> nodes() const;
    // The step name a write of that row gets in Edit > Undo.
    static QString stepName(const QString &property);

    QList<QVariantMap> GetPropertiesList() override;
    QVariant panelRead(const QString &property) const override;
    QString panelWrite(const QString &property, const QVariant &value) override;
    void panelGestureStarted(const QString &property) override;
    void panelGestureFinished(const QString &property) override;

private:
    void finishGesture();

    QPointer<Document> m_document;
    bool m_gesture = false;
};

} // namespace vantrel::host
