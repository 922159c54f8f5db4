// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

// What the Step and Repeat tests share: a scene with a shape between two siblings, and ways to
// read where the grid's cells stand, worked out independently of the tool.
#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "host/imeshnode.h"
#include "host/inode.h"
#include "host/itransformations.h"
#include "hostapp/core/commands/session.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/ui/propertieslistbuilder.h"
#include "hostapp/ui/propertylistwidget.h"
#include "tests/support/testsupport.h"
#include "tests/support/toolssession.h"
#include "tools/stepandrepeat/stepandrepeatimpl.h"
#include "tools/stepandrepeat/stepandrepeatsettings.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QStringList>

namespace stepandrepeattest {

using namespace vantrel::host;
using vantrel::test::addBoxNode;

inline ITransformations *transformationsOf(INode *node)
{
    return qobject_cast<ITransformations *>(node);
}

inline Vector3 positionOf(INode *node)
{
    return transformationsOf(node)->GetPosition();
}

// The node's box in its parent's space, read from its vertices through its own local matrix:
// where the copies stand next to each other inside the group.
inline TBBox<float> boxInParent(const INode *node)
{
    TBBox<float> box;
    UpdateBBoxRecursive(box, node, Matrix());
    return box;
}

inline QStringList namesOf(const std::vector<INode *> &nodes)
{
    QStringList names;
    for (const INode *node : nodes)
        names.append(node->GetName());
    return names;
}

// "<name> - 1" to "<name> - <count>", as a user reads them in the scene tree.
inline QStringList numberedNames(const QString &name, int count)
{
    QStringList names;
    for (int i = 1; i <= count; ++i)
        names.append(name + QStringLiteral(" - ") + QString::number(i));
    return names;
}

// Where cell k stands inside the group, worked out here in double precision from the cell's
// column, row and layer: one box size plus one step per neighbour.
inline Vector3 cellPosition(int k, int columns, int rows, const Vector3 &size, const Vector3 &steps)
{
    const int x = k % columns, y = k / columns % rows, z = k / (columns * rows);
    return Vector3{float(x * (double(size.x) + steps.x)),
                   float(y * (double(size.y) + steps.y)),
                   float(z * (double(size.z) + steps.z))};
}

class StepAndRepeatTest : public vantrel::test::ToolsSessionTest
{
protected:
    StepAndRepeatTest()
    {
        // A shape between two siblings, measuring 2 x 1 x 3, somewhere off the origin.
        m_front = root()->CreateChildGroup(QStringLiteral("Front"));
        m_box = addBoxNode(root(), QStringLiteral("Box"), {-1, -0.5f, 0}, {1, 0.5f, 3});
        m_box->SetPosition({5, 6, 7}, false);
        m_back = root()->CreateChildLight(QStringLiteral("Back"));
        document().history().clear();
    }

    // Runs the tool as the host's tool list does, on the current selection.
    QDialog *openWindow()
    {
        m_session.tools()
            .findTool(QStringLiteral("Step and Repeat..."))
            ->Execute(m_session.context());
        return m_session.userInterface().openWindow();
    }

    INode *m_front;
    MeshNode *m_box;
    INode *m_back;
};

} // namespace stepandrepeattest
