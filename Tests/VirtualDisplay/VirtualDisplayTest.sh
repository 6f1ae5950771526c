#!/bin/sh
# Proves that with-virtual-display passes its command's status on and leaves nothing behind, however it ends.
#
#   VirtualDisplayTest.sh WITH_VIRTUAL_DISPLAY
set -eu
run=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
# Its temporary files go where this test can see whether any are left.
TMPDIR=$folder/temporary
export TMPDIR
mkdir "$TMPDIR"

fail() {
    echo "VirtualDisplayTest: $1" >&2
    exit 1
}

nothing_left() {
    [ -z "$(ls "$TMPDIR")" ] || fail "$1: temporary files are left: $(ls "$TMPDIR")"
    # A server that is still there answers.
    if DISPLAY=$(cat "$folder/display") timeout 5 xdotool getdisplaygeometry >"$folder/out" 2>/dev/null; then
        fail "$1: the server is still there"
    fi
}

# The status, and the environment that the command sees.
status=0
"$run" sh -c 'echo "$DISPLAY" >"$0/display"; xdotool getdisplaygeometry >"$0/geometry"; exit 7' "$folder" || status=$?
[ $status = 7 ] || fail "status $status instead of 7"
[ "$(cat "$folder/geometry")" = "1280 1024" ] || fail "the screen is $(cat "$folder/geometry")"
nothing_left "after a failure"

# Two at a time have displays of their own.
"$run" sh -c 'echo "$DISPLAY" >"$0/display"; "$1" sh -c "echo \$DISPLAY" >"$0/inner"' "$folder" "$run"
[ "$(cat "$folder/display")" != "$(cat "$folder/inner")" ] || fail "both are on $(cat "$folder/inner")"
nothing_left "after two"

# Its standard input is the command's.
[ "$(echo line | "$run" cat)" = line ] || fail "standard input is lost"

# A signal ends the command, too.
mkfifo "$folder/started"
"$run" sh -c 'echo "$DISPLAY" >"$0/display"; echo >"$0/started"; exec sleep 600' "$folder" &
script=$!
read -r _ <"$folder/started"
kill -TERM $script
status=0
wait $script || status=$?
[ $status = 143 ] || fail "status $status after a signal"
nothing_left "after a signal"
