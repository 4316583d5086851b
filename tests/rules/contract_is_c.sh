#!/usr/bin/env bash
# The firmware's platform library is C: each header of the contract compiles alone as C.
set -euo pipefail
compiler=$1
cd "$2"
count=0
for header in platform/*.h; do
  echo "#include \"$header\"" |
    "$compiler" -std=c11 -pedantic -Wall -Wextra -Werror -fsyntax-only -I. -x c -
  count=$((count + 1))
done
echo "$count headers"
[ "$count" -gt 0 ]
