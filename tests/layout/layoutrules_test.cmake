# Copyright (C) 2026 The vantrel-tools authors
# SPDX-License-Identifier: MIT
#
# The layout check must refuse each of its two rules' offences and pass a tree that keeps them:
# a tree is written into WORK_DIR for each case and checked with CHECK_SCRIPT.
#   cmake -DCHECK_SCRIPT=<CheckLayout.cmake> -DWORK_DIR=<scratch folder> -P layoutrules_test.cmake

function(check_tree name expect_failure expected_text)
    set(tree "${WORK_DIR}/${name}")
    execute_process(
        COMMAND ${CMAKE_COMMAND} -DSOURCE_DIR=${tree} -P ${CHECK_SCRIPT}
        RESULT_VARIABLE result ERROR_VARIABLE output OUTPUT_VARIABLE output)
    if(expect_failure AND result EQUAL 0)
        message(FATAL_ERROR "${name}: the check passed a tree that breaks a rule")
    endif()
    if(NOT expect_failure AND NOT result EQUAL 0)
        message(FATAL_ERROR "${name}: the check refused a tree that keeps the rules:\n${output}")
    endif()
    if(expected_text AND NOT output MATCHES "${expected_text}")
        message(FATAL_ERROR "${name}: the message does not say \"${expected_text}\":\n${output}")
    endif()
endfunction()

file(REMOVE_RECURSE "${WORK_DIR}")

# A tree that keeps the rules: the plug-in includes host/ and the UI library, the host its core.
file(WRITE "${WORK_DIR}/clean/tools/stack/stack.cpp"
    "#include \"host/inode.h\"\n#include \"hostapp/ui/button.h\"\n#include <QtPlugin>\n")
file(WRITE "${WORK_DIR}/clean/hostapp/core/scene/node.cpp"
    "#include \"hostapp/core/scene/mesh.h\"\n// #include \"plugin/toolsplugin.h\" in a comment\n")
check_tree(clean FALSE "")

# A tool reaching into the host core, two lines down.
file(WRITE "${WORK_DIR}/tool/tools/stack/stack.cpp"
    "#include \"host/inode.h\"\n#include \"hostapp/core/document/document.h\"\n")
check_tree(tool TRUE "tools/stack/stack.cpp:2: includes hostapp/core/document/document.h")

# geometry/ is shared by both sides and may not lean on the host either.
file(WRITE "${WORK_DIR}/geometry/geometry/geometry.h" "  #  include <hostapp/core/scene/mesh.h>\n")
check_tree(geometry TRUE "geometry/geometry.h:1: includes hostapp/core/scene/mesh.h")

# The host including the plug-in's frame, and a tool header: both listed in one run.
file(WRITE "${WORK_DIR}/host/hostapp/desktop/mainwindow.cpp"
    "#include \"frame/toolwindow.h\"\n#include \"tools/stack/stackwindow.h\"\n")
check_tree(host TRUE "2 include\\(s\\) break the layout rules.*mainwindow.cpp:1: includes frame/toolwindow.h.*mainwindow.cpp:2: includes tools/stack/stackwindow.h")
