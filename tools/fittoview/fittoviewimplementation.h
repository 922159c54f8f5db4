// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "frame/toolsettings.h"
#include "host/types.h"
#include "tools/fittoview/fitprobes.h"

#include <vector>

class ICamera;

// Fit To View's settings. Constructing it remembers the document camera's distance, aspect ratio
// and target, then points the camera at every visible vertex and brings it as close as it can
// while everything still projects inside the frame, plus a padding. Unless keepAspect is set, the
// frame's aspect ratio follows the geometry's projected shape, within 1:2.39 and 2.39:1.
// Destroyed without being accepted, it puts the camera back as it found it; it opens no undo
// group (the camera is view state, not part of the document's history).
class FitToViewImplementation final : public ToolSettings
{
    Q_OBJECT
    Q_PROPERTY(float padding READ GetPadding WRITE SetPadding)
    Q_PROPERTY(bool keepAspect READ GetKeepAspect WRITE SetKeepAspect)

public:
    // FullPasses measures every probe over the whole vertex list: the reference the filtered
    // probes are compared with.
    explicit FitToViewImplementation(IDocument *document,
                                     FitProbes::Measuring measuring = FitProbes::Filtered);
    ~FitToViewImplementation() override;

    float GetPadding() const { return m_padding; }
    bool GetKeepAspect() const { return m_keepAspect; }
    // Limited to 0..1 (FitToViewSettings). A change only rescales the distance of the last fit: no
    // vertex pass.
    void SetPadding(float padding);
    // A change fits again, from the camera as it is now.
    void SetKeepAspect(bool keepAspect);

    QList<QVariantMap> GetPropertiesList() override;

    // The tightest distance the last fit found, before the padding; 0 before any fit.
    float fitDistanceBase() const { return m_fitDistanceBase; }
    // For measurements, since construction: the probes asked, how many of them needed a pass
    // over the whole list, how many vertices the last fit's probes ran on, and how many times
    // its filter read the whole list.
    int passCount() const { return m_passes; }
    int fullPassCount() const { return m_fullPasses; }
    std::size_t candidateCount() const { return m_candidates; }
    int filterReadingCount() const { return m_filterReadings; }

private:
    void computeFit();
    void fitDistance(FitProbes &probes, ICamera *camera, const Matrix &projection);
    ICamera *camera() const;

    float m_savedDistance;
    float m_savedAspectRatio;
    Vector3 m_savedTarget;
    float m_fitDistanceBase = 0.0f;
    float m_padding; // these two start from the settings table's initial values
    bool m_keepAspect;
    FitProbes::Measuring m_measuring;
    int m_passes = 0;
    int m_fullPasses = 0;
    std::size_t m_candidates = 0;
    int m_filterReadings = 0;
};
