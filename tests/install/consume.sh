#!/usr/bin/env bash
# Installs a build into a temporary prefix, checks what was installed, then
# builds and runs a small program against it twice: through the CMake
# package and through pkg-config.
# Usage: consume.sh BUILD_DIR
set -euo pipefail
build_dir=$1
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix

cmake --install "$build_dir" --prefix "$prefix" >/dev/null

library=$(find "$prefix" -name 'libKorvoFastInfoset.so.1.*' -type f)
[ -n "$library" ] || { echo "no versioned library installed"; exit 1; }
readelf -d "$library" | grep -q 'SONAME.*\[libKorvoFastInfoset.so.1\]' || { echo "wrong SONAME"; exit 1; }
[ -f "$prefix/include/Korvo/FastInfoset/FastInfosetWriter.h" ] || { echo "no headers installed"; exit 1; }
"$prefix/bin/fastinfoset" --help >/dev/null

echo "== CMake package"
cmake -S "$here" -B "$work/cmake" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/cmake" >/dev/null
"$work/cmake/consumer"

echo "== pkg-config"
export PKG_CONFIG_PATH
PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name korvo-fastinfoset.pc)")
libdir=$(pkg-config --variable=libdir korvo-fastinfoset)
# shellcheck disable=SC2046
c++ -std=c++17 "$here/consumer.cpp" -o "$work/consumer" \
  $(pkg-config --cflags --libs korvo-fastinfoset) -Wl,-rpath,"$libdir"
"$work/consumer"
