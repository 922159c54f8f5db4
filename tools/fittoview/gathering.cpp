// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/fittoview/gathering.h"

#include "geometry/geometry.h"
#include "host/hostfunctions.h"
#include "host/imeshnode.h"
#include "host/imeshpart.h"
#include "host/inode.h"
#include "tools/fittoview/vertexbounds.h"

#include <algorithm>

namespace {

bool contributes(const INode *node)
{
    return node->GetNodeType() == INode::MeshNodeType && node->IsVisible();
}

void plan(std::vector<GatherJob> &jobs, std::size_t &total, INode *node, const Matrix &parentGlobal)
{
    Matrix global;
    MultiplyMatrices(global, node->GetLocalMatrix(), parentGlobal);
    if (contributes(node)) {
        for (const IMeshPart *part : qobject_cast<IMeshNode *>(node)->GetMeshParts()) {
            const std::vector<VertexRecord> &records = part->GetVertices();
            for (std::size_t k = 0; k < records.size(); k += VerticesPerBlock) {
                const std::size_t count
                    = std::min(records.size() - k, std::size_t(VerticesPerBlock));
                jobs.push_back(GatherJob{records.data() + k, count, global, total + k});
            }
            total += records.size();
        }
    }
    // Children count whatever the node's own type and visibility.
    for (INode *child : node->GetChildren())
        plan(jobs, total, child, global);
}

} // namespace

std::vector<GatherJob> planGathering(INode *node, const Matrix &parentGlobal, std::size_t &total)
{
    std::vector<GatherJob> jobs;
    total = 0;
    plan(jobs, total, node, parentGlobal);
    return jobs;
}

void gatherJob(const GatherJob &job, Vector3 *out)
{
    for (std::size_t i = 0; i < job.count; ++i) {
        const VertexRecord &record = job.records[i];
        Vector3 p{record.position[0], record.position[1], record.position[2]};
        TransformPoint(p, job.global);
        out[i] = p;
    }
}
