// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/generatorregistry.h"

#include "hostapp/core/scene/generators/bookgenerator.h"
#include "hostapp/core/scene/generators/boxgenerator.h"
#include "hostapp/core/scene/generators/canvasgenerator.h"
#include "hostapp/core/scene/generators/devicegenerator.h"
#include "hostapp/core/scene/generators/disccasegenerator.h"
#include "hostapp/core/scene/generators/discgenerator.h"
#include "hostapp/core/scene/generators/externalmodelgenerator.h"
#include "hostapp/core/scene/generators/imagegenerator.h"
#include "hostapp/core/scene/generators/paperbackgenerator.h"
#include "hostapp/core/scene/generators/roundcornerbookgenerator.h"
#include "hostapp/core/scene/generators/slidingboxgenerator.h"
#include "hostapp/core/scene/generators/taggedboxgenerator.h"

namespace vantrel::host {

namespace {

template<class Generator>
std::unique_ptr<ShapeGenerator> make(const char *typeId)
{
    return std::make_unique<Generator>(typeId);
}

struct GeneratorEntry
{
    const char *typeId;
    std::unique_ptr<ShapeGenerator> (*create)(const char *typeId);
};

// Every shape the host offers, in the order the shape menu lists them.
const GeneratorEntry s_generators[] = {
    {DiscCaseGenerator::s_digipakDvdId, &make<DiscCaseGenerator>},
    {DiscCaseGenerator::s_digipakCdId, &make<DiscCaseGenerator>},
    {DiscCaseGenerator::s_dvdId, &make<DiscCaseGenerator>},
    {DiscCaseGenerator::s_slimCdId, &make<DiscCaseGenerator>},
    {DiscCaseGenerator::s_bluRayId, &make<DiscCaseGenerator>},
    {DeviceGenerator::s_iPadId, &make<DeviceGenerator>},
    {DeviceGenerator::s_iPhone4Id, &make<DeviceGenerator>},
    {DeviceGenerator::s_iPhone5Id, &make<DeviceGenerator>},
    {CanvasGenerator::s_typeId, &make<CanvasGenerator>},
    {BoxGenerator::s_typeId, &make<BoxGenerator>},
    {SlidingBoxGenerator::s_typeId, &make<SlidingBoxGenerator>},
    {TaggedBoxGenerator::s_typeId, &make<TaggedBoxGenerator>},
    {DiscGenerator::s_typeId, &make<DiscGenerator>},
    {BookGenerator::s_hardCoverId, &make<BookGenerator>},
    {RoundCornerBookGenerator::s_typeId, &make<RoundCornerBookGenerator>},
    {BookGenerator::s_magazineId, &make<BookGenerator>},
    {PaperbackGenerator::s_stepbackId, &make<PaperbackGenerator>},
    {PaperbackGenerator::s_paperbackId, &make<PaperbackGenerator>},
    {ImageGenerator::s_typeId, &make<ImageGenerator>},
    {ExternalModelGenerator::s_typeId, &make<ExternalModelGenerator>},
};

} // namespace

QList<QByteArray> generatorIdentifiers()
{
    QList<QByteArray> identifiers;
    for (const GeneratorEntry &entry : s_generators)
        identifiers.append(QByteArray(entry.typeId));
    return identifiers;
}

std::unique_ptr<ShapeGenerator> createGenerator(const QByteArray &typeId)
{
    for (const GeneratorEntry &entry : s_generators) {
        if (typeId == entry.typeId)
            return entry.create(entry.typeId);
    }
    return nullptr;
}

} // namespace vantrel::host
