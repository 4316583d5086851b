#!/usr/bin/env bash
# One formatting style: clang-format finds nothing to change.
set -euo pipefail
clang_format=$1
cd "$2"
find base bench core doctor driver examples json judge lab platform sections sim tests transport \
  \( -name '*.cpp' -o -name '*.c' -o -name '*.h' \) -print0 |
  xargs -0 "$clang_format" --dry-run -Werror
