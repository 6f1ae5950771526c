#!/bin/sh
# Runs the program as a user does, without a display: what it prints, what it writes, and its exit status.
set -eu

program=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
unset DISPLAY WAYLAND_DISPLAY
cd "$folder"
mkdir sample
printf 'twelve bytes' >sample/file
printf 'x' >'sample/a name with blanks'

fail() {
    echo "CommandLineTest: $1" >&2
    exit 1
}

# Without a display and without being asked, both files are written here, and it says where.
printed=$("$program" sample 2>/dev/null) || fail "exit status $? without arguments for files"
echo "$printed" | grep -q 'picture to foldersizes.png' || fail "does not say where the picture is: $printed"
echo "$printed" | grep -q 'text to foldersizes.txt' || fail "does not say where the text is: $printed"
head -c 8 foldersizes.png | od -An -c | grep -q 'P   N   G' || fail "foldersizes.png is no PNG file"
grep -q '“12 bytes”' foldersizes.txt || fail "the dump does not show the size of a file"

# On request, only what was asked for.
"$program" --dump only.txt sample >/dev/null 2>&1 || fail "exit status $? with --dump"
[ -s only.txt ] || fail "--dump wrote nothing"
[ ! -e only.png ] || fail "--dump wrote a picture"
printed=$("$program" --explain only.png sample 2>/dev/null) || fail "exit status $? with --explain"
[ "$printed" = 'Wrote the picture of the layout to only.png' ] || fail "--explain says: $printed"
head -c 8 only.png | od -An -c | grep -q 'P   N   G' || fail "only.png is no PNG file"

# A row hidden and shown again leaves the same views in the same places. (Its constraints are new ones.)
"$program" --dump plain.txt sample >/dev/null 2>&1
"$program" --hide-and-show 1 --dump again.txt sample >/dev/null 2>&1
"$program" --hide 1 --dump hidden.txt sample >/dev/null 2>&1
grep -v ' | ' plain.txt >plain-frames.txt
grep -v ' | ' again.txt >again-frames.txt
grep -q EntryRow plain-frames.txt || fail "the dump shows no rows"
cmp -s plain-frames.txt again-frames.txt || fail "showing a row again does not restore the layout"
grep -q 'EntryRow "file".*alpha 0' hidden.txt || fail "--hide does not hide the row"

# What is not a folder is refused with one clear line and exit status 2, and nothing is written.
expect_refusal() {
    expected=$1
    shift
    status=0
    message=$("$program" "$@" 2>&1 >/dev/null) || status=$?
    [ "$status" -eq 2 ] || fail "exit status $status for $*"
    echo "$message" | grep -qF "$expected" || fail "for $*: $message"
}
rm -f foldersizes.png
expect_refusal '"sample/file" is not a folder' sample/file
expect_refusal '"missing" is not a folder: No such file or directory' missing
expect_refusal 'there is no option --bogus' --bogus
expect_refusal 'there is no row 9, only 2' --hide 9 sample
[ ! -e foldersizes.png ] || fail "a refused call wrote a picture"

# A file that cannot be written is named.
status=0
message=$("$program" --snapshot missing/a.png sample 2>&1 >/dev/null) || status=$?
[ "$status" -eq 1 ] || fail "exit status $status for a picture that cannot be written"
echo "$message" | grep -q 'missing/a.png' || fail "the picture that cannot be written is not named: $message"
echo "every call answered as it should"
