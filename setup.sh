#!/usr/bin/env bash
# Copyright (C) 2026 The vantrel-tools authors
# SPDX-License-Identifier: MIT
#
# Sets up a Debian 12 machine for vantrel-tools (installing only the Debian packages that are
# missing), builds the project and runs what is asked:
#
#   ./setup.sh demo               build, then run `vantrel demo`
#   ./setup.sh open [SCENE]       build, then open the desktop window (needs a display)
#   ./setup.sh test               build, then run every test through CTest
#   ./setup.sh test --sanitize    the same in a separate AddressSanitizer + UBSan build
#   ./setup.sh bench              build, then run the benchmarks
#   ./setup.sh format-check       fail when clang-format would change a tracked file
#   ./setup.sh size-check         fail when a tracked source passes 400 lines (tables aside)
#   ./setup.sh tidy               fail when clang-tidy finds anything in a tracked .cpp file
#   ./setup.sh build              only install and build
set -euo pipefail
cd "$(dirname "$0")"

usage() { sed -n '7,16p' "$0" | sed 's/^# \{0,1\}//'; exit 2; }
[ $# -ge 1 ] || usage
command=$1
shift
sanitize=0
scene=()
for argument in "$@"; do
    case $argument in
        --sanitize) sanitize=1 ;;
        -*) echo "setup.sh: unknown option: $argument" >&2; usage ;;
        *)
            [ "$command" = open ] && [ ${#scene[@]} -eq 0 ] || { echo "setup.sh: unexpected argument: $argument" >&2; usage; }
            scene=("$argument")
            ;;
    esac
done

packages=(build-essential binutils cmake ninja-build clang-format clang-tidy
          qtbase5-dev qtscript5-dev
          googletest libgtest-dev libbenchmark-dev fonts-dejavu-core libassimp-dev rapidjson-dev
          libgl1-mesa-dri xvfb xauth openbox x11-utils)
# Node.js and npm run the glTF validator. A machine with a Node.js of its own keeps it (NodeSource's
# package carries npm and conflicts with Debian's npm package).
command -v node >/dev/null && command -v npm >/dev/null || packages+=(nodejs npm)
missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" \
        || missing+=("$package")
done
if [ ${#missing[@]} -gt 0 ]; then
    sudo=""
    [ "$(id -u)" -eq 0 ] || sudo=sudo
    echo "== installing ${missing[*]}"
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

# The Khronos glTF validator checks the files `vantrel export` writes; the tests find it here
# (ignored by git) and skip with a message where it is missing.
validator_version=2.0.0-dev.3.10
if [ "$(node -p "require('./build-tools/node/node_modules/gltf-validator/package.json').version" 2>/dev/null)" != "$validator_version" ]; then
    echo "== installing gltf-validator $validator_version"
    mkdir -p build-tools/node
    npm install --silent --no-audit --no-fund --prefix build-tools/node "gltf-validator@$validator_version" \
        || echo "== WARNING: could not install gltf-validator from npm; the glTF validation tests will skip"
fi

jobs=$(nproc)
if [ $sanitize -eq 1 ]; then
    build=build-asan
    options=(-DCMAKE_BUILD_TYPE=Debug -DVANTREL_SANITIZER=address,undefined
             -DVANTREL_STRICT=ON -DVANTREL_BUILD_BENCHMARKS=OFF)
else
    build=build
    options=(-DCMAKE_BUILD_TYPE=RelWithDebInfo -DVANTREL_STRICT=ON)
fi

configure_and_build() {
    echo "== building in $build"
    cmake -S . -B "$build" -G Ninja "${options[@]}" >/dev/null
    start=$(date +%s)
    cmake --build "$build" -j "$jobs"
    echo "== built in $(( $(date +%s) - start )) s"
}

case $command in
    build) configure_and_build ;;
    demo)
        configure_and_build
        "$build/bin/vantrel" demo
        ;;
    open)
        configure_and_build
        "$build/bin/vantrel" open "${scene[@]}"
        ;;
    test)
        configure_and_build
        export ASAN_OPTIONS=detect_leaks=1:abort_on_error=0
        export LSAN_OPTIONS=suppressions=$PWD/.lsan.supp:print_suppressions=0
        # The picture tests need OpenGL, which Mesa's software renderer gives through an X
        # server: without a display, CTest runs inside a virtual one.
        # The desktop window's tests need a screen big enough for the main window and its tool
        # windows side by side (xvfb-run's default screen is 640 x 480 at 8 bits).
        display=()
        [ -n "${DISPLAY:-}" ] || display=(xvfb-run -a -s "-screen 0 1600x1000x24")
        "${display[@]}" ctest --test-dir "$build" --output-on-failure -j "$jobs" -LE 'desktop|widget'
        # The window and widget tests drive a real X server with pointer drags, focus changes and
        # screen grabs, and on a loaded machine one of them can miss its deadline (or, under the
        # sanitizers, LeakSanitizer's tracer can trip over the renderer's threads as the program
        # ends). They run after the rest, one at a time, and a test that fails gets one more try:
        # a real fault fails both times. A window manager gives their windows title bars, as on a
        # desktop.
        "${display[@]}" tests/desktop/with-window-manager.sh \
            ctest --test-dir "$build" --output-on-failure -L 'desktop|widget' --repeat until-pass:2
        ;;
    bench)
        configure_and_build
        display=()
        [ -n "${DISPLAY:-}" ] || display=(xvfb-run -a -s "-screen 0 1600x1000x24")
        for benchmark in "$build"/bin/bench_*; do "${display[@]}" "$benchmark"; done
        ;;
    format-check)
        git ls-files '*.cpp' '*.h' | xargs clang-format --dry-run --Werror
        echo "== formatting is clean"
        ;;
    size-check)
        # A file past 400 lines has taken on a second job; only a file that is mostly a data
        # table may be longer, and then it is listed, with the reason, in .ci/long-tables.
        allowed=$(awk '!/^#/ && NF' .ci/long-tables)
        bad=$(echo "$allowed" | awk 'NF == 1 {print $1 ": listed without a reason"}')
        over=$(git ls-files -z '*.cpp' '*.h' | xargs -0 wc -l \
               | awk '$2 != "total" && $1 > 400 {print $2 ": " $1 " lines"}')
        while read -r line; do
            [ -n "$line" ] || continue
            file=${line%%:*}
            echo "$allowed" | awk -v f="$file" '$1 == f {found = 1} END {exit !found}' \
                || bad+=$'\n'"$line (limit 400)"
        done <<< "$over"
        # clang-tidy's function size check passes over GoogleTest's TEST bodies, which come out
        # of a macro: their length is counted here, from the TEST line to the closing brace.
        bad+=$'\n'$(git ls-files -z 'tests/*.cpp' | xargs -0 awk '
            FNR == 1 {start = 0}
            /^TEST(_F|_P)?\(/ {start = FNR; name = $0}
            /^}/ && start {
                if (FNR - start + 1 > 80) print FILENAME ":" start ": " FNR - start + 1 " lines in " name " (limit 80)"
                start = 0
            }')
        bad=$(echo "$bad" | awk 'NF')
        if [ -n "$bad" ]; then
            echo "$bad" >&2
            exit 1
        fi
        echo "== no source file passes 400 lines outside .ci/long-tables, no test body 80"
        ;;
    tidy)
        options+=(-DCMAKE_EXPORT_COMPILE_COMMANDS=ON)
        echo "== configuring $build"
        cmake -S . -B "$build" -G Ninja "${options[@]}" >/dev/null
        # Some sources include moc's output: run moc for every target, compile nothing.
        mapfile -t autogen < <(ninja -C "$build" -t targets all \
                               | sed -n 's/^\([^/]*_autogen\): phony$/\1/p')
        ninja -C "$build" "${autogen[@]}" >/dev/null
        mapfile -t sources < <(git ls-files '*.cpp')
        # A file the build does not compile would be passed over in silence.
        missing=$(for file in "${sources[@]}"; do
                      grep -qF "\"file\": \"$PWD/$file\"" "$build/compile_commands.json" || echo "$file"
                  done)
        if [ -n "$missing" ]; then
            echo "not in $build/compile_commands.json, so not checked:" >&2
            echo "$missing" >&2
            exit 1
        fi
        # The checks and their reasons are in .clang-tidy; the file names are regular
        # expressions to run-clang-tidy, matched against the database's absolute paths.
        patterns=()
        for file in "${sources[@]}"; do patterns+=("^$PWD/${file//./\\.}\$"); done
        start=$(date +%s)
        log=$(mktemp)
        trap 'rm -f "$log"' EXIT
        if ! run-clang-tidy -p "$build" -j "$jobs" -quiet "${patterns[@]}" >"$log" 2>&1; then
            # The findings, without the command lines and the counts of system headers' warnings.
            grep -v -e '^clang-tidy' -e 'warnings\? generated\.$' "$log" >&2 || cat "$log" >&2
            echo "== clang-tidy found the above" >&2
            exit 1
        fi
        echo "== clang-tidy is clean on ${#sources[@]} files ($(( $(date +%s) - start )) s)"
        ;;
    *) usage ;;
esac
