#!/usr/bin/env bash
# Compiles every file of the emitted runtime on its own, for 64 and 32 bits, warnings as errors.
set -euo pipefail
cd "$(dirname "$0")/../../resources/codegen/runtime"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# What all of them begin with is read once.
printf '#include "%s/00_prelude.h"\n' "$PWD" >"$work/begin.h"
for compiler in x86_64-w64-mingw32-g++ i686-w64-mingw32-g++; do
  strict=("$compiler" -std=c++17 -municode -Wall -Wextra -Werror)
  "${strict[@]}" -x c++-header "$work/begin.h" -o "$work/begin.h.gch"
  printf "%s\n" *.cpp | xargs -P "$(nproc)" -I{} \
    "${strict[@]}" -include "$work/begin.h" -fsyntax-only -x c++ {}
done
# Text in these files goes through tools that differ in what they take non-ASCII characters for.
if grep -nP '[^\x00-\x7F]' -- *.h *.cpp; then
  echo 'runtime files hold ASCII only' >&2
  exit 1
fi
