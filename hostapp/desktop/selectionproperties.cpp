// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/desktop/selectionproperties.h"

#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/basenode.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/desktop/noderows.h"
#include "hostapp/ui/propertieslistbuilder.h"

#include <QSet>

namespace vantrel::host {

namespace {

QString keyOf(const QVariantMap &row)
{
    return row.value(QLatin1String(PanelRow::Property)).toString();
}

QString kindOf(const QVariantMap &row)
{
    return row.value(QLatin1String(PanelRow::Kind)).toString();
}

bool hasRow(const QList<QVariantMap> &rows, const QString &key, const QString &kind)
{
    for (const QVariantMap &row : rows) {
        if (keyOf(row) == key && kindOf(row) == kind)
            return true;
    }
    return false;
}

// What decides a node's rows: its kind and, for a shape, its generator.
QString signatureOf(const BaseNode *node)
{
    QString signature = QString::number(node->GetNodeType());
    if (const auto *mesh = qobject_cast<const MeshNode *>(node))
        signature += QLatin1String(mesh->generator()->GetTypeId());
    return signature;
}

} // namespace

SelectionProperties::SelectionProperties(QObject *parent)
    : QObject(parent)
{}

SelectionProperties::~SelectionProperties()
{
    finishGesture();
}

void SelectionProperties::setDocument(Document *document)
{
    finishGesture();
    m_document = document;
}

std::vector<BaseNode *> SelectionProperties::nodes() const
{
    std::vector<BaseNode *> nodes;
    if (!m_document)
        return nodes;
    for (INode *node : m_document->GetSelection()) {
        BaseNode *own = m_document->ownNode(node);
        if (own && own->parentNode() && own->isInScene())
            nodes.push_back(own);
    }
    return nodes;
}

QString SelectionProperties::stepName(const QString &property)
{
    if (property == QLatin1String("name"))
        return tr("Rename");
    if (property == QLatin1String("visible"))
        return tr("Show or Hide"); // panelWrite names the step after the value
    if (property.startsWith(QLatin1String("position.")))
        return tr("Change Position");
    if (property.startsWith(QLatin1String("rotation.")))
        return tr("Change Rotation");
    if (property.startsWith(QLatin1String("scale.")))
        return tr("Change Scale");
    if (property == QLatin1String("artwork"))
        return tr("Change Artwork");
    // A parameter or a light's setting: "Change Width", "Change Shadow Blur".
    QString name = property.startsWith(QLatin1String("param.")) ? property.mid(6) : property;
    QString caption;
    for (const QChar c : name) {
        if (c.isUpper() && !caption.isEmpty())
            caption += QLatin1Char(' ');
        caption += caption.isEmpty() ? c.toUpper() : c;
    }
    return tr("Change %1").arg(caption);
}

QList<QVariantMap> SelectionProperties::GetPropertiesList()
{
    PropertiesListBuilder builder(tr("Properties"));
    QList<QVariantMap> rows = builder.GetList();
    const std::vector<BaseNode *> selected = nodes();
    if (selected.empty())
        return rows;
    // The first node's rows that every other node has too, under the groups they belong to.
    // Nodes of one kind and generator have the same rows: each such set is described once, so
    // that a selection of thousands of copies costs no more than one of a few nodes.
    std::vector<QList<QVariantMap>> others;
    QSet<QString> described{signatureOf(selected.front())};
    for (std::size_t i = 1; i < selected.size(); ++i) {
        if (!described.contains(signatureOf(selected[i]))) {
            described.insert(signatureOf(selected[i]));
            others.push_back(NodeRows::of(selected[i]));
        }
    }
    QVariantMap pendingGroup;
    for (const QVariantMap &row : NodeRows::of(selected.front())) {
        if (kindOf(row) == QLatin1String(PanelRow::Group)) {
            pendingGroup = row;
            continue;
        }
        bool shared = true;
        for (const QList<QVariantMap> &other : others)
            shared = shared && hasRow(other, keyOf(row), kindOf(row));
        if (!shared)
            continue;
        if (!pendingGroup.isEmpty())
            rows.append(pendingGroup);
        pendingGroup.clear();
        rows.append(row);
    }
    return rows;
}

QVariant SelectionProperties::panelRead(const QString &property) const
{
    QVariant common;
    bool first = true;
    for (const BaseNode *node : nodes()) {
        const QVariant value = NodeRows::read(node, property);
        if (first)
            common = value;
        else if (value != common)
            return QVariant(); // the nodes differ
        first = false;
    }
    return common;
}

QString SelectionProperties::panelWrite(const QString &property, const QVariant &value)
{
    const std::vector<BaseNode *> selected = nodes();
    if (selected.empty())
        return tr("Nothing is selected");
    for (const QVariantMap &row : NodeRows::of(selected.front())) {
        if (keyOf(row) != property)
            continue;
        const QString problem = NodeRows::check(row, value);
        if (!problem.isEmpty())
            return problem;
    }
    UndoHistory &history = m_document->history();
    // Inside a drag the drag's own group already carries the name.
    if (history.openGroupCount() == 0) {
        // Named as the tree's check boxes name the same change.
        const bool visibility = property == QLatin1String("visible");
        history.setNextStepName(!visibility      ? stepName(property)
                                : value.toBool() ? tr("Show")
                                                 : tr("Hide"));
    }
    m_document->BeginUndoGroup();
    for (BaseNode *node : selected) {
        const QString refusal = NodeRows::write(node, property, value);
        if (!refusal.isEmpty()) {
            m_document->CancelUndoGroup();
            return refusal;
        }
    }
    // A value every node already had is no step of its own.
    history.endGroup(UndoHistory::EmptyGroup::Drop);
    return QString();
}

void SelectionProperties::panelGestureStarted(const QString &property)
{
    finishGesture();
    if (!m_document || nodes().empty())
        return;
    m_document->history().setNextStepName(stepName(property));
    m_document->BeginUndoGroup();
    m_gesture = true;
}

void SelectionProperties::panelGestureFinished(const QString &)
{
    finishGesture();
}

void SelectionProperties::finishGesture()
{
    if (!m_gesture)
        return;
    m_gesture = false;
    if (m_document)
        m_document->history().endGroup(UndoHistory::EmptyGroup::Drop);
}

} // namespace vantrel::host
