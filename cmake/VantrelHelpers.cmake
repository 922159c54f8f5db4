# Copyright (C) 2026 The vantrel-tools authors
# SPDX-License-Identifier: MIT
#
# One helper per kind of target, so that a folder's CMakeLists.txt stays a few lines.

include(CMakeParseArguments)

# vantrel_add_library(NAME <target> [SHARED|STATIC] SOURCES ... [DEPENDS ...] [PUBLIC_DEPENDS ...]
#                     [EXPORT_DEFINE <macro>])
function(vantrel_add_library)
    cmake_parse_arguments(ARG "SHARED;STATIC" "NAME;EXPORT_DEFINE" "SOURCES;DEPENDS;PUBLIC_DEPENDS" ${ARGN})
    if(ARG_SHARED)
        add_library(${ARG_NAME} SHARED ${ARG_SOURCES})
    else()
        add_library(${ARG_NAME} STATIC ${ARG_SOURCES})
    endif()
    target_include_directories(${ARG_NAME} PUBLIC ${CMAKE_SOURCE_DIR})
    target_link_libraries(${ARG_NAME} PRIVATE ${ARG_DEPENDS} PUBLIC ${ARG_PUBLIC_DEPENDS})
    if(ARG_EXPORT_DEFINE)
        target_compile_definitions(${ARG_NAME} PRIVATE ${ARG_EXPORT_DEFINE})
    endif()
endfunction()

# vantrel_add_test(NAME <name> SOURCES ... [DEPENDS ...] [LABELS ...] [PLATFORM <qpa>]
#                  [TIMEOUT <seconds per test, default 60>] [RESOURCE_LOCK <name>])
# Every test runs headless (offscreen Qt platform unless PLATFORM names another, such as xcb for
# the desktop window's tests under Xvfb). Test discovery at build time always runs offscreen.
function(vantrel_add_test)
    cmake_parse_arguments(ARG "" "NAME;PLATFORM;TIMEOUT;RESOURCE_LOCK" "SOURCES;DEPENDS;LABELS" ${ARGN})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 60)
    endif()
    if(NOT ARG_PLATFORM)
        set(ARG_PLATFORM offscreen)
    endif()
    # Tests that show real windows take turns on the display: a window of another test on top
    # would take their clicks, drops and keyboard focus.
    set(lock "")
    if(NOT ARG_PLATFORM STREQUAL "offscreen")
        set(lock RESOURCE_LOCK x-display)
    elseif(ARG_RESOURCE_LOCK)
        set(lock RESOURCE_LOCK ${ARG_RESOURCE_LOCK})
    endif()
    add_executable(${ARG_NAME} ${ARG_SOURCES})
    target_link_libraries(${ARG_NAME} PRIVATE vantrel-testmain ${ARG_DEPENDS})
    # The host library reads model files with this program; the library cannot depend on a
    # program that links it, so the programs that use the library do.
    add_dependencies(${ARG_NAME} vantrel-model-reader)
    gtest_discover_tests(${ARG_NAME}
        DISCOVERY_TIMEOUT 60
        PROPERTIES
            LABELS "${ARG_LABELS}"
            TIMEOUT ${ARG_TIMEOUT}
            ${lock}
            # One variable only: gtest_discover_tests takes a list value apart into separate
            # arguments, so a second variable would become a property of its own and be lost.
            # The tests find their files through compile definitions, and LeakSanitizer's
            # suppressions come from the test main and from ./setup.sh's LSAN_OPTIONS.
            ENVIRONMENT "QT_QPA_PLATFORM=${ARG_PLATFORM}")
endfunction()

# vantrel_add_cli_test(NAME <name> ARGS ... [REGEXP <pass>] [FAIL_REGEXP <fail>] [EXIT_CODE <n>])
# Runs the real `vantrel` program. The test passes when the output matches REGEXP (if given) and
# the program exits with EXIT_CODE (default 0).
function(vantrel_add_cli_test)
    cmake_parse_arguments(ARG "" "NAME;REGEXP;FAIL_REGEXP;EXIT_CODE" "ARGS" ${ARGN})
    if(NOT DEFINED ARG_EXIT_CODE)
        set(ARG_EXIT_CODE 0)
    endif()
    # sh reports the exit status after everything the program printed.
    add_test(NAME cli.${ARG_NAME}
        COMMAND sh -c "\"$0\" \"$@\"; echo \"exit status $?.\"" $<TARGET_FILE:vantrel> ${ARG_ARGS})
    if(ARG_REGEXP)
        set(pattern "${ARG_REGEXP}.*exit status ${ARG_EXIT_CODE}\\.")
    else()
        set(pattern "exit status ${ARG_EXIT_CODE}\\.")
    endif()
    set_tests_properties(cli.${ARG_NAME} PROPERTIES
        LABELS cli
        TIMEOUT 60
        PASS_REGULAR_EXPRESSION "${pattern}"
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/.lsan.supp")
    if(ARG_FAIL_REGEXP)
        set_tests_properties(cli.${ARG_NAME} PROPERTIES FAIL_REGULAR_EXPRESSION "${ARG_FAIL_REGEXP}")
    endif()
endfunction()

# vantrel_add_benchmark(NAME <name> SOURCES ... [DEPENDS ...])
function(vantrel_add_benchmark)
    cmake_parse_arguments(ARG "" "NAME" "SOURCES;DEPENDS" ${ARGN})
    add_executable(${ARG_NAME} ${ARG_SOURCES})
    target_link_libraries(${ARG_NAME} PRIVATE benchmark::benchmark ${ARG_DEPENDS})
    # The host library reads model files with this program; the library cannot depend on a
    # program that links it, so the programs that use the library do.
    add_dependencies(${ARG_NAME} vantrel-model-reader)
endfunction()
