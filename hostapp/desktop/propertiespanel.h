// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/desktop/desktopexport.h"

#include <QList>
#include <QPointer>
#include <QVariantMap>
#include <QWidget>

class PropertyListWidget;
class QDockWidget;
class QLabel;
class QScrollArea;

namespace vantrel::host {

class Document;
class SelectionProperties;

// The Properties dock's contents: the property panel of the document's selection. It follows
// the document: when the selection changes, or what is selected changes kind, the rows are
// built anew; after any other change the values are shown again, leaving alone a field the
// user is typing in and a slider being dragged. With nothing selected it says so.
class VANTREL_DESKTOP_EXPORT PropertiesPanel : public QWidget
{
    Q_OBJECT

public:
    explicit PropertiesPanel(QWidget *parent = nullptr);
    ~PropertiesPanel() override;

    // The panel in the dock, made and put there the first time.
    static PropertiesPanel &of(QDockWidget *dock);

    // Tall enough for a shape's rows, so that a first start gives the dock room beside the tree.
    QSize sizeHint() const override { return QSize(360, 520); }

    void setDocument(Document *document);
    SelectionProperties *properties() const { return m_properties; }
    // The panel of the selection; null when nothing is selected.
    PropertyListWidget *list() const { return m_list; }

private:
    void scheduleFollow();
    void follow();

    QPointer<Document> m_document;
    SelectionProperties *m_properties;
    QLabel *m_empty;
    QScrollArea *m_scroll;
    PropertyListWidget *m_list = nullptr;
    QList<QVariantMap> m_rows; // the rows m_list was built from
    bool m_followPending = false;
};

} // namespace vantrel::host
