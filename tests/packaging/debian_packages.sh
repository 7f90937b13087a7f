#!/usr/bin/env bash
# Builds the Debian packages from a copy of the source tree, checks them with lintian (no errors),
# unpacks them into an empty root and uses them there: a C program built with pkg-config and with
# find_package (both targets) links, runs and finds the data files, and so does the command.
# Skipped (77) when dpkg-buildpackage is missing.
set -uo pipefail
source_dir=$1 tree=$2 here=$3 cc=$4
command -v dpkg-buildpackage >/dev/null || { echo "dpkg-buildpackage not installed: skipped"; exit 77; }
failures=0
check() {  # check WHAT COMMAND...
  local what=$1; shift
  if "$@"; then :; else echo "FAILED: $what"; failures=$((failures + 1)); fi
}
real_class() { [ -n "$1" ] && [ "$1" != "--" ] || { echo "  got class '$1'"; return 1; }; }

# A fixed place, so that a compiler cache sees the same paths from one run to the next.
top=$tree/debian-packages
rm -rf "$top" && mkdir -p "$top/typeprint" "$top/root"
tar -C "$source_dir" --exclude='./build*' --exclude=./.git --exclude='./obj-*' -cf - . | tar -C "$top/typeprint" -xf -
start=$SECONDS
if ! (cd "$top/typeprint" && DEB_BUILD_OPTIONS="nocheck parallel=2" dpkg-buildpackage -us -uc -b) >"$top/build.log" 2>&1; then
  tail -40 "$top/build.log"; echo "FAILED: dpkg-buildpackage"; exit 1
fi
echo "packages built in $((SECONDS - start)) s"

lintian --fail-on error "$top"/*.changes >"$top/lintian.log" 2>&1
check "lintian finds no errors" test $? -eq 0
echo "lintian: $(grep -c '^E:' "$top/lintian.log") errors, $(grep -c '^W:' "$top/lintian.log") warnings"
grep -E '^[EW]:' "$top/lintian.log" | sort | uniq -c | sort -rn | head -20

for package in libtypeprint1 libtypeprint-dev typeprint-data typeprint; do
  deb=$(ls "$top/${package}_"*.deb 2>/dev/null | head -1)
  check "$package is built" test -n "$deb"
  [ -n "$deb" ] && dpkg-deb -x "$deb" "$top/root"
done

root=$top/root
multiarch=$(dpkg-architecture -qDEB_HOST_MULTIARCH)
libdir=$root/usr/lib/$multiarch
check "the man page is packaged" test -f "$root/usr/share/man/man1/typeprint.1.gz"
command_class=$("$root/usr/bin/typeprint" classify "DejaVu Sans")
check "the packaged command classifies" real_class "$command_class"

export PKG_CONFIG_PATH=$libdir/pkgconfig
# shellcheck disable=SC2046
check "pkg-config builds a program" "$cc" -std=c99 -o "$root/usr/bin/classify_pc" "$here/link_check.c" $(pkg-config --cflags --libs typeprint)
mkdir -p "$top/consumer"
cat > "$top/consumer/CMakeLists.txt" <<CMAKE
cmake_minimum_required(VERSION 3.22)
project(consumer C)
find_package(typeprint 1.4 REQUIRED)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "$root/usr/bin")
foreach(target typeprint typeprint_static)
  add_executable(classify_cmake_\${target} "$here/link_check.c")
  target_link_libraries(classify_cmake_\${target} PRIVATE typeprint::\${target})
endforeach()
CMAKE
if ! { cmake -S "$top/consumer" -B "$top/consumer/build" -DCMAKE_PREFIX_PATH="$root/usr" &&
       cmake --build "$top/consumer/build"; } >"$top/consumer.log" 2>&1; then
  cat "$top/consumer.log"; check "find_package builds the programs" false
fi
for way in pc cmake_typeprint cmake_typeprint_static; do
  out=$(LD_LIBRARY_PATH=$libdir "$root/usr/bin/classify_$way" "DejaVu Sans")
  check "program ($way) runs and finds the data" test "$out" = "$command_class"
done
[ "$failures" -eq 0 ] || { echo "$failures check(s) failed"; exit 1; }
rm -rf "$top"
