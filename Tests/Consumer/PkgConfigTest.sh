#!/bin/sh
# Builds the consumer with nothing but a compiler and pkg-config.
# usage: PkgConfigTest.sh COMPILER PKGCONFIG_FOLDER PROJECT WITH_QT
set -eu
compiler=$1
project=$3
with_qt=$4
export PKG_CONFIG_PATH="$2"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$compiler" -std=c++20 -o "$work/consumer" "$project/main.cpp" $(pkg-config --cflags --libs RVCoreHeadless)
"$work/consumer"

if [ "$with_qt" = ON ]; then
    "$compiler" -std=c++20 -fPIC -o "$work/desktop" "$project/main.cpp" $(pkg-config --cflags --libs RVCoreQt)
    # The backend is in the program although nothing in it names the backend.
    nm -C "$work/desktop" | grep -q ' T rvcoreRegisterQtBackend$'
fi
