#!/bin/sh
# Unpacks the development package in folder $2 and builds a page by the project in folder $1 against
# it with the compiler $CXX, once by find_package and once by pkg-config.
set -eu
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT

dpkg-deb -x "$2"/libcgilib-dev_*.deb "$tree"
cmake -G Ninja -S "$1" -B "$tree/build" -DCMAKE_PREFIX_PATH="$tree/usr"
cmake --build "$tree/build"
PKG_CONFIG_PATH=$(dirname "$(find "$tree/usr" -name cgilib.pc)")
export PKG_CONFIG_PATH
# shellcheck disable=SC2046 # flags are words
"$CXX" -std=c++17 "$1/../system/valid_page.cpp" -o "$tree/page" $(pkg-config --cflags --libs cgilib)

for program in "$tree/build/page" "$tree/page"; do
    ${KESTO_EMULATOR:-} "$program" 6 | grep "XHTML 1.0 Strict"
done
