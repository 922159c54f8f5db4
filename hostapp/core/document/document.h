// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "host/idocument.h"
#include "hostapp/core/scene/camera.h"
#include "hostapp/core/undo/change.h"
#include "hostapp/core/undo/undohistory.h"

#include <QObject>

#include <memory>

namespace vantrel::host {

class BaseNode;
class RootNode;

// A document of the stand-in host: the scene tree, selection, camera, lighting and undo history.
//
// The tree's shape, the selection and the lighting change only through the public operations
// here, each of which records what it does (see UndoHistory); the nodes' INode setters record
// their own values the same way. The change objects and the raw tree edits (TreeSurgery) behind
// them are private to the document, its tree changes and its nodes, so no caller can change the
// tree without an undo step.
class VANTREL_HOST_EXPORT Document final : public QObject, public IDocument, private ChangeRecorder
{
    Q_OBJECT

public:
    // Lighting modes (SetLightingMode): the scene's own lights, or the viewer's head light.
    enum LightingMode { SceneLights = 0, HeadLight = 1 };
    // Selection modes (SetSelection).
    enum SelectionMode { AddToSelection = 0, RemoveFromSelection = 1, ReplaceSelection = 2 };

    // No move puts a node deeper than this many levels below the root. Scripts cannot nest
    // nodes deeper than a scene file holds (SceneFile::MaximumDepth); this bound, well above
    // it, stops a tool run over and over again (each Step and Repeat wraps its shape in one
    // group more) from growing a tree so deep that walking it would exhaust the call stack.
    static constexpr int MaximumTreeDepth = 1024;

    explicit Document(QObject *parent = nullptr);
    ~Document() override;

    INode *GetRootNode() const override;
    ICamera *GetCamera() const override { return m_camera.get(); }
    const std::vector<INode *> &GetSelection() const override { return m_selection; }
    void SetSelection(const std::vector<INode *> &nodes, int mode) override;
    // Nodes that the innermost open undo group created itself, and that nothing else in it refers
    // to, go at once: the group forgets the changes that made them instead of recording their
    // removal (see InGroupDeletion). The caller must not use the deleted nodes afterwards (a tool
    // lets go of the preview copies it asked to delete).
    void DeleteNodes(const std::vector<INode *> &nodes) override;
    // The same removal, always recorded: the nodes stay alive in the undo history until it lets
    // them go, so that whoever else holds them (a tool window's preview holds its copies) finds
    // them out of the scene rather than freed. Scripts remove nodes this way.
    void removeNodes(const std::vector<INode *> &nodes);
    void MoveNodes(INode *parent, int index, const std::vector<INode *> &nodes) override;
    INode *CloneNode(INode *node, int flag) override;
    float GetAmbientIntensity() const override { return m_ambient; }
    void SetAmbientIntensity(float intensity) override;
    void SetLightingMode(int mode) override;
    void BeginUndoGroup() override;
    void EndUndoGroup() override;
    void CancelUndoGroup() override;

    // Whole undo steps; false when there is none or a group is open.
    bool undo();
    bool redo();

    RootNode *root() const { return m_root.get(); }
    Camera *camera() const { return m_camera.get(); }
    int lightingMode() const { return m_lightingMode; }
    UndoHistory &history() { return m_history; }
    const UndoHistory &history() const { return m_history; }

    // The node as this document's own, or null when it is not one of its nodes.
    BaseNode *ownNode(INode *node) const;

    // Appends a new node (with whatever subtree it already has) to parent's children as one
    // recorded change, and returns it. Both must belong to this document and the node must not
    // be in any tree yet. Otherwise nothing changes and the result is null: a node of another
    // document is freed, one already in a tree stays there. The nodes' CreateChild functions
    // (and through them the script API and the scene reader) and CloneNode add nodes this way.
    BaseNode *addNode(BaseNode *parent, std::unique_ptr<BaseNode> node);

signals:
    // After every recorded change, undo and redo.
    void changed();
    // After every change of the camera, which is view state and never recorded, so changed()
    // does not cover it (Fit To View's preview, for one, moves only the camera).
    void cameraChanged();

private:
    // The nodes record their own value changes (names, visibility, transforms, light and shape
    // parameters) through the document's ChangeRecorder side, which nothing else can reach.
    friend class BaseNode;

    // Records the change (ChangeRecorder) and tells views that the scene changed.
    void apply(std::unique_ptr<Change> change) override;

    // DeleteNodes and removeNodes; mayForget says whether DeleteNodes's shortcut may be taken.
    void takeOut(const std::vector<INode *> &nodes, bool mayForget);
    // Deletes the subtrees at once by forgetting the changes that created and edited them, when
    // the innermost open group created them itself and nothing else depends on them
    // (InGroupDeletion); false, and nothing changed, otherwise.
    bool forgetCreatedNodes(const std::vector<BaseNode *> &topmost);

    // The values the recorded changes set; none of them records anything.
    void applySelection(std::vector<INode *> selection);
    void applyAmbient(float intensity) { m_ambient = intensity; }
    void applyLightingMode(int mode) { m_lightingMode = mode; }

    std::unique_ptr<RootNode> m_root;
    std::unique_ptr<Camera> m_camera;
    std::vector<INode *> m_selection;
    float m_ambient = 0.3f;
    int m_lightingMode = SceneLights;
    UndoHistory m_history;
};

} // namespace vantrel::host
