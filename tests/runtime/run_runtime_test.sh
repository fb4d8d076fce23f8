#!/usr/bin/env bash
# Builds one runtime test program and runs it under wine; its exit code is the result.
# Usage: run_runtime_test.sh TEST.cpp WORK_FOLDER
# The runtime itself comes from build_runtime_objects.sh with the same folder.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
runtime=$here/../../resources/codegen/runtime
test_file=$1
work=$2
name=$(basename "$test_file" .cpp)
cxx=(x86_64-w64-mingw32-g++ -std=c++17 -municode -fwrapv -O1 -I "$runtime" -I "$here")
command -v ccache >/dev/null && cxx=(ccache "${cxx[@]}")

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
