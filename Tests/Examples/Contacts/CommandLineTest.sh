#!/bin/sh
# Runs the program as a user does, without a display: what it prints, what it writes, and its exit status.
set -u

program=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
unset DISPLAY WAYLAND_DISPLAY
cd "$folder" || exit 1
printf '{"contacts": [{"name": "Ada"}]}' >people.json

fail() {
    echo "CommandLineTest: $1" >&2
    exit 1
}

# expect STATUS TEXT ARGUMENT…: the program ends with the status, and what it prints contains the text.
expect() {
    status=$1
    text=$2
    shift 2
    printed=$("$program" "$@" 2>&1)
    [ $? -eq "$status" ] || fail "status is not $status for $*: $printed"
    case $printed in *"$text"*) ;; *) fail "does not say \"$text\" for $*: $printed" ;; esac
}

expect 2 'no file was named'
expect 2 'there is no option --nonsense' --nonsense people.json
expect 0 'Usage: Contacts' --help
expect 1 'there is no display' people.json
for appearance in light dark; do
    expect 0 'Wrote the picture to form.png' --appearance $appearance --snapshot form.png people.json
    head -c 8 form.png | od -An -c | grep -q 'P   N   G' || fail "form.png is no PNG file"
    mv form.png $appearance.png
done
! cmp -s light.png dark.png || fail "light and dark look the same"
expect 0 'Wrote the picture to preferences.png' --preferences --snapshot preferences.png people.json

# A file that cannot be read is reported with its line, and left as it is.
printf '{\n"contacts": [\n{"name": 7}]}' >broken.json
cp broken.json before.json
expect 1 'line 3: "name" is not a text: 7' broken.json
cmp broken.json before.json || fail "the broken file was changed"

# Off screen it opens its window, draws, and ends; nothing is written unasked.
QT_QPA_PLATFORM=offscreen "$program" --quit-after-first-frame new.json 2>/dev/null || fail "status $? off screen"
[ ! -e new.json ] || fail "a file was written unasked"
