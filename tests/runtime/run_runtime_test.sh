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

# Whether an object is newer than its source and every header that the compiler named for it.
is_current() {
  local object=$1 file
  [ -f "$object" ] && [ -f "${object%.o}.d" ] || return 1
  for file in $(sed -e 's/^[^:]*://' -e 's/\\$//' "${object%.o}.d"); do
    [ "$object" -nt "$file" ] || return 1
  done
}

mkdir -p "$work"
(
  flock 9
  for source in "$runtime"/*.cpp; do
    is_current "$work/$(basename "$source" .cpp).o" || echo "$source"
  done | xargs -r -P "$(nproc)" -I{} bash -c \
    'o=$1/$(basename "$2" .cpp).o; shift 2; "$@" -MMD -MF "${o%.o}.d" -o "$o.new" && mv "$o.new" "$o"' \
    _ "$work" {} "${cxx[@]}" -c {}
  # Objects of files that are gone would meet those that took over.
  for object in "$work"/[0-9][0-9]_*.o; do
    [ -f "$runtime/$(basename "$object" .o).cpp" ] || rm -f "$object"
  done
  # Other tests may be linking with the old one.
  rm -f "$work/runtime.a.new"
  x86_64-w64-mingw32-ar crs "$work/runtime.a.new" "$work"/[0-9][0-9]_*.o
  mv "$work/runtime.a.new" "$work/runtime.a"
) 9>"$work/lock"

libraries=$(sed -nE 's/^#pragma comment\(lib, "([a-z0-9_]+)\.lib"\).*/-l\1/p' "$runtime/00_prelude.h")
# Windows need a display.
display=()
if [ -z "${DISPLAY:-}" ]; then
  display=(xvfb-run -a -s '-screen 0 1280x900x24')
fi
# shellcheck disable=SC2086
"${cxx[@]}" -static "$test_file" "$here/runtime_test_main.cpp" "$here/window_test_main.cpp" \
  "$work/runtime.a" $libraries \
  -mwindows -o "$work/$name.exe"
cd "$work"
# Wine takes file names in the locale, and Chinese ones need UTF-8.
export LC_ALL=C.UTF-8
export WINEPREFIX=${VOREL_WINEPREFIX:-$work/wine} WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
exec timeout 240 "${display[@]}" wine "$work/$name.exe"
