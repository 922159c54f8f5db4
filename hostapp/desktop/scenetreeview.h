// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/core/document/document.h"
#include "hostapp/desktop/desktopexport.h"

#include <QPointer>
#include <QTreeView>

#include <vector>

class INode;

namespace vantrel::host {

class SceneTreeModel;

// The scene tree beside the 3D view. Its selection and the document's are one: selecting rows
// selects those nodes (one undo step, "Select"), and any change of the document's selection (the
// 3D view, undo, redo, a tool, a script) selects the same rows, opens their ancestors and scrolls
// to the last one. Rows may be renamed in place and dragged (see SceneTreeModel).
class VANTREL_DESKTOP_EXPORT SceneTreeView final : public QTreeView
{
    Q_OBJECT

public:
    explicit SceneTreeView(QWidget *parent = nullptr);
    ~SceneTreeView() override;

    void setDocument(Document *document);
    SceneTreeModel *sceneModel() const { return m_model; }

private:
    void onRowsSelected();
    void onDocumentChanged();
    void showDocumentSelection();

    SceneTreeModel *m_model;
    QPointer<Document> m_document;
    // The document selection the rows show, so that other changes cost one comparison.
    std::vector<INode *> m_shownSelection;
    bool m_selecting = false; // while either side follows the other
};

} // namespace vantrel::host
