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
// Every scene change goes through apply() and is recorded (see UndoHistory). Tree edits cost
// time in proportion to the nodes they touch: children are appended and removed at the end in
// constant time, and batch removals and re-insertions make one pass per parent, so building,
// emptying and restoring a group of tens of thousands of children stays linear.
class VANTREL_HOST_EXPORT Document final : public QObject, public IDocument, public ChangeRecorder
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
    void DeleteNodes(const std::vector<INode *> &nodes) override;
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

    // Records the change (ChangeRecorder) and tells views that the scene changed.
    void apply(std::unique_ptr<Change> change) override;
    // Appends a new node to parent's children, recorded; returns it.
    BaseNode *insertNode(BaseNode *parent, std::unique_ptr<BaseNode> node);

    void applySelection(std::vector<INode *> selection);
    void applyAmbient(float intensity) { m_ambient = intensity; }
    void applyLightingMode(int mode) { m_lightingMode = mode; }

    // Tree surgery for the recorded changes; nothing here records anything.
    struct Placement
    {
        BaseNode *node;
        BaseNode *parent;
        int index;
    };
    // Takes the nodes out of their parents, one pass per parent; returns where they were,
    // grouped by parent in ascending index order.
    std::vector<Placement> detach(const std::vector<BaseNode *> &nodes);
    // Puts nodes back where detach() found them.
    void reattach(const std::vector<Placement> &placements);
    void insertChildren(BaseNode *parent, int index, const std::vector<BaseNode *> &nodes);

signals:
    // After every recorded change, undo and redo.
    void changed();
    // After every change of the camera, which is view state and never recorded, so changed()
    // does not cover it (Fit To View's preview, for one, moves only the camera).
    void cameraChanged();

private:
    std::unique_ptr<RootNode> m_root;
    std::unique_ptr<Camera> m_camera;
    std::vector<INode *> m_selection;
    float m_ambient = 0.3f;
    int m_lightingMode = SceneLights;
    UndoHistory m_history;
};

} // namespace vantrel::host
