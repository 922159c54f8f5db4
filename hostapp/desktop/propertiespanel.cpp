// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/desktop/propertiespanel.h"

#include "hostapp/core/document/document.h"
#include "hostapp/desktop/selectionproperties.h"
#include "hostapp/ui/propertylistwidget.h"

#include <QDockWidget>
#include <QLabel>
#include <QScrollArea>
#include <QTimer>
#include <QVBoxLayout>

namespace vantrel::host {

PropertiesPanel::PropertiesPanel(QWidget *parent)
    : QWidget(parent)
    , m_properties(new SelectionProperties(this))
    , m_empty(new QLabel(tr("No selection"), this))
    , m_scroll(new QScrollArea(this))
{
    setObjectName(QStringLiteral("propertiesPanel"));
    m_empty->setObjectName(QStringLiteral("noSelection"));
    m_empty->setAlignment(Qt::AlignCenter);
    m_empty->setEnabled(false);
    // Wide enough for a label, a slider a hand can drag and a number field on one row.
    setMinimumWidth(360);
    m_scroll->setWidgetResizable(true);
    m_scroll->setFrameShape(QFrame::NoFrame);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_empty);
    layout->addWidget(m_scroll);
    follow();
}

PropertiesPanel::~PropertiesPanel()
{
    // The list's widgets must not write into the selection while they go.
    delete m_list;
    m_list = nullptr;
}

PropertiesPanel &PropertiesPanel::of(QDockWidget *dock)
{
    if (auto *panel = qobject_cast<PropertiesPanel *>(dock->widget()))
        return *panel;
    auto *panel = new PropertiesPanel(dock);
    dock->setWidget(panel);
    return *panel;
}

void PropertiesPanel::setDocument(Document *document)
{
    if (m_document)
        disconnect(m_document, nullptr, this, nullptr);
    m_document = document;
    m_properties->setDocument(document);
    if (document)
        connect(document, &Document::changed, this, &PropertiesPanel::scheduleFollow);
    m_rows.clear();
    follow();
}

void PropertiesPanel::scheduleFollow()
{
    // A tool's one step may be thousands of changes: the panel catches up once they are done.
    if (m_followPending)
        return;
    m_followPending = true;
    QTimer::singleShot(0, this, &PropertiesPanel::follow);
}

void PropertiesPanel::follow()
{
    m_followPending = false;
    const QList<QVariantMap> rows = m_properties->GetPropertiesList();
    if (m_list && rows == m_rows) {
        m_list->updateAll();
        return;
    }
    m_rows = rows;
    if (m_list) {
        // A drag whose slider goes ends here, so that its undo group does not stay open.
        m_properties->panelGestureFinished(QString());
        // Later, not now: the change may come from one of its own fields, still in its handler.
        m_scroll->takeWidget();
        m_list->hide();
        m_list->deleteLater();
        m_list = nullptr;
    }
    const bool selected = !m_properties->nodes().empty();
    m_empty->setVisible(!selected);
    m_scroll->setVisible(selected);
    if (!selected)
        return;
    m_list = new PropertyListWidget(m_properties, nullptr);
    m_list->setObjectName(QStringLiteral("selectionProperties"));
    m_scroll->setWidget(m_list);
}

} // namespace vantrel::host
