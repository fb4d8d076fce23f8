#!/usr/bin/env bash
# Compiles every file of the emitted runtime on its own, for 64 and 32 bits, warnings as errors.
set -euo pipefail
cd "$(dirname "$0")/../../resources/codegen/runtime"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for compiler in x86_64-w64-mingw32-g++ i686-w64-mingw32-g++; do
  # What all of them begin with is read once.
  "$compiler" -std=c++17 -municode -Wall -Wextra -Werror -x c++-header 00_prelude.h \
    -o "$work/00_prelude.h.gch"
  printf "%s\n" *.cpp | xargs -P "$(nproc)" -I{} \
    "$compiler" -std=c++17 -municode -Wall -Wextra -Werror -include "$work/00_prelude.h" \
    -fsyntax-only -x c++ {}
done
# Text in these files goes through tools that differ in what they take non-ASCII characters for.
if grep -nP '[^\x00-\x7F]' -- *.h *.cpp; then
  echo 'runtime files hold ASCII only' >&2
  exit 1
fi
