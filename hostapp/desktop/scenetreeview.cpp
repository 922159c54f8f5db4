// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/desktop/scenetreeview.h"

#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/basenode.h"
#include "hostapp/desktop/scenetreemodel.h"

#include <QItemSelection>

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace vantrel::host {

SceneTreeView::SceneTreeView(QWidget *parent)
    : QTreeView(parent)
    , m_model(new SceneTreeModel(this))
{
    setModel(m_model);
    setUniformRowHeights(true); // lets the view lay out tens of thousands of rows at once
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    // Rows are dragged to reorder nodes or move them into groups (the model makes the move), and
    // a double click or F2 edits a name.
    setDragDropMode(QAbstractItemView::InternalMove);
    setDefaultDropAction(Qt::MoveAction);
    setDropIndicatorShown(true);
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    connect(selectionModel(),
            &QItemSelectionModel::selectionChanged,
            this,
            &SceneTreeView::onRowsSelected);
}

SceneTreeView::~SceneTreeView() = default;

void SceneTreeView::setDocument(Document *document)
{
    if (document == m_document)
        return;
    if (m_document)
        disconnect(m_document, nullptr, this, nullptr);
    m_selecting = true; // the reset clears the rows' selection, which is no user's choice
    m_document = document;
    m_shownSelection.clear();
    // The model connects to the document first, so it is up to date when this view follows.
    m_model->setDocument(document);
    m_selecting = false;
    if (document) {
        connect(document, &Document::changed, this, &SceneTreeView::onDocumentChanged);
        showDocumentSelection();
    }
}

void SceneTreeView::onRowsSelected()
{
    // Rows removed by a document change leave the selection too: that is the document's doing.
    if (m_selecting || !m_document || m_model->isUpdating())
        return;
    const QModelIndexList rows = selectionModel()->selectedRows();
    std::vector<INode *> nodes;
    nodes.reserve(std::size_t(rows.size()));
    for (const QModelIndex &row : rows) {
        if (BaseNode *node = m_model->nodeAt(row))
            nodes.push_back(node);
    }
    // The same nodes in another order are no new selection, and must not leave a step name
    // behind for whatever change comes next.
    const std::vector<INode *> &current = m_document->GetSelection();
    if (nodes.size() == current.size()) {
        const std::unordered_set<INode *> selected(current.begin(), current.end());
        if (std::all_of(nodes.begin(), nodes.end(), [&](INode *n) { return selected.count(n); }))
            return;
    }
    m_selecting = true;
    m_document->history().setNextStepName(QStringLiteral("Select"));
    m_document->SetSelection(nodes, Document::ReplaceSelection);
    m_shownSelection = m_document->GetSelection();
    m_selecting = false;
}

void SceneTreeView::onDocumentChanged()
{
    if (m_selecting || m_document->GetSelection() == m_shownSelection)
        return;
    showDocumentSelection();
}

void SceneTreeView::showDocumentSelection()
{
    m_shownSelection = m_document->GetSelection();
    // Rows grouped by parent, then merged into runs: a tool that selects 27 000 copies in one
    // group gives one selection range, not 27 000.
    struct Sibling
    {
        QModelIndex parent;
        std::vector<int> rows;
    };
    std::vector<Sibling> groups;
    std::unordered_map<const void *, std::size_t> groupOf; // keyed by the parent's own key
    QModelIndex last;
    for (INode *node : m_shownSelection) {
        const QModelIndex index = m_model->indexOf(m_document->ownNode(node));
        if (!index.isValid())
            continue;
        last = index;
        const auto inserted = groupOf.emplace(index.internalPointer(), groups.size());
        if (inserted.second)
            groups.push_back({index.parent(), {}});
        groups[inserted.first->second].rows.push_back(index.row());
    }
    QItemSelection selection;
    for (Sibling &group : groups) {
        std::sort(group.rows.begin(), group.rows.end());
        std::size_t begin = 0;
        while (begin < group.rows.size()) {
            std::size_t end = begin + 1;
            while (end < group.rows.size() && group.rows[end] <= group.rows[end - 1] + 1)
                ++end;
            selection.append(
                QItemSelectionRange(m_model->index(group.rows[begin], 0, group.parent),
                                    m_model->index(group.rows[end - 1], 0, group.parent)));
            begin = end;
        }
        for (QModelIndex ancestor = group.parent; ancestor.isValid(); ancestor = ancestor.parent())
            expand(ancestor);
    }
    m_selecting = true;
    selectionModel()->select(selection,
                             QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    if (last.isValid()) {
        selectionModel()->setCurrentIndex(last, QItemSelectionModel::NoUpdate);
        scrollTo(last);
    }
    m_selecting = false;
}

} // namespace vantrel::host
