#!/usr/bin/env bash
# Installs typeprint as a user would, into a plain prefix (lib/) and into a multiarch one
# (lib/x86_64-linux-gnu), each from a tree configured for that prefix, and uses each install as a
# user would: the README's C example and a classification call built with pkg-config (shared, and
# static against libtypeprint.a alone) and with find_package (typeprint::typeprint and
# typeprint::typeprint_static), the installed command and a copy of it elsewhere, and the command
# with TYPEPRINT_DATA_DIR at an empty folder.
set -uo pipefail
source_dir=$1 tree=$2 here=$3 cc=$4 font=$5
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0
check() {  # check WHAT COMMAND...
  local what=$1; shift
  if "$@"; then :; else echo "FAILED: $layout: $what"; failures=$((failures + 1)); fi
}
same() { [ "$1" = "$2" ] || { echo "  got '$1', expected '$2'"; return 1; }; }
real_class() { [ -n "$1" ] && [ "$1" != "--" ] || { echo "  got class '$1'"; return 1; }; }
has_no_shared_typeprint() { ! readelf -d "$1" | grep -q 'NEEDED.*libtypeprint'; }

awk '/^```c$/{on=1; next} /^```$/{on=0} on' "$source_dir/README.md" > "$work/example.c"
family="DejaVu Sans"

for layout in lib lib/x86_64-linux-gnu; do
  prefix=$work/prefix-${layout//\//-}
  libdir=$prefix/$layout
  build=$tree/install-test
  if ! { cmake -S "$source_dir" -B "$build" -DCMAKE_BUILD_TYPE=Release -DTYPEPRINT_BUILD_TESTS=OFF \
           -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_INSTALL_LIBDIR="$layout" &&
         cmake --build "$build" -j "$(nproc)" && cmake --install "$build"; } >"$work/build.log" 2>&1; then
    cat "$work/build.log"; echo "FAILED: $layout: configure, build or install"; exit 1
  fi
  for f in include/typeprint.h "$layout/libtypeprint.a" "$layout/libtypeprint.so.1" "$layout/pkgconfig/typeprint.pc" \
           "$layout/cmake/typeprint/typeprintConfig.cmake" "$layout/cmake/typeprint/typeprintConfigVersion.cmake" \
           share/typeprint/FoundryNameTable.plist share/typeprint/DefaultClassifications.plist \
           share/typeprint/KeywordTable.plist bin/typeprint; do
    check "installs $f" test -f "$prefix/$f"
  done
  if command -v help2man >/dev/null; then check "installs the man page" test -f "$prefix/share/man/man1/typeprint.1"; fi

  # find_package, both targets; programs go to the prefix's bin/, as an installed program would.
  mkdir -p "$work/consumer"
  cat > "$work/consumer/CMakeLists.txt" <<CMAKE
cmake_minimum_required(VERSION 3.22)
project(consumer C)
find_package(typeprint 1.4 REQUIRED)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "$prefix/bin")
foreach(target typeprint typeprint_static)
  add_executable(example_cmake_\${target} "$work/example.c")
  add_executable(classify_cmake_\${target} "$here/link_check.c")
  target_link_libraries(example_cmake_\${target} PRIVATE typeprint::\${target})
  target_link_libraries(classify_cmake_\${target} PRIVATE typeprint::\${target})
endforeach()
CMAKE
  if ! { cmake -S "$work/consumer" -B "$work/consumer/build" -DCMAKE_PREFIX_PATH="$prefix" &&
         cmake --build "$work/consumer/build"; } >"$work/consumer.log" 2>&1; then
    cat "$work/consumer.log"; check "find_package builds the programs" false
  fi
  rm -rf "$work/consumer"
  check "the static target needs no shared libtypeprint" has_no_shared_typeprint "$prefix/bin/example_cmake_typeprint_static"

  # pkg-config, shared; then static, with the shared library gone so only libtypeprint.a can be used.
  export PKG_CONFIG_PATH=$libdir/pkgconfig
  # shellcheck disable=SC2046
  check "pkg-config builds the example" "$cc" -std=c99 -o "$prefix/bin/example_pc_shared" "$work/example.c" $(pkg-config --cflags --libs typeprint)
  # shellcheck disable=SC2046
  check "pkg-config builds the classify call" "$cc" -std=c99 -o "$prefix/bin/classify_pc_shared" "$here/link_check.c" $(pkg-config --cflags --libs typeprint)
  mkdir "$work/shared" && mv "$libdir"/libtypeprint.so* "$work/shared/"
  # shellcheck disable=SC2046
  check "pkg-config --static builds the example" "$cc" -std=c99 -o "$prefix/bin/example_pc_static" "$work/example.c" $(pkg-config --static --cflags --libs typeprint)
  # shellcheck disable=SC2046
  check "pkg-config --static builds the classify call" "$cc" -std=c99 -o "$prefix/bin/classify_pc_static" "$here/link_check.c" $(pkg-config --static --cflags --libs typeprint)
  check "pkg-config --static links libtypeprint.a" has_no_shared_typeprint "$prefix/bin/example_pc_static"
  mv "$work/shared"/* "$libdir/" && rmdir "$work/shared"

  command_class=$("$prefix/bin/typeprint" classify "$family")
  check "the installed command classifies" real_class "$command_class"
  first_face=$(LD_LIBRARY_PATH=$libdir "$prefix/bin/example_cmake_typeprint" "$font")
  check "the example prints the face" same "${first_face%% *}" DejaVuSans
  for way in cmake_typeprint cmake_typeprint_static pc_shared pc_static; do
    check "example ($way) runs" same "$(LD_LIBRARY_PATH=$libdir "$prefix/bin/example_$way" "$font")" "$first_face"
    check "classify call ($way) finds the data" same "$(LD_LIBRARY_PATH=$libdir "$prefix/bin/classify_$way" "$family")" "$command_class"
  done

  # A copy of the command elsewhere falls back on the configured data folder, also when run by name.
  mkdir -p "$work/elsewhere" && cp "$prefix/bin/typeprint" "$work/elsewhere/"
  check "a copied command classifies" same "$("$work/elsewhere/typeprint" classify "$family")" "$command_class"
  check "a copied command run by name classifies" same "$(PATH=$work/elsewhere typeprint classify "$family")" "$command_class"
  rm -rf "$work/elsewhere"

  mkdir -p "$work/empty"
  TYPEPRINT_DATA_DIR=$work/empty "$prefix/bin/typeprint" classify "$family" >/dev/null 2>"$work/err"
  check "no data files: status 1" test $? -eq 1
  check "no data files: the message names the place looked" \
    grep -q "^typeprint: data files not found.*$work/empty" "$work/err"
done
[ "$failures" -eq 0 ] || { echo "$failures check(s) failed"; exit 1; }
