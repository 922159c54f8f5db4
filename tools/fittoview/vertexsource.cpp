// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/fittoview/vertexsource.h"

#include "geometry/geometry.h"
#include "tools/fittoview/vertexbounds.h"

#include <algorithm>

VertexSource::VertexSource(const std::vector<Vector3> &list)
    : m_list(&list)
    , m_total(list.size())
{}

VertexSource::VertexSource(std::vector<GatherJob> jobs, std::size_t total)
    : m_jobs(std::move(jobs))
    , m_total(total)
{
    std::size_t inPiece = 0;
    for (std::size_t i = 0; i < m_jobs.size(); ++i) {
        if (i == 0 || inPiece + m_jobs[i].count > std::size_t(VerticesPerBlock)) {
            m_pieceStarts.push_back(i);
            inPiece = 0;
        }
        inPiece += m_jobs[i].count;
    }
    m_pieceStarts.push_back(m_jobs.size());
}

std::size_t VertexSource::pieceCount() const
{
    return m_list ? (m_total + VerticesPerBlock - 1) / VerticesPerBlock : m_pieceStarts.size() - 1;
}

const Vector3 *VertexSource::piece(std::size_t i,
                                   std::vector<Vector3> &scratch,
                                   std::size_t &first,
                                   std::size_t &count) const
{
    if (m_list) {
        first = i * VerticesPerBlock;
        count = std::min(m_total - first, std::size_t(VerticesPerBlock));
        return m_list->data() + first;
    }
    const GatherJob *begin = m_jobs.data() + m_pieceStarts[i];
    const GatherJob *end = m_jobs.data() + m_pieceStarts[i + 1];
    first = begin->offset;
    count = (end - 1)->offset + (end - 1)->count - first;
    if (scratch.size() < count)
        scratch.resize(std::max(count, std::size_t(VerticesPerBlock)));
    for (const GatherJob *job = begin; job != end; ++job)
        gatherJob(*job, scratch.data() + (job->offset - first));
    return scratch.data();
}

Vector3 VertexSource::at(std::size_t index) const
{
    if (m_list)
        return (*m_list)[index];
    // The last job that starts at or before index.
    const auto after = std::upper_bound(
        m_jobs.begin(), m_jobs.end(), index, [](std::size_t at, const GatherJob &job) {
            return at < job.offset;
        });
    GatherJob job = *(after - 1);
    job.records += index - job.offset;
    job.count = 1;
    Vector3 p;
    gatherJob(job, &p);
    return p;
}

std::vector<Vector3> VertexSource::sample(std::size_t stride) const
{
    std::vector<Vector3> points;
    points.reserve(m_total / stride + 1);
    if (m_list) {
        for (std::size_t i = 0; i < m_total; i += stride)
            points.push_back((*m_list)[i]);
        return points;
    }
    // TransformPoint gives what gatherJob's lanes give.
    for (const GatherJob &job : m_jobs) {
        for (std::size_t i = (stride - job.offset % stride) % stride; i < job.count; i += stride) {
            const VertexRecord &record = job.records[i];
            Vector3 p{record.position[0], record.position[1], record.position[2]};
            TransformPoint(p, job.global);
            points.push_back(p);
        }
    }
    return points;
}
