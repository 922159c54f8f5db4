# Copyright (C) 2026 The vantrel-tools authors
# SPDX-License-Identifier: MIT
#
# The two include rules that keep the plug-in and the stand-in host apart, checked on every build:
#
#   1. Nothing of the plug-in (tools/, frame/, plugin/) nor geometry/ includes hostapp/core: the
#      plug-in sees the host only through its interfaces (host/) and the host's UI library
#      (hostapp/ui/), as it would in the real host, and geometry/ is shared by both sides.
#   2. hostapp/ includes nothing of the plug-in: the host knows tools only as the plug-in library
#      it loads.
#
# Run as a script: cmake -DSOURCE_DIR=<tree> -P CheckLayout.cmake. Every offending line is listed
# (file:line and the include) before the check fails, so one run shows the whole job.

if(NOT SOURCE_DIR)
    message(FATAL_ERROR "CheckLayout.cmake: set SOURCE_DIR to the source tree to check")
endif()

set(offences "")

# check_includes(<folders> <forbidden include prefix regex> <why>)
function(check_includes folders forbidden why)
    foreach(folder IN LISTS folders)
        file(GLOB_RECURSE sources LIST_DIRECTORIES false
            "${SOURCE_DIR}/${folder}/*.h" "${SOURCE_DIR}/${folder}/*.cpp")
        foreach(source IN LISTS sources)
            file(STRINGS "${source}" lines)
            set(number 0)
            foreach(line IN LISTS lines)
                math(EXPR number "${number} + 1")
                if(line MATCHES "^[ \t]*#[ \t]*include[ \t]*[\"<](${forbidden}[^\">]*)[\">]")
                    file(RELATIVE_PATH shown "${SOURCE_DIR}" "${source}")
                    list(APPEND offences "${shown}:${number}: includes ${CMAKE_MATCH_1} (${why})")
                endif()
            endforeach()
        endforeach()
    endforeach()
    set(offences "${offences}" PARENT_SCOPE)
endfunction()

check_includes("tools;frame;plugin;geometry" "hostapp/core/"
    "the plug-in and geometry see the host only through host/ and hostapp/ui/")
check_includes("hostapp" "(tools|frame|plugin)/"
    "the host knows the plug-in only as the library it loads")

if(offences)
    list(LENGTH offences count)
    string(REPLACE ";" "\n  " listed "${offences}")
    message(FATAL_ERROR "${count} include(s) break the layout rules (docs/architecture.md):\n  ${listed}")
endif()
