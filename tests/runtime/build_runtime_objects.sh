#!/usr/bin/env bash
# Compiles the sections of the runtime that changed into WORK_FOLDER/runtime.a, for the tests.
# Usage: build_runtime_objects.sh WORK_FOLDER
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
runtime=$here/../../resources/codegen/runtime
work=$1
cxx=(x86_64-w64-mingw32-g++ -std=c++17 -municode -fwrapv -O1 -I "$runtime")
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
