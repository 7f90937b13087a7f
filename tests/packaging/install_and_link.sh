#!/usr/bin/env bash
# Installs the build into a temporary prefix, then builds a C program and a CMake project against
# it the way a user would, and runs them.
set -euo pipefail
build=$1 here=$2 cc=$3
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install "$build" --prefix "$prefix" >/dev/null
libdir=$prefix/lib
for f in include/typeprint.h lib/libtypeprint.a lib/pkgconfig/typeprint.pc \
         lib/cmake/typeprint/typeprintConfig.cmake lib/cmake/typeprint/typeprintConfigVersion.cmake \
         share/typeprint/FoundryNameTable.plist share/typeprint/DefaultClassifications.plist \
         share/typeprint/KeywordTable.plist; do
  [ -f "$prefix/$f" ] || { echo "missing after install: $f"; exit 1; }
done
ls "$libdir"/libtypeprint.so.* >/dev/null

export PKG_CONFIG_PATH=$libdir/pkgconfig
# shellcheck disable=SC2046
"$cc" -std=c99 -o "$prefix/link_check" "$here/link_check.c" $(pkg-config --cflags --libs typeprint)
LD_LIBRARY_PATH=$libdir "$prefix/link_check"

mkdir -p "$prefix/consumer"
cat > "$prefix/consumer/CMakeLists.txt" <<CMAKE
cmake_minimum_required(VERSION 3.22)
project(consumer C)
find_package(typeprint 1 REQUIRED)
add_executable(link_check $here/link_check.c)
target_link_libraries(link_check PRIVATE typeprint::typeprint)
CMAKE
cmake -S "$prefix/consumer" -B "$prefix/consumer/build" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$prefix/consumer/build" >/dev/null
LD_LIBRARY_PATH=$libdir "$prefix/consumer/build/link_check"
