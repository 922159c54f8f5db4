// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/fittoview/fittoviewimplementation.h"

#include "host/hostfunctions.h"
#include "host/icamera.h"
#include "host/idocument.h"
#include "host/inode.h"
#include "hostapp/ui/propertieslistbuilder.h"
#include "tools/fittoview/fitprobes.h"
#include "tools/fittoview/fittoviewsettings.h"
#include "tools/fittoview/vertexbounds.h"

#include <cfloat>
#include <cmath>

namespace {

constexpr float NearPlane = 0.1f;
constexpr float FarPlane = 1000.0f;
constexpr float NarrowestAspect = 0.41841003f; // 1 / 2.39
constexpr float WidestAspect = 2.39f;
constexpr int Rounds = 4;
constexpr int CentringSteps = 10;
constexpr int BisectionSteps = 10;

constexpr const ToolSetting &paddingSetting = FindSetting(FitToViewSettings, "padding");
constexpr const ToolSetting &keepAspectSetting = FindSetting(FitToViewSettings, "keepAspect");

Matrix projectionFor(const ICamera *camera)
{
    Matrix projection;
    CalculateProjectionMatrix(projection,
                              camera->GetFieldOfView(),
                              camera->GetAspectRatio(),
                              camera->GetAspectRatio(),
                              NearPlane,
                              FarPlane);
    return projection;
}

} // namespace

FitToViewImplementation::FitToViewImplementation(IDocument *document,
                                                 FitProbes::Measuring measuring)
    : ToolSettings(document, false)
    , m_padding(paddingSetting.initial)
    , m_keepAspect(keepAspectSetting.initial != 0.0f)
    , m_measuring(measuring)
{
    const ICamera *view = camera();
    m_savedDistance = view->GetDistance();
    m_savedAspectRatio = view->GetAspectRatio();
    m_savedTarget = view->GetTarget();
    computeFit();
}

FitToViewImplementation::~FitToViewImplementation()
{
    if (isAccepted())
        return;
    ICamera *view = camera();
    view->SetDistance(m_savedDistance);
    view->SetAspectRatio(m_savedAspectRatio);
    view->SetTarget(m_savedTarget);
}

ICamera *FitToViewImplementation::camera() const
{
    return document()->GetCamera();
}

void FitToViewImplementation::computeFit()
{
    // The camera turns nowhere in the fit: its orientation now is the one every probe shares.
    FitProbes probes(document()->GetRootNode(), camera()->GetGlobalMatrix(), m_measuring);
    if (probes.vertexCount() == 0)
        return;
    const float *low = probes.low(), *high = probes.high();
    for (int axis = 0; axis < 3; ++axis) {
        if (low[axis] > high[axis])
            return;
    }

    ICamera *view = camera();
    view->SetTarget(
        Vector3{(high[0] + low[0]) * 0.5f, (high[1] + low[1]) * 0.5f, (high[2] + low[2]) * 0.5f});
    view->SetAspectRatio(m_keepAspect ? m_savedAspectRatio : 1.0f);
    Matrix projection = projectionFor(view);
    const float dx = high[0] - low[0], dy = high[1] - low[1], dz = high[2] - low[2];
    view->SetDistance(std::sqrt(dx * dx + dy * dy + dz * dz));

    for (int round = 0; round < Rounds; ++round) {
        fitDistance(probes, view, projection);
        const Matrix global = view->GetGlobalMatrix();
        const Vector3 left{global[4], global[5], global[6]};
        const Vector3 up{global[8], global[9], global[10]};
        for (int step = 0; step < CentringSteps; ++step) {
            const ProjectedBounds b = probes.bounds(view->GetGlobalMatrix(), projection);
            const float d = view->GetDistance();
            // The world offset that, at the target's distance, shows as the offset of the
            // bounds' centre from the image's centre.
            const float sx = d * (b.minX + b.maxX) * 0.5f / projection[0];
            const float sy = d * (b.minY + b.maxY) * 0.5f / projection[5];
            const Vector3 t = view->GetTarget();
            view->SetTarget(Vector3{t.x - sx * left.x + sy * up.x,
                                    t.y - sx * left.y + sy * up.y,
                                    t.z - sx * left.z + sy * up.z});
        }
        if (!m_keepAspect) {
            const ProjectedBounds b = probes.bounds(view->GetGlobalMatrix(), projection);
            const float height = b.maxY - b.minY;
            // Without a projected height the shape says nothing about the ratio: keep it.
            if (height > 0.0f && std::isfinite(height)) {
                float ratio = view->GetAspectRatio() * (b.maxX - b.minX) / height;
                if (!(ratio > NarrowestAspect))
                    ratio = NarrowestAspect;
                else if (ratio > WidestAspect)
                    ratio = WidestAspect;
                view->SetAspectRatio(ratio);
                projection = projectionFor(view);
            }
        }
    }
    fitDistance(probes, view, projection);
    m_fitDistanceBase = view->GetDistance();
    m_passes += probes.probeCount();
    m_fullPasses += probes.fullPassCount();
    m_candidates = probes.candidateCount();
    m_filterReadings = probes.filterReadingCount();
    view->SetDistance((m_padding + 1.0f) * m_fitDistanceBase);
}

void FitToViewImplementation::fitDistance(FitProbes &probes,
                                          ICamera *view,
                                          const Matrix &projection)
{
    // Grow until everything fits, or until the camera refuses a longer distance (its ceiling).
    while (!probes.inside(view->GetGlobalMatrix(), projection)) {
        const float d = view->GetDistance();
        const float doubled = d + d;
        view->SetDistance(doubled);
        if (view->GetDistance() < doubled)
            break;
    }
    // Then halve the interval ten times; the camera stays at the last probe, fitting or not.
    float hi = view->GetDistance(), lo = 0.0f;
    for (int step = 0; step < BisectionSteps; ++step) {
        const float mid = (hi + lo) * 0.5f;
        view->SetDistance(mid);
        if (probes.inside(view->GetGlobalMatrix(), projection))
            hi = mid;
        else
            lo = mid;
    }
}

void FitToViewImplementation::SetPadding(float padding)
{
    if (!(padding > paddingSetting.minimum))
        padding = paddingSetting.minimum;
    else if (padding > paddingSetting.maximum)
        padding = paddingSetting.maximum;
    if (padding == m_padding)
        return;
    m_padding = padding;
    if (m_fitDistanceBase > 0.0f)
        camera()->SetDistance((m_padding + 1.0f) * m_fitDistanceBase);
}

void FitToViewImplementation::SetKeepAspect(bool keepAspect)
{
    if (keepAspect == m_keepAspect)
        return;
    m_keepAspect = keepAspect;
    computeFit();
}

QList<QVariantMap> FitToViewImplementation::GetPropertiesList()
{
    PropertiesListBuilder builder(QStringLiteral("Fit To View"));
    AddSettingRows(builder, FitToViewSettings);
    return builder;
}
