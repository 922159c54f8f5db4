// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/desktop/desktopexport.h"

#include <QObject>
#include <QPointer>

class QAction;
class QMenu;

namespace vantrel::host {

class Document;
class SceneTreeView;

// The Edit menu's scene actions after Undo and Redo: Delete (Del), Duplicate (Ctrl+D), Rename
// (F2), Group (Ctrl+G), Ungroup (Ctrl+Shift+G) and Select All (Ctrl+A). Each is one undo step
// of its own name, and is greyed out while it cannot apply to the selection.
//
// The shortcuts are the window's, but a text field with the keyboard (a name being typed in the
// tree, a value in the properties) takes Del and Ctrl+A itself: they edit the text there.
class VANTREL_DESKTOP_EXPORT EditActions final : public QObject
{
    Q_OBJECT

public:
    // The copies Duplicate makes stand this far beside their originals, as a share of the
    // original's width along x, so that the copy is seen next to it rather than inside it.
    static constexpr float DuplicateOffset = 1.2f;

    // Adds the actions to the menu; Rename opens the name of the tree's current row for editing.
    EditActions(QMenu *edit, SceneTreeView *tree);

    // Null greys every action out.
    void setDocument(Document *document);

    QAction *deleteAction() const { return m_delete; }
    QAction *duplicateAction() const { return m_duplicate; }
    QAction *renameAction() const { return m_rename; }
    QAction *groupAction() const { return m_group; }
    QAction *ungroupAction() const { return m_ungroup; }
    QAction *selectAllAction() const { return m_selectAll; }

    // Greys out what cannot apply to the document's selection now.
    void updateActions();

private:
    void deleteSelection();
    void duplicateSelection();
    void renameCurrent();
    void groupSelection();
    void ungroupSelection();
    void selectAll();

    SceneTreeView *m_tree;
    QPointer<Document> m_document;
    QAction *m_delete;
    QAction *m_duplicate;
    QAction *m_rename;
    QAction *m_group;
    QAction *m_ungroup;
    QAction *m_selectAll;
};

} // namespace vantrel::host
