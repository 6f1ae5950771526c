#!/bin/sh
# Scripts/check-tests-built must find a test file that the build does not compile.
# usage: CheckTestsBuiltTest.sh SCRIPT
set -eu
house=$(mktemp -d)
trap 'rm -rf "$house"' EXIT

mkdir -p "$house/Scripts" "$house/Tests/Platform" "$house/Tests/Consumer" "$house/build"
cp "$1" "$house/Scripts/check-tests-built"
touch "$house/Tests/Platform/BuiltTest.cpp" "$house/Tests/Consumer/main.cpp"
printf '[{ "file": "%s/Tests/Platform/BuiltTest.cpp" }]\n' "$(cd "$house" && pwd)" |
    tr '{' '\n' >"$house/build/compile_commands.json"

"$house/Scripts/check-tests-built" "$house/build" ||
    { echo 'FAILED: a house in order was refused'; exit 1; }

touch "$house/Tests/Platform/ForgottenTest.cpp"
if output=$("$house/Scripts/check-tests-built" "$house/build"); then
    echo 'FAILED: a forgotten test file was accepted'
    exit 1
fi
[ "$output" = 'Tests/Platform/ForgottenTest.cpp: no CMakeLists.txt builds it' ] ||
    { echo "FAILED: printed: $output"; exit 1; }

if "$house/Scripts/check-tests-built" "$house/nowhere" 2>/dev/null; then
    echo 'FAILED: a build that is not configured was accepted'
    exit 1
fi
