#!/bin/sh
# Starts a program and waits for a visible window of it that has a title and a size.
# usage: OpensAWindowTest.sh PROGRAM      (on an X display, see Tests/VirtualDisplay)
set -eu
"$1" &
program=$!
trap 'kill "$program" 2>/dev/null || true; wait "$program" 2>/dev/null || true' EXIT

# The search ends when the window is there, or when the time is up.
window=$(timeout 60 xdotool search --sync --all --onlyvisible --pid "$program" --name '.' | head -n 1) || window=
if [ -z "$window" ]; then
    echo "FAILED: no window with a title within a minute"
    exit 1
fi
eval "$(xdotool getwindowgeometry --shell "$window" | grep -E '^(WIDTH|HEIGHT)=')"
echo "\"$(xdotool getwindowname "$window")\" is ${WIDTH} x ${HEIGHT}"
if [ "$WIDTH" -lt 50 ] || [ "$HEIGHT" -lt 20 ]; then
    echo "FAILED: too small to be read"
    exit 1
fi
kill -0 "$program" || { echo "FAILED: the program has ended"; exit 1; }
