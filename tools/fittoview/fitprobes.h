// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tools/fittoview/hullfilter.h"
#include "tools/fittoview/vertexbounds.h"

#include <vector>

class INode;

// The two questions a fit asks about a hundred times, the projected bounds of every vertex and
// whether every vertex is inside the frame, answered value for value as computeProjectedBounds and
// allVerticesInside answer them over the whole list.
//
// With Filtered, the list is filtered once for the camera's orientation (hullfilter.h) and each
// probe runs on the candidates only. It then proves from the polygons that no vertex left out could
// have changed the answer: the float arithmetic of a pass is off by a bounded amount, and the
// vertices left out lie far enough inside. Where the proof does not hold (the camera inside the
// geometry, a scene far from the origin, or a camera that turned) the probe is a full pass.
class FitProbes
{
public:
    enum Measuring { Filtered, FullPasses };

    // vertices must outlive the probes; cameraGlobal gives the orientation every probe shares.
    FitProbes(const std::vector<Vector3> &vertices,
              const Matrix &cameraGlobal,
              Measuring measuring);
    // The visible mesh vertices of root's subtree, in world space. Filtered reads them from the
    // meshes themselves and gathers the list of every vertex (collectVertices) only when a question
    // needs a pass over all of them; FullPasses gathers it at once.
    FitProbes(INode *root, const Matrix &cameraGlobal, Measuring measuring);

    std::size_t vertexCount() const { return m_count; }

    ProjectedBounds bounds(const Matrix &cameraGlobal, const Matrix &projection);
    bool inside(const Matrix &cameraGlobal, const Matrix &projection);

    // The world bounding box, as a sequential min/max pass over the list gives it.
    const float *low() const { return m_filter.low; }
    const float *high() const { return m_filter.high; }

    std::size_t candidateCount() const;
    // How many times the filter read the whole list (hullfilter.h): 0 with FullPasses.
    int filterReadingCount() const { return m_filter.readings; }
    int probeCount() const { return m_probes; }
    int fullPassCount() const { return m_fullPasses; }

private:
    struct Range;
    bool leftOutWithin(const Matrix &viewProjection, const float bound[4]) const;
    Range rangeOver(int plane, const Matrix &viewProjection) const;

    const std::vector<Vector3> &all();
    void measureBox();

    const std::vector<Vector3> *m_vertices = nullptr;
    std::vector<Vector3> m_gathered;
    INode *m_root = nullptr;
    std::size_t m_count = 0;
    CameraAxes m_axes;
    FilteredVertices m_filter;
    bool m_filtered = false;
    int m_probes = 0;
    int m_fullPasses = 0;
};
