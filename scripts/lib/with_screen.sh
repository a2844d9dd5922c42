#!/usr/bin/env bash
# Runs a command on a virtual screen of its own with a window manager, never on a screen that is already there:
# JUCE programs join any server they find and end with it.
set -euo pipefail

if [ "${ORVO_ON_VIRTUAL_SCREEN:-}" != yes ]; then
    export ORVO_ON_VIRTUAL_SCREEN=yes
    # Without -noreset, the server begins anew whenever its last client leaves, and takes the window manager along
    # if that is just arriving.
    exec xvfb-run -a -s "-screen 0 2600x1800x24 -nolisten tcp -noreset" "$0" "$@"
fi

# Without a window manager, showing a window ends JUCE programs with an X error.
openbox --sm-disable > /dev/null 2>&1 &
manager=$!
trap 'kill "$manager" 2> /dev/null || true' EXIT

has_manager() { xprop -root _NET_SUPPORTING_WM_CHECK 2> /dev/null | grep -q "window id"; }

for _ in $(seq 100); do
    if has_manager; then break; fi
    sleep 0.05
done
if ! has_manager; then echo "error: openbox does not manage the virtual screen" >&2; exit 1; fi

"$@"
