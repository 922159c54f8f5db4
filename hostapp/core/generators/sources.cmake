# Copyright (C) 2026 The vantrel-tools authors
# SPDX-License-Identifier: MIT
#
# The shape generators, the mesh builder they share and the registry that names them; paths are
# relative to hostapp/core.
set(VANTREL_GENERATOR_SOURCES
    generatorregistry.cpp
    meshbuilder.cpp meshbuilder.h
    generators/bookgenerator.cpp generators/bookgenerator.h
    generators/boxgenerator.cpp generators/boxgenerator.h
    generators/canvasgenerator.cpp generators/canvasgenerator.h
    generators/cartongenerator.cpp generators/cartongenerator.h
    generators/devicegenerator.cpp generators/devicegenerator.h
    generators/disccasegenerator.cpp generators/disccasegenerator.h
    generators/discgenerator.cpp generators/discgenerator.h
    generators/externalmodelgenerator.cpp generators/externalmodelgenerator.h
    generators/flatshapegenerator.cpp generators/flatshapegenerator.h
    generators/imagegenerator.cpp generators/imagegenerator.h
    generators/lengthlimits.h
    generators/paperbackgenerator.cpp generators/paperbackgenerator.h
    generators/roundcornerbookgenerator.cpp generators/roundcornerbookgenerator.h
    generators/slidingboxgenerator.cpp generators/slidingboxgenerator.h
    generators/softcovercard.h
    generators/styletable.h
    generators/taggedboxgenerator.cpp generators/taggedboxgenerator.h
)
