# Copyright (C) 2026 The vantrel-tools authors
# SPDX-License-Identifier: MIT
#
# The shape generators, the mesh builder they share and the registry that names them; paths are
# relative to hostapp/core.
set(VANTREL_GENERATOR_SOURCES
    scene/artworksheet.cpp scene/artworksheet.h
    scene/generatorregistry.cpp scene/generatorregistry.h
    scene/meshbuilder.cpp scene/meshbuilder.h
    scene/meshcache.cpp scene/meshcache.h
    scene/outline.cpp scene/outline.h
    scene/sheetprint.cpp scene/sheetprint.h
    scene/vertexframes.cpp scene/vertexframes.h
    scene/generators/bookgenerator.cpp scene/generators/bookgenerator.h
    scene/generators/boxgenerator.cpp scene/generators/boxgenerator.h
    scene/generators/cartonsheet.h
    scene/generators/canvasgenerator.cpp scene/generators/canvasgenerator.h
    scene/generators/devicegenerator.cpp scene/generators/devicegenerator.h
    scene/generators/disccasegenerator.cpp scene/generators/disccasegenerator.h
    scene/generators/discgenerator.cpp scene/generators/discgenerator.h
    scene/generators/externalmodelgenerator.cpp scene/generators/externalmodelgenerator.h
    scene/generators/imagegenerator.cpp scene/generators/imagegenerator.h
    scene/generators/lengthlimits.h
    scene/generators/paperbackgenerator.cpp scene/generators/paperbackgenerator.h
    scene/generators/roundcornerbookgenerator.cpp scene/generators/roundcornerbookgenerator.h
    scene/generators/sizedshapegenerator.cpp scene/generators/sizedshapegenerator.h
    scene/generators/slidingboxgenerator.cpp scene/generators/slidingboxgenerator.h
    scene/generators/softcovercard.h
    scene/generators/styletable.h
    scene/generators/taggedboxgenerator.cpp scene/generators/taggedboxgenerator.h
)
