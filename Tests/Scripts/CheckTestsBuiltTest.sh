#!/bin/sh
# Scripts/check-tests-built must find a test file that the build does not compile.
# usage: CheckTestsBuiltTest.sh SCRIPT
set -eu
house=$(mktemp -d)
trap 'rm -rf "$house"' EXIT

mkdir -p "$house/Scripts" "$house/Tests/Platform" "$house/Tests/Consumer" "$house/build"
cp "$1" "$house/Scripts/check-tests-built"
house=$(cd "$house" && pwd)
mkdir "$house/build/Unity"
touch "$house/Tests/Platform/BuiltTest.cpp" "$house/Tests/Platform/JoinedTest.cpp" "$house/Tests/Consumer/main.cpp"
printf '#include "%s/Tests/Platform/JoinedTest.cpp"\n' "$house" >"$house/build/Unity/unity_0_cxx.cxx"
printf '[{ "file": "%s/Tests/Platform/BuiltTest.cpp" },{ "file": "%s/build/Unity/unity_0_cxx.cxx" }]\n' "$house" "$house" |
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
