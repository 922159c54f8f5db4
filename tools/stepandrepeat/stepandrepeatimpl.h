// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "frame/toolsettings.h"

#include <vector>

class INode;
class ITransformations;
struct Vector3;

// What Step and Repeat repeats: exactly one node, and that a shape. A light or a group could be
// copied, but a grid of lights is not what the tool is for, and its messages say "shape". The
// tool and the script function both ask this before anything changes.
bool IsSingleShape(const std::vector<INode *> &nodes);

// Step and Repeat's settings and the grid they describe. Constructing the object wraps one shape
// in a new group that takes the shape's place among its siblings, its name and its position,
// rotation and scale; the shape becomes the group's first child, "<name> - 1", at the group's
// origin, and copies of it fill the rest of a columns x rows x layers grid, named "<name> - 2"
// onwards in cell order (columns vary fastest, then rows, then layers).
//
// The grid lives in the group's space, so the shape's former rotation and scale apply to the
// whole grid: "Right" runs along the shape's own x axis, and a scaled shape has scaled gaps too.
// Neighbours stand one box size plus the step apart: a step is the gap between their bounding
// boxes, measured in the group's units.
//
// Every count write that changes a value deletes all copies and clones new ones from the shape;
// a step write only moves the existing copies. Out-of-range values are limited, never reported.
class StepAndRepeatImpl final : public ToolSettings
{
    Q_OBJECT
    Q_PROPERTY(int repeatX READ GetRepeatX WRITE SetRepeatX)
    Q_PROPERTY(int repeatY READ GetRepeatY WRITE SetRepeatY)
    Q_PROPERTY(int repeatZ READ GetRepeatZ WRITE SetRepeatZ)
    Q_PROPERTY(float stepX READ GetStepX WRITE SetStepX)
    Q_PROPERTY(float stepY READ GetStepY WRITE SetStepY)
    Q_PROPERTY(float stepZ READ GetStepZ WRITE SetStepZ)

public:
    // Builds the default 3 x 3 x 1 grid with gaps of 1 at once. node: the shape to repeat, which
    // must have a parent and transformations (every node a user can select has both); null takes
    // the document's first selected node. With ownsUndoGroup the whole preview is one undo group
    // that ends with the object (see ToolSettings).
    StepAndRepeatImpl(IDocument *document, bool ownsUndoGroup, INode *node);
    ~StepAndRepeatImpl() override;

    int GetRepeatX() const { return m_repeatX; }
    int GetRepeatY() const { return m_repeatY; }
    int GetRepeatZ() const { return m_repeatZ; }
    float GetStepX() const { return m_stepX; }
    float GetStepY() const { return m_stepY; }
    float GetStepZ() const { return m_stepZ; }
    // Counts are limited to 1..30, steps to -100..100 (not a number counts as 0). A value equal
    // to the stored one after limiting changes nothing in the scene.
    void SetRepeatX(int count);
    void SetRepeatY(int count);
    void SetRepeatZ(int count);
    void SetStepX(float step);
    void SetStepY(float step);
    void SetStepZ(float step);

    // rebuild: replace every copy by a new clone of the shape for the current counts, then
    // position them; otherwise only position the existing copies. The shape itself never moves.
    void updateLayout(bool rebuild);
    // The name of the node in cell k (0 is the shape itself): "<group name> - <k + 1>".
    QString makeCopyName(int k) const;

    QList<QVariantMap> GetPropertiesList() override;

    INode *source() const { return m_source; }
    INode *group() const { return m_group; }
    // The copies of the last rebuild, in cell order: cell k >= 1 holds copies()[k - 1].
    const std::vector<INode *> &copies() const { return m_copies; }

private:
    void wrapSource();
    void makeCopies();
    void placeCopies();
    Vector3 sourceSize() const;
    void storeCount(int &member, int count);
    void storeStep(float &member, float step);

    INode *m_source;
    std::vector<INode *> m_copies;
    // Each copy's transformations, found once when it is made: a step change moves every copy,
    // and asking each one for its facet again would cost a good part of the move.
    std::vector<ITransformations *> m_copyTransformations;
    INode *m_group = nullptr;
    // These start from the settings table's initial values (StepAndRepeatSettings).
    int m_repeatX;
    int m_repeatY;
    int m_repeatZ;
    float m_stepX;
    float m_stepY;
    float m_stepZ;
};
