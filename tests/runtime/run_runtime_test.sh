#!/usr/bin/env bash
# Builds one runtime test program and runs it under wine; its exit code is the result.
# Usage: run_runtime_test.sh TEST.cpp WORK_FOLDER
# Objects of the runtime are kept in WORK_FOLDER and shared by all tests.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
runtime=$here/../../resources/codegen/runtime
test_file=$1
work=$2
name=$(basename "$test_file" .cpp)
cxx=(x86_64-w64-mingw32-g++ -std=c++17 -municode -fwrapv -O1 -I "$runtime" -I "$here")
command -v ccache >/dev/null && cxx=(ccache "${cxx[@]}")

mkdir -p "$work"
(
  flock 9
  newest_header=$(ls -t "$runtime"/*.h | head -n 1)
  for source in "$runtime"/*.cpp; do
    object=$work/$(basename "$source" .cpp).o
    if [ ! "$object" -nt "$source" ] || [ ! "$object" -nt "$newest_header" ]; then
      echo "$source"
    fi
  done | xargs -r -P "$(nproc)" -I{} bash -c \
    'o=$1/$(basename "$2" .cpp).o; shift 2; "$@" -o "$o.new" && mv "$o.new" "$o"' _ "$work" {} "${cxx[@]}" -c {}
  # Other tests may be linking with the old one.
  rm -f "$work/runtime.a.new"
  x86_64-w64-mingw32-ar crs "$work/runtime.a.new" "$work"/[0-9][0-9]_*.o
  mv "$work/runtime.a.new" "$work/runtime.a"
) 9>"$work/lock"

libraries=$(sed -nE 's/^#pragma comment\(lib, "([a-z0-9_]+)\.lib"\).*/-l\1/p' "$runtime/00_prelude.h")
# shellcheck disable=SC2086
"${cxx[@]}" -static "$test_file" "$here/runtime_test_main.cpp" "$work/runtime.a" $libraries \
  -mwindows -o "$work/$name.exe"
cd "$work"
# Wine takes file names in the locale, and Chinese ones need UTF-8.
export LC_ALL=C.UTF-8
export WINEPREFIX=${VOREL_WINEPREFIX:-$work/wine} WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
exec timeout 120 wine "$work/$name.exe"
