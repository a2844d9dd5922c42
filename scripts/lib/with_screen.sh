#!/usr/bin/env bash
# Runs a command on a virtual screen of its own with a window manager, never on a screen that is already there:
# JUCE programs join any server they find and end with it.
set -euo pipefail

if [ "${ORVO_ON_VIRTUAL_SCREEN:-}" != yes ]; then
    export ORVO_ON_VIRTUAL_SCREEN=yes
    exec xvfb-run -a -s "-screen 0 2600x1800x24 -nolisten tcp" "$0" "$@"
fi

# Without a window manager, showing a window ends JUCE programs with an X error.
openbox --sm-disable > /dev/null 2>&1 &
manager=$!
trap 'kill "$manager" 2> /dev/null || true' EXIT

for _ in $(seq 100); do
    if xprop -root _NET_SUPPORTING_WM_CHECK 2> /dev/null | grep -q "window id"; then break; fi
    sleep 0.05
done

"$@"
