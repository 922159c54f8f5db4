#!/usr/bin/env bash
# Copyright (C) 2026 The vantrel-tools authors
# SPDX-License-Identifier: MIT
# with-window-manager.sh COMMAND...: runs the command on the X display with a window manager, as a
# user's desktop has one. The desktop window's tests run on a virtual display (Xvfb), which has
# none: there, windows have no title bars and no frames, and the tool windows' screenshots would
# show dialogs without their titles. When the display already has a window manager it is used as
# it is; otherwise Openbox is started for the command's run and stopped after it.
set -uo pipefail

has_window_manager() {
    xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'
}

wm=""
if ! has_window_manager && command -v openbox >/dev/null; then
    # No session manager, and the user's own Openbox settings are not read: the tests must see
    # the same window manager on every machine.
    config=$(mktemp -d)
    XDG_CONFIG_HOME=$config openbox --sm-disable >/dev/null 2>&1 &
    wm=$!
    for _ in $(seq 100); do
        has_window_manager && break
        sleep 0.1
    done
    has_window_manager || echo "with-window-manager.sh: Openbox did not start; going on without" >&2
fi
"$@"
status=$?
if [ -n "$wm" ]; then
    kill "$wm" 2>/dev/null
    wait "$wm" 2>/dev/null
    rm -rf "$config"
fi
exit $status
