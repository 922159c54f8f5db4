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
    // Four records at a time in lanes, with TransformPoint's operations in its order (the
    // direction's three products summed left to right, then the translation), so that each lane
    // is bit for bit what TransformPoint gives.
    using Float4 = float __attribute__((vector_size(16)));
    const Matrix &m = job.global;
    std::size_t i = 0;
    for (; i + 4 <= job.count; i += 4) {
        const VertexRecord *r = job.records + i;
        const Float4 x{r[0].position[0], r[1].position[0], r[2].position[0], r[3].position[0]};
        const Float4 y{r[0].position[1], r[1].position[1], r[2].position[1], r[3].position[1]};
        const Float4 z{r[0].position[2], r[1].position[2], r[2].position[2], r[3].position[2]};
        const Float4 wx = x * m[0] + y * m[4] + z * m[8] + m[12];
        const Float4 wy = x * m[1] + y * m[5] + z * m[9] + m[13];
        const Float4 wz = x * m[2] + y * m[6] + z * m[10] + m[14];
        for (int l = 0; l < 4; ++l)
            out[i + std::size_t(l)] = Vector3{wx[l], wy[l], wz[l]};
    }
    for (; i < job.count; ++i) {
        const VertexRecord &record = job.records[i];
        Vector3 p{record.position[0], record.position[1], record.position[2]};
        TransformPoint(p, job.global);
        out[i] = p;
    }
}
