// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/stepandrepeat/stepandrepeatimpl.h"

#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "host/idocument.h"
#include "host/inode.h"
#include "host/itransformations.h"
#include "hostapp/ui/propertieslistbuilder.h"
#include "tools/stepandrepeat/stepandrepeatsettings.h"

#include <QStringBuilder>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace {

constexpr const ToolSetting &repeatXSetting = FindSetting(StepAndRepeatSettings, "repeatX");
constexpr const ToolSetting &repeatYSetting = FindSetting(StepAndRepeatSettings, "repeatY");
constexpr const ToolSetting &repeatZSetting = FindSetting(StepAndRepeatSettings, "repeatZ");
constexpr const ToolSetting &stepXSetting = FindSetting(StepAndRepeatSettings, "stepX");
constexpr const ToolSetting &stepYSetting = FindSetting(StepAndRepeatSettings, "stepY");
constexpr const ToolSetting &stepZSetting = FindSetting(StepAndRepeatSettings, "stepZ");

ITransformations *transformationsOf(INode *node)
{
    return node ? qobject_cast<ITransformations *>(node) : nullptr;
}

} // namespace

bool IsSingleShape(const std::vector<INode *> &nodes)
{
    return nodes.size() == 1 && nodes.front()->GetNodeType() == INode::MeshNodeType;
}

StepAndRepeatImpl::StepAndRepeatImpl(IDocument *document, bool ownsUndoGroup, INode *node)
    : ToolSettings(document, ownsUndoGroup) // opens the group before anything below changes
    , m_source(node)
    , m_repeatX(int(repeatXSetting.initial))
    , m_repeatY(int(repeatYSetting.initial))
    , m_repeatZ(int(repeatZSetting.initial))
    , m_stepX(stepXSetting.initial)
    , m_stepY(stepYSetting.initial)
    , m_stepZ(stepZSetting.initial)
{
    if (!m_source)
        m_source = document->GetSelection().front(); // the caller checked there is exactly one
    wrapSource();
    updateLayout(true);
}

// Nothing to put back by hand: the copies belong to the scene, and Cancel is the undo group's
// job (ToolSettings).
StepAndRepeatImpl::~StepAndRepeatImpl() = default;

void StepAndRepeatImpl::wrapSource()
{
    IDocument *doc = document();
    INode *parent = m_source->GetParent();
    m_group = parent->CreateChildGroup(m_source->GetName());
    // The group is created last among the parent's children; put it where the shape stood
    // before the shape moves into it, so that the siblings' order is kept.
    doc->MoveNodes(parent, GetNodePos(m_source), MakeListOfNodes(m_group));
    doc->MoveNodes(m_group, 0, MakeListOfNodes(m_source));
    m_source->SetName(makeCopyName(0));

    ITransformations *group = transformationsOf(m_group);
    ITransformations *source = transformationsOf(m_source);
    // Copies, not references: the shape's own values are reset just below.
    const Vector3 position = source->GetPosition();
    const Vector3 rotation = source->GetRotation();
    const Vector3 scale = source->GetScale();
    group->SetPosition(position, false);
    group->SetRotation(rotation, false);
    group->SetScale(scale, 0);
    source->SetPosition(Vector3(0.0f, 0.0f, 0.0f), false);
    source->SetRotation(Vector3(0.0f, 0.0f, 0.0f), false);
    source->SetScale(Vector3(1.0f, 1.0f, 1.0f), 0);
}

void StepAndRepeatImpl::updateLayout(bool rebuild)
{
    if (rebuild)
        makeCopies();
    placeCopies();
}

void StepAndRepeatImpl::makeCopies()
{
    IDocument *doc = document();
    // Each copy goes with whatever lies below it: one call, so the host removes them in one pass.
    if (!m_copies.empty())
        doc->DeleteNodes(CollectAllChildren(m_copies));
    m_copies.clear();
    m_copyTransformations.clear();

    const int cells = m_repeatX * m_repeatY * m_repeatZ;
    m_copies.reserve(std::size_t(cells - 1));
    m_copyTransformations.reserve(std::size_t(cells - 1));
    // Cell k's copy is cloned from the shape (never from an earlier copy, which a script may
    // have changed) and appended to the group, so the group's children end up in cell order.
    for (int k = 1; k < cells; ++k) {
        INode *copy = doc->CloneNode(m_source, 1);
        if (!copy)
            return; // the shape has left the scene (a script removed it): nothing to copy
        copy->SetName(makeCopyName(k));
        m_copies.push_back(copy);
        m_copyTransformations.push_back(transformationsOf(copy));
        doc->MoveNodes(m_group, k + 1, MakeListOfNodes(copy));
    }
}

Vector3 StepAndRepeatImpl::sourceSize() const
{
    // Measured in the group's space, through the shape's own transform: the box the copies
    // actually occupy next to each other.
    TBBox<float> box;
    UpdateBBoxRecursive(box, m_source, Matrix());
    if (IsBoxEmpty(box))
        return Vector3(); // no geometry: the steps alone space the copies
    return Vector3(box.max[0] - box.min[0], box.max[1] - box.min[1], box.max[2] - box.min[2]);
}

void StepAndRepeatImpl::placeCopies()
{
    const Vector3 size = sourceSize();
    const ITransformations *source = transformationsOf(m_source);
    const Vector3 base = source->GetPosition();
    const Vector3 spacing(size.x + m_stepX, size.y + m_stepY, size.z + m_stepZ);

    std::size_t k = 0;
    for (int z = 0; z < m_repeatZ; ++z) {
        for (int y = 0; y < m_repeatY; ++y) {
            for (int x = 0; x < m_repeatX; ++x, ++k) {
                if (k == 0)
                    continue; // the shape's own cell
                if (k > m_copyTransformations.size())
                    return; // fewer copies than cells: see makeCopies
                if (ITransformations *copy = m_copyTransformations[k - 1]) {
                    copy->SetPosition(Vector3(base.x + float(x) * spacing.x,
                                              base.y + float(y) * spacing.y,
                                              base.z + float(z) * spacing.z),
                                      false);
                }
            }
        }
    }
}

QString StepAndRepeatImpl::makeCopyName(int k) const
{
    // "%1 - %2" put together directly: a "%1" or "%2" inside the shape's own name stays as it
    // is, and tens of thousands of copies are named without parsing a pattern for each.
    return m_group->GetName() % QLatin1String(" - ") % QString::number(k + 1);
}

void StepAndRepeatImpl::storeCount(int &member, int count)
{
    count = std::clamp(count, MinimumRepeat, MaximumRepeat);
    if (std::exchange(member, count) != count)
        updateLayout(true);
}

void StepAndRepeatImpl::storeStep(float &member, float step)
{
    // Not a number would put every copy at an undefined place: it counts as 0, like a script
    // value that is no number at all.
    step = std::isnan(step) ? 0.0f : std::clamp(step, -MaximumStep, MaximumStep);
    if (std::exchange(member, step) != step)
        updateLayout(false);
}

void StepAndRepeatImpl::SetRepeatX(int count)
{
    storeCount(m_repeatX, count);
}

void StepAndRepeatImpl::SetRepeatY(int count)
{
    storeCount(m_repeatY, count);
}

void StepAndRepeatImpl::SetRepeatZ(int count)
{
    storeCount(m_repeatZ, count);
}

void StepAndRepeatImpl::SetStepX(float step)
{
    storeStep(m_stepX, step);
}

void StepAndRepeatImpl::SetStepY(float step)
{
    storeStep(m_stepY, step);
}

void StepAndRepeatImpl::SetStepZ(float step)
{
    storeStep(m_stepZ, step);
}

QList<QVariantMap> StepAndRepeatImpl::GetPropertiesList()
{
    PropertiesListBuilder builder(QStringLiteral("Step and Repeat"));
    AddSettingRows(builder, StepAndRepeatSettings);
    return builder;
}
